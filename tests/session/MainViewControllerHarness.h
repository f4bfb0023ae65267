#pragma once

#include "fakes/FakeService.h"
#include "fakes/FakeUserSession.h"
#include "fakes/RecordingDesktopServices.h"
#include "fakes/RecordingNotificationCenter.h"
#include "pages/RecordingPages.h"
#include "platform/VLRDesktopServices.h"
#include "platform/VLRUserDefaults.h"
#include "platform/VLRUserNotificationCenter.h"
#include "session/MainViewController.h"
#include "session/VLRNotificationScheduling.h"
#include "app/VLRUserDefaultsKeys.h"
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
        FakeService::reset();
        VLRUserDefaults::setStorageDirectory(settingsFolder.path());
        VLRUserDefaults::resetStandardUserDefaults();
        VLRUserDefaults::standardUserDefaults()->setBool(true, VLRUserDefaultsKeyShowNotifications);
        VLRUserDefaults::standardUserDefaults()->setBool(true, VLRUserDefaultsKeyAutoOpenAssets);
        notifications = std::make_shared<RecordingNotificationCenter>();
        VLRUserNotificationCenter::setDefaultUserNotificationCenter(notifications);
        desktop = std::make_shared<RecordingDesktopServices>();
        VLRDesktopServices::setSharedDesktopServices(desktop);
        vlr::resetNotificationSpacing();
        vlr::setNotificationClock([this] { return now; });

        statusView = new StatusItemImageView(QRect(0, 0, 24, 24), true);
        application.statusView = statusView;
        controller = std::make_unique<MainViewController>(parts.take(), &application);
        controller->loadView();
        notifications->setDelegate(controller.get());
        journal.clear();
    }

    void TearDown() override
    {
        controller.reset();
        delete statusView;
        vlr::setNotificationClock({});
        VLRUserNotificationCenter::setDefaultUserNotificationCenter(nullptr);
        VLRDesktopServices::setSharedDesktopServices(nullptr);
        VLRUserDefaults::resetStandardUserDefaults();
        VLRUserDefaults::setStorageDirectory(QString());
    }

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
    QDateTime now = QDateTime(QDate(2026, 11, 22), QTime(10, 0));
    PageJournal journal;
    RecordingParts parts{&journal};
    RecordingApplication application{&journal};
    StatusItemImageView* statusView = nullptr;
    std::shared_ptr<RecordingNotificationCenter> notifications;
    std::shared_ptr<RecordingDesktopServices> desktop;
    std::unique_ptr<MainViewController> controller;
};
