#include "AdminCommandLine.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

TEST(AdminCommandLine, ReadsOptionsAsTheLocalToolDoesAndNamesTheFilesToUpload)
{
    const auto publish =
        AdminCommandLine::parse(QStringLiteral("publish"),
                                {QStringLiteral("--text"), QStringLiteral("Have a look"), QStringLiteral("Posters"),
                                 QStringLiteral("ann@x.org"), QStringLiteral("./poster.pdf")});
    ASSERT_TRUE(publish);
    EXPECT_EQ(publish->arguments,
              (QStringList{QStringLiteral("Posters"), QStringLiteral("ann@x.org"), QStringLiteral("./poster.pdf")}));
    EXPECT_EQ(publish->options.value(QStringLiteral("text")).toString(), QStringLiteral("Have a look"));
    EXPECT_EQ(publish->files.value(QStringLiteral("2")), QStringLiteral("./poster.pdf"));

    // A repeated option is a list, a flag is true, an image option is a file.
    const auto installer = AdminCommandLine::parse(
        QStringLiteral("add-installer"),
        {QStringLiteral("Sketchpad"), QStringLiteral("--product"), QStringLiteral("Suite"), QStringLiteral("--image"),
         QStringLiteral("icon.png"), QStringLiteral("--product"), QStringLiteral("Tools")});
    ASSERT_TRUE(installer);
    EXPECT_EQ(installer->options.value(QStringLiteral("product")).toArray(),
              (QJsonArray{QStringLiteral("Suite"), QStringLiteral("Tools")}));
    EXPECT_EQ(installer->files.value(QStringLiteral("image")), QStringLiteral("icon.png"));
    const auto member =
        AdminCommandLine::parse(QStringLiteral("add-member"),
                                {QStringLiteral("Posters"), QStringLiteral("--owner"), QStringLiteral("b@x.org")});
    ASSERT_TRUE(member);
    EXPECT_TRUE(member->options.value(QStringLiteral("owner")).toBool());
    EXPECT_TRUE(member->files.isEmpty());
}

TEST(AdminCommandLine, RefusesWhatDoesNotFitTheUsage)
{
    // An option at the end without its value stays an argument too many.
    EXPECT_FALSE(AdminCommandLine::parse(
        QStringLiteral("link"), {QStringLiteral("Posters"), QStringLiteral("a.pdf"), QStringLiteral("--revision")}));
    EXPECT_FALSE(AdminCommandLine::parse(QStringLiteral("confirm"), {}));
    EXPECT_FALSE(AdminCommandLine::parse(QStringLiteral("demo"), {QStringLiteral("extra")}));
    EXPECT_FALSE(AdminCommandLine::knows(QStringLiteral("frobnicate")));
    EXPECT_FALSE(AdminCommandLine::parse(QStringLiteral("frobnicate"), {}));
}

} // namespace
