#include "platform/VLRNotificationScheduling.h"

#include "app/VLRUserDefaultsKeys.h"
#include "app/VLRUserNotificationKeys.h"
#include "platform/VLRUserDefaults.h"
#include "platform/VLRUserNotificationCenter.h"
#include "service/VLRLogFormat.h"

VLRNotificationScheduling::VLRNotificationScheduling(VLRUserDefaults* defaults, VLRUserNotificationCenter* center,
                                                     std::function<QDateTime()> clock)
    : m_defaults(defaults)
    , m_center(center)
    , m_clock(std::move(clock))
{ }

bool VLRNotificationScheduling::notificationsOn() const
{
    return m_defaults && m_defaults->boolForKey(VLRUserDefaultsKeyShowNotifications);
}

VLRUserNotificationPtr VLRNotificationScheduling::schedule(const QString& title, const QString& text,
                                                           const QString& actionButtonTitle,
                                                           const QVariantMap& userInfo)
{
    VLRUserNotificationPtr notification = notificationWithTitle(title, text, actionButtonTitle);
    if (!userInfo.isEmpty())
        notification->setUserInfo(userInfo);
    if (m_center)
        m_center->scheduleNotification(notification);
    return notification;
}

VLRUserNotificationPtr VLRNotificationScheduling::vlr_scheduledNotificationWithTitle(const QString& title,
                                                                                     const QString& text)
{
    if (!notificationsOn())
        return nullptr;
    return schedule(title, text, QString(), {});
}

VLRUserNotificationPtr VLRNotificationScheduling::vlr_scheduledNotificationWithTitle(const QString& title,
                                                                                     const QString& text,
                                                                                     const QString& objectId,
                                                                                     const QString& type)
{
    if (!notificationsOn())
        return nullptr;
    QVariantMap userInfo{{VLRUserNotificationTypeKey, type}};
    if (!objectId.isNull())
        userInfo.insert(VLRUserNotificationObjectIdentifierKey, objectId);
    return schedule(title, text, QString(), userInfo);
}

VLRUserNotificationPtr
VLRNotificationScheduling::vlr_scheduledNotificationWithTitle(const QString& title, const QString& text,
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

VLRUserNotificationPtr VLRNotificationScheduling::notificationWithTitle(const QString& title, const QString& text,
                                                                        const QString& actionButtonTitle)
{
    VLRLogFormat(5, QStringLiteral("SDKClient"), "User Notification: %@: %@", title, text);

    const QDateTime current = m_clock ? m_clock() : QDateTime::currentDateTime();
    QDateTime delivery = current;
    if (m_lastDeliveryDate.isValid())
        delivery = std::max(current, m_lastDeliveryDate.addSecs(NotificationSpacingSeconds));
    m_lastDeliveryDate = delivery;

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
