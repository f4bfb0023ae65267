// Renders the workspaces and file drop pages offscreen to PNG files for
// people to look at, under a light and a dark desktop palette.

#include "WorkspacesFixture.h"

#include "fakes/FakeWorkspaceUser.h"
#include "lists/ListTableView.h"
#include "support/TestFiles.h"
#include "widgets/VLRFonts.h"
#include "workspaces/FileDropViewController.h"
#include "workspaces/FileInfoViewController.h"
#include "workspaces/WorkspaceCellViewController.h"
#include "workspaces/WorkspacesViewController.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QPalette>
#include <QScrollBar>

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

// A portrait as members upload them: a colour and an initial.
QImage portrait(const QColor& colour, QChar initial)
{
    QImage image(96, 96, QImage::Format_ARGB32);
    image.fill(colour);
    QPainter painter(&image);
    painter.setPen(Qt::white);
    painter.setFont(VLRFonts::muli(48, QFont::Bold));
    painter.drawText(image.rect(), Qt::AlignCenter, QString(initial));
    return image;
}

TEST_P(WorkspacesScreenshotsTest, WorkspaceList)
{
    const QDateTime now(QDate(2026, 11, 25), QTime(15, 0));
    WorkspacesViewController page(services(), [now] { return now; });
    page.setDelegate(&delegate);
    page.view()->resize(PageSize);
    page.updateWorkspaces({});
    save(page.view(), QStringLiteral("list-empty"));
    EXPECT_TRUE(page.createWorkspaceButton()->isVisible());

    // Five workspaces of spread dates, each with a few of nine people, most
    // with a portrait.
    VLRWorkspaceList workspaces;
    const int ages[] = {3600, 26 * 3600, 2 * 86400, 6 * 86400, 40 * 86400};
    const char* names[] = {"Spring campaign", "Posters for the autumn fair, second round", "Zines", "Brand book",
                           "Archive 2025"};
    for (int w = 0, member = 0; w < 5; ++w) {
        auto workspace = FakeWorkspace::make(QString::number(w), names[w], now.addSecs(-ages[w]));
        VLRWorkspaceUserList users;
        for (int i = 0; i < 2 + (w * 3) % 9; ++i, ++member) {
            const QChar initial = QChar(u'A' + member % 9);
            auto user = FakeWorkspaceUser::make(initial, "Lee", i == 0);
            if (member % 4 != 3)
                user->setAvatar(portrait(QColor::fromHsv(member * 47 % 360, 150, 200), initial));
            users.append(user);
        }
        workspace->setWorkspaceUsers(users);
        workspaces.append(workspace);
    }
    page.updateWorkspaces(workspaces);
    save(page.view(), QStringLiteral("list-sections"));
    auto* first = qobject_cast<WorkspaceCellViewController*>(page.rows().value(1));
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->nameLabel()->stringValue(), "Spring campaign");
    page.tableView()->verticalScrollBar()->setValue(page.tableView()->verticalScrollBar()->maximum());
    save(page.view(), QStringLiteral("list-sections-end"));
}

INSTANTIATE_TEST_SUITE_P(Palettes, WorkspacesScreenshotsTest, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "dark" : "light"; });

} // namespace
