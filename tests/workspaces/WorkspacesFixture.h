#pragma once

#include "app/VLRUserDefaultsKeys.h"
#include "fakes/FakeClientServices.h"
#include "fakes/FakeWorkspace.h"
#include "workspaces/FileDropViewControllerDelegate.h"
#include "workspaces/WorkspacesViewControllerDelegate.h"

#include <QAbstractAnimation>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// Both delegates of the workspaces subsystem, keeping what they are asked and
// the completion handlers, for a test to answer when it likes.
class RecordingWorkspacesDelegate : public FileDropViewControllerDelegate, public WorkspacesViewControllerDelegate
{
public:
    struct Upload
    {
        std::optional<QStringList> files;
        VLRWorkspacePtr workspace;
        QString comment;
        bool publish = false;
        VLRErrorHandler handler;
    };
    struct Creation
    {
        QString name;
        std::optional<QStringList> files;
        QString comment;
        VLRErrorHandler handler;
    };

    std::vector<Upload> uploads;
    std::vector<Creation> creations;
    QStringList calls;
    bool needsConfirmation = false;
    bool loading = false;

    void fileDropViewControllerUploadedFiles(FileDropPage*, const std::optional<QStringList>& files,
                                             const VLRWorkspacePtr& workspace, const QString& comment, bool publish,
                                             const VLRErrorHandler& handler) override
    {
        uploads.push_back({files, workspace, comment, publish, handler});
    }
    void fileDropViewControllerCreatedWorkspaceNamed(FileDropPage*, const QString& name,
                                                     const std::optional<QStringList>& files, const QString& comment,
                                                     const VLRErrorHandler& handler) override
    {
        creations.push_back({name, files, comment, handler});
    }
    void fileDropViewControllerWantsPopUpToggled(FileDropPage*) override { calls.append("popUpToggled"); }
    bool fileDropViewControllerEmailNeedsConfirmation() override { return needsConfirmation; }
    bool fileDropViewControllerLoading() override { return loading; }

    void workspaceViewControllerHadCellClicked(WorkspacesPage*) override { calls.append("cellClicked"); }
    void workspaceViewControllerDidReceiveFiles(WorkspacesPage*, const QStringList& files,
                                                const VLRWorkspacePtr& workspace) override
    {
        calls.append(QStringLiteral("didReceiveFiles %1 %2").arg(files.join(','), workspace->name()));
    }
    void workspaceViewControllerCreateWorkspaceClicked() override { calls.append("createWorkspaceClicked"); }
    bool workspaceViewControllerEmailNeedsConfirmation() override { return needsConfirmation; }
    bool workspaceViewControllerLoading() override { return loading; }
};

class WorkspacesTest : public ::testing::Test
{
protected:
    WorkspacesTest() { fakes.defaults->setBool(true, VLRUserDefaultsKeyShowNotifications); }

    ClientServices services() { return fakes.services(); }
    // Titles and texts of the notifications scheduled so far.
    QStringList notifications() const
    {
        QStringList shown;
        for (const auto& notification : fakes.notificationCenter->scheduledNotifications())
            shown.append(notification->title() + " | " + notification->informativeText());
        return shown;
    }
    // Runs an animation to its end at once.
    static void finish(QAbstractAnimation* animation)
    {
        if (animation)
            animation->setCurrentTime(animation->totalDuration());
    }

    QTemporaryDir folder;
    FakeClientServices fakes{folder.path()};
    RecordingWorkspacesDelegate delegate;
};
