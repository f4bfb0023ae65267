#pragma once

#include "platform/VLRUserNotification.h"

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <functional>

class VLRUserDefaults;
class VLRUserNotificationCenter;

// The only way the program tells the user anything outside the popover. Each
// form returns the scheduled notification, or nil when the user switched
// notifications off. A burst comes out one every six seconds, in order, by
// delivery dates read from the clock it is given. Used on the GUI thread.
class VLRNotificationScheduling
{
public:
    static constexpr int NotificationSpacingSeconds = 6;

    // Neither is owned; a null centre shows nothing. An empty clock reads the
    // system's.
    VLRNotificationScheduling(VLRUserDefaults* defaults, VLRUserNotificationCenter* center,
                              std::function<QDateTime()> clock = {});

    // No user dictionary: activating it does nothing.
    VLRUserNotificationPtr vlr_scheduledNotificationWithTitle(const QString& title, const QString& text);
    // The type, and the object identifier unless it is null.
    VLRUserNotificationPtr vlr_scheduledNotificationWithTitle(const QString& title, const QString& text,
                                                              const QString& objectId, const QString& type);
    // With an action button; the file's path and the object identifier unless null.
    VLRUserNotificationPtr vlr_scheduledNotificationWithTitle(const QString& title, const QString& text,
                                                              const QString& actionButtonTitle, const QString& objectId,
                                                              const QUrl& fileURL, const QString& type);

    // Makes a notification, spaced after the last one, without scheduling it.
    VLRUserNotificationPtr notificationWithTitle(const QString& title, const QString& text,
                                                 const QString& actionButtonTitle);

    // The last delivery date handed out; null before the first notification.
    QDateTime lastNotificationDeliveryDate() const { return m_lastDeliveryDate; }

private:
    bool notificationsOn() const;
    VLRUserNotificationPtr schedule(const QString& title, const QString& text, const QString& actionButtonTitle,
                                    const QVariantMap& userInfo);

    VLRUserDefaults* m_defaults;
    VLRUserNotificationCenter* m_center;
    std::function<QDateTime()> m_clock;
    QDateTime m_lastDeliveryDate;
};
