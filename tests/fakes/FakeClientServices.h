#pragma once

#include "fakes/FakeService.h"
#include "fakes/RecordingDesktopServices.h"
#include "fakes/RecordingNotificationCenter.h"
#include "platform/ClientServices.h"
#include "platform/VLRNotificationScheduling.h"
#include "platform/VLRUserDefaults.h"

#include <QDateTime>

#include <memory>

// Doubles of everything the client is handed at start: the scriptable
// service library, settings in the given folder, the real spacing of
// notifications on a recording centre and a clock that stands still until a
// test moves it, and a recording desktop.
class FakeClientServices
{
public:
    explicit FakeClientServices(const QString& settingsFolder)
        : m_settingsFolder(settingsFolder)
    {
        restart();
    }

    // Settings read afresh from their folder and no notification shown yet,
    // as at the next start; whoever holds the old ones must be gone.
    void restart()
    {
        notifications.reset();
        defaults = std::make_unique<VLRUserDefaults>(m_settingsFolder);
        notifications = std::make_unique<VLRNotificationScheduling>(defaults.get(), notificationCenter.get(),
                                                                    [this] { return now; });
    }

    ClientServices services()
    {
        return {&library, defaults.get(), notificationCenter.get(), notifications.get(), desktop.get()};
    }

    QDateTime now = QDateTime(QDate(2026, 11, 22), QTime(10, 0));
    FakeService library;
    std::unique_ptr<VLRUserDefaults> defaults;
    std::shared_ptr<RecordingNotificationCenter> notificationCenter = std::make_shared<RecordingNotificationCenter>();
    std::unique_ptr<VLRNotificationScheduling> notifications;
    std::shared_ptr<RecordingDesktopServices> desktop = std::make_shared<RecordingDesktopServices>();

private:
    QString m_settingsFolder;
};
