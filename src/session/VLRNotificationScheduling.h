#pragma once

#include "platform/VLRUserNotification.h"

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <functional>

// The only way the program tells the user anything outside the popover. Each
// returns the scheduled notification, or nil when the user switched
// notifications off. A burst comes out one every six seconds, in order.

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

namespace vlr {

constexpr int NotificationSpacingSeconds = 6;

// The clock the spacing reads; tests replace it. An empty function restores
// the real one.
void setNotificationClock(std::function<QDateTime()> clock);
// The last delivery date handed out; null before the first notification.
QDateTime lastNotificationDeliveryDate();
// Forgets the last delivery date, as a new process would.
void resetNotificationSpacing();

} // namespace vlr
