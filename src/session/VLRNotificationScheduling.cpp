#include "session/VLRNotificationScheduling.h"

#include "platform/VLRUserDefaults.h"
#include "platform/VLRUserNotificationCenter.h"
#include "service/VLRLogFormat.h"
#include "app/VLRUserNotificationKeys.h"
#include "app/VLRUserDefaultsKeys.h"

namespace {

std::function<QDateTime()>& notificationClock()
{
    static std::function<QDateTime()> c;
    return c;
}

QDateTime& lastDeliveryDate()
{
    static QDateTime date;
    return date;
}

QDateTime now()
{
    return notificationClock() ? notificationClock()() : QDateTime::currentDateTime();
}

bool notificationsOn()
{
    return VLRUserDefaults::standardUserDefaults()->boolForKey(VLRUserDefaultsKeyShowNotifications);
}

VLRUserNotificationPtr schedule(const QString& title, const QString& text, const QString& actionButtonTitle,
                                const QVariantMap& userInfo)
{
    VLRUserNotificationPtr notification = notificationWithTitle(title, text, actionButtonTitle);
    if (!userInfo.isEmpty())
        notification->setUserInfo(userInfo);
    if (VLRUserNotificationCenter* center = VLRUserNotificationCenter::defaultUserNotificationCenter())
        center->scheduleNotification(notification);
    return notification;
}

} // namespace

VLRUserNotificationPtr vlr_scheduledNotificationWithTitle(const QString& title, const QString& text)
{
    if (!notificationsOn())
        return nullptr;
    return schedule(title, text, QString(), {});
}

VLRUserNotificationPtr vlr_scheduledNotificationWithTitle(const QString& title, const QString& text,
                                                          const QString& objectId, const QString& type)
{
    if (!notificationsOn())
        return nullptr;
    QVariantMap userInfo{{VLRUserNotificationTypeKey, type}};
    if (!objectId.isNull())
        userInfo.insert(VLRUserNotificationObjectIdentifierKey, objectId);
    return schedule(title, text, QString(), userInfo);
}

VLRUserNotificationPtr vlr_scheduledNotificationWithTitle(const QString& title, const QString& text,
                                                          const QString& actionButtonTitle, const QString& objectId,
                                                          const QUrl& fileURL, const QString& type)
{
    if (!notificationsOn())
        return nullptr;
    QVariantMap userInfo{{VLRUserNotificationTypeKey, type}};
    if (!fileURL.isEmpty())
        userInfo.insert(VLRUserNotificationFilePathKey, fileURL.toLocalFile());
    if (!objectId.isNull())
        userInfo.insert(VLRUserNotificationObjectIdentifierKey, objectId);
    return schedule(title, text, actionButtonTitle, userInfo);
}

VLRUserNotificationPtr notificationWithTitle(const QString& title, const QString& text,
                                               const QString& actionButtonTitle)
{
    VLRLogFormat(5, QStringLiteral("SDKClient"), "User Notification: %@: %@", title, text);

    const QDateTime current = now();
    QDateTime delivery = current;
    if (lastDeliveryDate().isValid())
        delivery = std::max(current, lastDeliveryDate().addSecs(vlr::NotificationSpacingSeconds));
    lastDeliveryDate() = delivery;

    auto notification = std::make_shared<VLRUserNotification>();
    notification->setTitle(title);
    notification->setInformativeText(text);
    notification->setDeliveryDate(delivery);
    if (!actionButtonTitle.isNull()) {
        notification->setHasActionButton(true);
        notification->setActionButtonTitle(actionButtonTitle);
    } else {
        notification->setHasActionButton(false);
    }
    return notification;
}

namespace vlr {

void setNotificationClock(std::function<QDateTime()> c)
{
    notificationClock() = std::move(c);
}

QDateTime lastNotificationDeliveryDate()
{
    return lastDeliveryDate();
}

void resetNotificationSpacing()
{
    lastDeliveryDate() = QDateTime();
}

} // namespace vlr
