// Renders the workspaces and file drop pages offscreen to PNG files for
// people to look at, under a light and a dark desktop palette.

#include "WorkspacesFixture.h"

#include "support/TestFiles.h"
#include "widgets/VLRFonts.h"
#include "workspaces/FileDropViewController.h"
#include "workspaces/FileInfoViewController.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPalette>

namespace {

const QSize PageSize(360, 472);

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(40, 40, 44));
    palette.setColor(QPalette::WindowText, QColor(230, 230, 230));
    palette.setColor(QPalette::Base, QColor(30, 30, 34));
    palette.setColor(QPalette::Text, QColor(230, 230, 230));
    palette.setColor(QPalette::Button, QColor(50, 50, 54));
    palette.setColor(QPalette::ButtonText, QColor(230, 230, 230));
    return palette;
}

class WorkspacesScreenshotsTest : public WorkspacesTest, public ::testing::WithParamInterface<bool>
{
protected:
    void SetUp() override
    {
        VLRFonts::loadMuli();
        QDir().mkpath(QStringLiteral(VELURIA_SCREENSHOT_DIR));
        m_palette = QApplication::palette();
        if (dark())
            QApplication::setPalette(darkPalette());
    }
    void TearDown() override { QApplication::setPalette(m_palette); }

    static bool dark() { return GetParam(); }

    static void save(QWidget* page, const QString& name)
    {
        page->resize(PageSize);
        page->show();
        QCoreApplication::processEvents();
        const QString path = QStringLiteral(VELURIA_SCREENSHOT_DIR "/workspaces-%1-%2.png")
                                 .arg(name, dark() ? QStringLiteral("dark") : QStringLiteral("light"));
        ASSERT_TRUE(page->grab().save(path)) << path.toStdString();
    }

private:
    QPalette m_palette;
};

TEST_P(WorkspacesScreenshotsTest, FileDrop)
{
    FileDropViewController page(services());
    page.setDelegate(&delegate);
    page.view()->resize(PageSize);
    page.updateWorkspaces({FakeWorkspace::make("w1", "Spring campaign"), FakeWorkspace::make("w2", "Posters")});
    finish(page.modeAnimation());
    save(page.view(), QStringLiteral("filedrop-publish-nofile"));

    writeFile(folder.filePath("Poster final.pdf"), QByteArray(3 * 1024 * 1024, 'x'));
    page.updateFiles({folder.filePath("Poster final.pdf")});
    finish(page.fileStateAnimation());
    page.commentView()->setPlainText("Second round, with the new colours.");
    save(page.view(), QStringLiteral("filedrop-publish-onefile"));
    // The panel's texts are the file's, where the picture shows them.
    EXPECT_EQ(page.fileInfoViewController()->nameLabel()->text(), "Poster final");

    page.workspacePopUp()->setCurrentIndex(2);
    page.workspaceSelectionChanged();
    finish(page.modeAnimation());
    page.newWorkspaceNameField()->setText("Autumn fair");
    page.updateFiles({"/tmp/flyer.png", "/tmp/banner.png", "/tmp/logo.svg"});
    finish(page.fileStateAnimation());
    save(page.view(), QStringLiteral("filedrop-create-files"));
    page.clearFields();
    finish(page.fileStateAnimation());
    save(page.view(), QStringLiteral("filedrop-create-nofile"));
    EXPECT_FALSE(page.commentView()->isVisible());
}

INSTANTIATE_TEST_SUITE_P(Palettes, WorkspacesScreenshotsTest, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "dark" : "light"; });

} // namespace
