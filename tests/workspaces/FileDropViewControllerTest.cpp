// The file drop form: its two modes, its two file states, what it hands its
// delegate and how it answers the delegate's results.

#include "WorkspacesFixture.h"

#include "app/AppFlavor.h"
#include "support/TestFiles.h"
#include "widgets/PageStyle.h"
#include "workspaces/AddFilesPanel.h"
#include "workspaces/FileDropViewController.h"
#include "workspaces/FileInfoViewController.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileSystemModel>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QParallelAnimationGroup>
#include <QTemporaryDir>
#include <QTest>

namespace {

class FileDropTest : public WorkspacesTest
{
protected:
    void SetUp() override
    {
        page.setDelegate(&delegate);
        page.view()->resize(360, 472);
        page.view()->show();
    }

    QStringList popUpTitles()
    {
        QStringList titles;
        for (int i = 0; i < page.workspacePopUp()->count(); ++i)
            titles.append(page.workspacePopUp()->itemText(i));
        return titles;
    }

    void choose(int index)
    {
        page.workspacePopUp()->setCurrentIndex(index);
        page.workspaceSelectionChanged();
        finish(page.modeAnimation());
    }

    bool controlsEnabled() { return page.button()->isEnabled() && page.workspacePopUp()->isEnabled(); }

    FileDropViewController page{services()};
    std::shared_ptr<FakeWorkspace> posters = FakeWorkspace::make("w1", "Posters");
    std::shared_ptr<FakeWorkspace> flyers = FakeWorkspace::make("w2", "Flyers");
};

TEST_F(FileDropTest, ModeFollowsThePopUpAndOnlyARealChangeIsAnimated)
{
    // Without workspaces the create item is all there is.
    page.updateWorkspaces({});
    EXPECT_EQ(popUpTitles(), QStringList{"-- Create Workspace --"});
    EXPECT_TRUE(page.creatingWorkspace());
    EXPECT_EQ(page.modeAnimation(), nullptr);
    EXPECT_TRUE(page.newWorkspaceNameField()->isVisible());
    EXPECT_FALSE(page.commentView()->isVisible());

    // The first list with workspaces moves to publish mode over a second.
    page.updateWorkspaces({posters, FakeWorkspace::make("w3", QString()), flyers});
    EXPECT_EQ(popUpTitles(), (QStringList{"Posters", "", "Flyers", "-- Create Workspace --"}));
    EXPECT_FALSE(page.creatingWorkspace());
    ASSERT_NE(page.modeAnimation(), nullptr);
    EXPECT_EQ(page.modeAnimation()->duration(), 1000);
    finish(page.modeAnimation());
    EXPECT_FALSE(page.newWorkspaceNameField()->isVisible());
    EXPECT_TRUE(page.commentView()->isVisible());
    EXPECT_DOUBLE_EQ(FileDropViewController::alphaOf(page.commentView()), 1.0);
    page.updateWorkspaces({posters, FakeWorkspace::make("w3", "a\nb\u202E"), flyers});
    EXPECT_EQ(popUpTitles().value(1), "a\uFFFDb\uFFFD");
    // The send button stands higher in create mode than in publish mode.
    const int publishButtonY = page.button()->y();

    // Choosing the last item creates; the restored index is kept by place.
    choose(3);
    EXPECT_TRUE(page.creatingWorkspace());
    EXPECT_LT(page.button()->y(), publishButtonY);
    EXPECT_DOUBLE_EQ(FileDropViewController::alphaOf(page.commentView()), 0.0);
    choose(2);
    page.updateWorkspaces({flyers, posters, FakeWorkspace::make("w4", "Zines")});
    EXPECT_EQ(page.workspacePopUp()->currentText(), "Zines");
    EXPECT_FALSE(page.creatingWorkspace());
    EXPECT_EQ(page.button()->y(), publishButtonY);

    // Selecting a workspace for a drop leaves the mode and the remembered index.
    choose(3);
    page.selectWorkspace(posters);
    EXPECT_EQ(page.workspacePopUp()->currentText(), "Posters");
    EXPECT_TRUE(page.creatingWorkspace());
    EXPECT_EQ(page.selectedWorkspaceIndex(), 3);
}

TEST_F(FileDropTest, FilesMoveTheButtonUpAndEachNewListReplacesTheLast)
{
    writeFile(folder.filePath("poster.final.pdf"), QByteArray(2048, 'x'));
    writeFile(folder.filePath("notes.txt"), "n");
    const int centredY = page.addFileButton()->y();
    EXPECT_DOUBLE_EQ(FileDropViewController::alphaOf(page.fileInfoView()), 0.0);

    page.updateFiles({folder.filePath("poster.final.pdf")});
    ASSERT_NE(page.fileStateAnimation(), nullptr);
    EXPECT_EQ(page.fileStateAnimation()->duration(), 1500);
    finish(page.fileStateAnimation());
    EXPECT_LT(page.addFileButton()->y(), centredY);
    EXPECT_DOUBLE_EQ(FileDropViewController::alphaOf(page.fileInfoView()), 1.0);
    EXPECT_EQ(page.fileInfoView()->y(), page.addFileButton()->geometry().bottom() + 1 + 8);
    EXPECT_EQ(page.fileInfoViewController()->nameLabel()->text(), "poster.final");
    EXPECT_EQ(page.addFileButton()->mouseOverStyle(), VLRMouseOverStyleBackground);

    // A drop on the panel replaces the files; it doesn't add to them.
    page.viewDidReceiveDroppedFiles(nullptr, {folder.filePath("notes.txt"), folder.path()});
    EXPECT_EQ(page.filesToUpload(), (QStringList{folder.filePath("notes.txt"), folder.path()}));
    EXPECT_EQ(page.fileInfoViewController()->sizeLabel()->text(), "2 files");

    page.clearFields();
    finish(page.fileStateAnimation());
    EXPECT_EQ(page.addFileButton()->y(), centredY);
    EXPECT_DOUBLE_EQ(FileDropViewController::alphaOf(page.fileInfoView()), 0.0);
    EXPECT_EQ(page.filesToUpload(), std::nullopt);
    EXPECT_EQ(page.addFileButton()->mouseOverStyle(), VLRMouseOverStyleImage);
}

TEST_F(FileDropTest, FilesHandedWhileThePageIsNarrowEndWhereTheResizedPagePlacesThem)
{
    // As when files come from the command line before the page was first shown.
    writeFile(folder.filePath("poster.pdf"), "p");
    page.view()->resize(100, 472);
    page.updateFiles({folder.filePath("poster.pdf")});
    page.view()->resize(360, 472);
    finish(page.fileStateAnimation());
    EXPECT_EQ(page.fileInfoView()->geometry().center().x(), page.view()->rect().center().x());
    EXPECT_GT(page.fileInfoView()->width(), 200);
}

TEST_F(FileDropTest, PublishSendsWhatTheFormHoldsAndAnswersEveryOutcome)
{
    page.updateWorkspaces({posters, flyers});
    choose(1);

    // Nothing to publish: nothing happens.
    page.buttonClicked();
    EXPECT_TRUE(delegate.uploads.empty());
    EXPECT_TRUE(controlsEnabled());

    page.updateFiles({"/tmp/a.png", "/tmp/b.png"});
    page.commentView()->setPlainText("Have a look");
    page.buttonClicked();
    ASSERT_EQ(delegate.uploads.size(), 1u);
    EXPECT_EQ(delegate.uploads[0].files, (QStringList{"/tmp/a.png", "/tmp/b.png"}));
    EXPECT_EQ(delegate.uploads[0].workspace, flyers);
    EXPECT_EQ(delegate.uploads[0].comment, "Have a look");
    EXPECT_TRUE(delegate.uploads[0].publish);
    EXPECT_FALSE(controlsEnabled());

    // A missing file speaks with the error's own words; the form stays.
    delegate.uploads[0].handler(
        vlr::Error{vlr::VLRFrameworkErrorDomain,
                   23,
                   "File not found",
                   {{vlr::NSLocalizedDescriptionKey, "File not found"},
                    {vlr::NSLocalizedFailureReasonErrorKey, "Unable to locate the file: b.png"}}});
    EXPECT_TRUE(controlsEnabled());
    page.buttonClicked();
    delegate.uploads[1].handler(vlr::Error{"VLRWebErrorDomain", 7, "The workspace is full.", {}});
    EXPECT_EQ(notifications(),
              (QStringList{"File not found | Unable to locate the file: b.png",
                           "Error publishing to \"Flyers\" | The workspace is full."}));
    EXPECT_EQ(page.filesToUpload()->size(), 2);
    EXPECT_EQ(page.commentView()->toPlainText(), "Have a look");

    // Success empties the form; a comment alone goes out without files.
    page.buttonClicked();
    delegate.uploads[2].handler(std::nullopt);
    EXPECT_EQ(page.filesToUpload(), std::nullopt);
    EXPECT_TRUE(page.commentView()->toPlainText().isEmpty());
    page.commentView()->setPlainText("Just a note");
    page.buttonClicked();
    EXPECT_EQ(delegate.uploads[3].files, std::nullopt);
    EXPECT_EQ(delegate.uploads[3].comment, "Just a note");
}

TEST_F(FileDropTest, CreateSendsTheTrimmedNameAndKeepsFilesForThePublishThatFollows)
{
    page.updateWorkspaces({});
    page.newWorkspaceNameField()->setText(" \t \n");
    page.buttonClicked();
    EXPECT_TRUE(delegate.creations.empty());
    EXPECT_TRUE(page.newWorkspaceNameField()->text().isEmpty());
    EXPECT_EQ(PageStyle::backgroundColor(page.newWorkspaceNameField()), AppFlavor::errorColor());
    EXPECT_TRUE(controlsEnabled());

    page.updateFiles({"/tmp/a.png"});
    page.commentView()->setPlainText("First draft");
    page.newWorkspaceNameField()->setText("  Posters <b>2</b> ");
    page.buttonClicked();
    ASSERT_EQ(delegate.creations.size(), 1u);
    EXPECT_EQ(delegate.creations[0].name, "Posters <b>2</b>");
    EXPECT_EQ(delegate.creations[0].files, QStringList{"/tmp/a.png"});
    EXPECT_FALSE(controlsEnabled());

    delegate.creations[0].handler(vlr::Error{"VLRWebErrorDomain", 9, "That name is taken.", {}});
    EXPECT_EQ(notifications(), QStringList{"Error creating workspace \"  Posters <b>2</b> \" | That name is taken."});
    EXPECT_EQ(page.newWorkspaceNameField()->text(), "  Posters <b>2</b> ");

    // The library lists the new workspace before it answers.
    page.buttonClicked();
    page.updateWorkspaces({FakeWorkspace::make("w9", "Posters <b>2</b>")});
    finish(page.modeAnimation());
    choose(1);
    delegate.creations[1].handler(std::nullopt);
    EXPECT_FALSE(page.creatingWorkspace());
    EXPECT_EQ(page.workspacePopUp()->currentText(), "Posters <b>2</b>");
    EXPECT_TRUE(page.newWorkspaceNameField()->text().isEmpty());
    EXPECT_EQ(page.filesToUpload(), QStringList{"/tmp/a.png"});
    EXPECT_EQ(page.commentView()->toPlainText(), "First draft");
}

} // namespace

TEST(AddFilesPanelTest, ConfirmingTakesTheSelectedFilesAndFoldersAlike)
{
    QTemporaryDir folder;
    QDir(folder.path()).mkdir("Plans");
    QFile(folder.filePath("a.txt")).open(QIODevice::WriteOnly);
    AddFilesPanel panel(QStringLiteral("Choose"));
    panel.setAttribute(Qt::WA_DeleteOnClose, false);
    panel.setDirectory(folder.path());
    panel.show();
    auto* list = panel.findChild<QListView*>(QStringLiteral("listView"));
    ASSERT_TRUE(list);
    auto* model = qobject_cast<QFileSystemModel*>(list->model());
    ASSERT_TRUE(model);
    ASSERT_TRUE(QTest::qWaitFor([&] { return model->rowCount(list->rootIndex()) == 2; }));
    list->selectAll();
    QMetaObject::invokeMethod(&panel, "accept");
    QStringList chosen = panel.chosenPaths();
    chosen.sort();
    EXPECT_EQ(chosen, (QStringList{folder.filePath("Plans"), folder.filePath("a.txt")}));
    EXPECT_EQ(panel.result(), QDialog::Accepted);
}
