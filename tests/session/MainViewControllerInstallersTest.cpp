#include "session/MainViewControllerHarness.h"

#include "fakes/FakeInstaller.h"
#include "session/InstallerDescription.h"

namespace {

const QUrl kPackage = QUrl::fromLocalFile("/tmp/tool-2.0.tar.gz");

struct Outcome
{
    int calls = 0;
    vlr::OptionalError error;
    VLRErrorHandler handler()
    {
        return [this](const vlr::OptionalError& e) {
            ++calls;
            error = e;
        };
    }
};

} // namespace

TEST_F(MainViewControllerTest, AnInstallerOfTheSameNameGetsItsFieldsAndANewRevision)
{
    auto session = bind();
    auto other = FakeInstaller::make("i-1", "Other");
    auto tool = FakeInstaller::make("i-2", "Tool");
    session->setInstallers({other, tool});

    Outcome outcome;
    controller->uploadInstallerWithDescription(
        kPackage,
        R"({"name": "Tool", "type": "app", "platform": "linux", "silent_install": 1, "product_urls": ["p-1"],
            "file_urls": ["/opt/tool/bin/tool", ""], "image_url": "https://example.com/tool.png"})",
        outcome.handler());
    ASSERT_EQ(tool->log.count("setInstallerFields"), 1);
    EXPECT_EQ(session->log.count("createNewInstallerWithName"), 0);
    const QVariantList fields = tool->log.lastArguments("setInstallerFields");
    EXPECT_EQ(fields[0], "Tool");
    // The empty path yields no URL and is left out.
    EXPECT_EQ(fields[5], QVariantList{QUrl::fromLocalFile("/opt/tool/bin/tool")});
    // Handed on as the number it is, not as a truth value.
    EXPECT_NE(fields[6].typeId(), QMetaType::Bool);
    EXPECT_EQ(fields[6].toInt(), 1);
    EXPECT_EQ(fields[8], QUrl("https://example.com/tool.png"));
    EXPECT_EQ(outcome.calls, 0);

    tool->setFieldsHandlers.complete(tool, std::nullopt);
    const QVariantList upload = session->log.lastArguments("uploadAndPublishNewInstaller");
    ASSERT_EQ(upload.size(), 3);
    EXPECT_EQ(upload[0], kPackage);
    EXPECT_EQ(upload[1], "i-2");
    EXPECT_EQ(upload[2].toMap().value("platform"), "linux");
    EXPECT_EQ(outcome.calls, 1);
    EXPECT_FALSE(outcome.error);
}

TEST_F(MainViewControllerTest, ANewInstallerIsCreatedAndEveryFailureReachesTheHandler)
{
    auto session = bind();
    Outcome created;
    controller->uploadInstallerWithDescription(kPackage, R"({"name": "Fresh", "silent_install": 0})",
                                               created.handler());
    ASSERT_EQ(session->log.count("createNewInstallerWithName"), 1);
    EXPECT_EQ(session->log.lastArguments("createNewInstallerWithName")[6], false);
    session->createInstallerHandlers.complete(nullptr, vlr::makeError(vlr::VLRWebErrorDomain, 500, "Refused"));
    ASSERT_TRUE(created.error);
    EXPECT_EQ(created.error->localizedDescription, "Refused");
    EXPECT_EQ(session->log.count("uploadAndPublishNewInstaller"), 0);

    Outcome uploaded;
    session->uploadInstallerError = vlr::makeError(vlr::VLRFrameworkErrorDomain, 7, "Disk full");
    controller->uploadInstallerWithDescription(kPackage, R"({"name": "Fresh"})", uploaded.handler());
    session->createInstallerHandlers.complete(FakeInstaller::make("i-9", "Fresh"), std::nullopt);
    ASSERT_TRUE(uploaded.error);
    EXPECT_EQ(uploaded.error->localizedDescription, "Disk full");
}

TEST_F(MainViewControllerTest, AMalformedDescriptionIsAClearErrorAndPublishesNothing)
{
    auto session = bind();
    session->setInstallers({FakeInstaller::make("i-1", "Tool")});
    for (const char* json : {"{not json", "[1, 2]", R"({"type": "app"})", R"({"name": "  "})",
                             R"({"name": "Tool", "file_urls": "/opt/tool"})",
                             R"({"name": "Tool", "silent_install": "yes"})", R"({"name": "Tool", "image_url": 3})"}) {
        Outcome outcome;
        controller->uploadInstallerWithDescription(kPackage, json, outcome.handler());
        ASSERT_EQ(outcome.calls, 1) << json;
        ASSERT_TRUE(outcome.error) << json;
        EXPECT_EQ(outcome.error->code, InstallerDescription::MalformedDescriptionError);
        EXPECT_TRUE(outcome.error->localizedDescription.startsWith("The installer description can't be used: "))
            << outcome.error->localizedDescription.toStdString();
    }
    EXPECT_EQ(session->log.count("createNewInstallerWithName"), 0);
    EXPECT_EQ(session->log.count("uploadAndPublishNewInstaller"), 0);
}
