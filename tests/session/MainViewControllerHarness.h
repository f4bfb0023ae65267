#pragma once

#include "app/VLRUserDefaultsKeys.h"
#include "fakes/FakeClientServices.h"
#include "fakes/FakeUserSession.h"
#include "pages/RecordingPages.h"
#include "session/MainViewController.h"
#include "widgets/StatusItemImageView.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

// A main controller with recording pages, a recording notification centre
// and desktop, settings in a temporary folder, a fixed clock and a fresh test
// double of the service.
class MainViewControllerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        defaults()->setBool(true, VLRUserDefaultsKeyShowNotifications);
        defaults()->setBool(true, VLRUserDefaultsKeyAutoOpenAssets);

        statusView = new StatusItemImageView(QRect(0, 0, 24, 24), true);
        application.statusView = statusView;
        controller = std::make_unique<MainViewController>(parts.take(), &application, fakes.services());
        controller->loadView();
        notifications->setDelegate(controller.get());
        journal.clear();
    }

    void TearDown() override
    {
        controller.reset();
        delete statusView;
    }

    FakeService& service() { return fakes.library; }
    VLRUserDefaults* defaults() { return fakes.defaults.get(); }

    // Signs in as the login page would, and forgets what binding told.
    std::shared_ptr<FakeUserSession> bind(std::shared_ptr<FakeUserSession> session = FakeUserSession::make())
    {
        controller->didLoginWithSession(session, false);
        journal.clear();
        session->observations.entries.clear();
        return session;
    }

    QStringList notificationTitles() const
    {
        QStringList titles;
        for (const auto& n : notifications->scheduledNotifications())
            titles.append(n->title());
        return titles;
    }

    QTemporaryDir settingsFolder;
    FakeClientServices fakes{settingsFolder.path()};
    QDateTime& now = fakes.now;
    PageJournal journal;
    RecordingParts parts{&journal};
    RecordingApplication application{&journal};
    StatusItemImageView* statusView = nullptr;
    std::shared_ptr<RecordingNotificationCenter> notifications = fakes.notificationCenter;
    std::shared_ptr<RecordingDesktopServices> desktop = fakes.desktop;
    std::unique_ptr<MainViewController> controller;
};
