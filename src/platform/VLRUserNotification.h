#pragma once

#include <QDateTime>
#include <QString>
#include <QVariantMap>

#include <memory>

// How the user answered a notification.
enum VLRUserNotificationActivationType : int {
    VLRUserNotificationActivationTypeNone = 0,
    VLRUserNotificationActivationTypeContentsClicked = 1,
    VLRUserNotificationActivationTypeActionButtonClicked = 2,
};

// One notification for the user: what it says, when it is shown, its optional
// action button, a dictionary of strings that comes back unchanged when the
// user activates it, and how it was activated.
class VLRUserNotification
{
public:
    const QString& title() const { return m_title; }
    void setTitle(const QString& title) { m_title = title; }

    const QString& informativeText() const { return m_informativeText; }
    void setInformativeText(const QString& text) { m_informativeText = text; }

    // A null date means at once.
    const QDateTime& deliveryDate() const { return m_deliveryDate; }
    void setDeliveryDate(const QDateTime& date) { m_deliveryDate = date; }

    bool hasActionButton() const { return m_hasActionButton; }
    void setHasActionButton(bool hasActionButton) { m_hasActionButton = hasActionButton; }

    const QString& actionButtonTitle() const { return m_actionButtonTitle; }
    void setActionButtonTitle(const QString& title) { m_actionButtonTitle = title; }

    const QVariantMap& userInfo() const { return m_userInfo; }
    void setUserInfo(const QVariantMap& userInfo) { m_userInfo = userInfo; }

    // Set by the notification centre when the user activates the notification.
    VLRUserNotificationActivationType activationType() const { return m_activationType; }
    void setActivationType(VLRUserNotificationActivationType type) { m_activationType = type; }

private:
    QString m_title;
    QString m_informativeText;
    QDateTime m_deliveryDate;
    bool m_hasActionButton = false;
    QString m_actionButtonTitle;
    QVariantMap m_userInfo;
    VLRUserNotificationActivationType m_activationType = VLRUserNotificationActivationTypeNone;
};

using VLRUserNotificationPtr = std::shared_ptr<VLRUserNotification>;
