#pragma once

#include <QString>

// Keys of a notification's user dictionary; each value is its own name.
inline const QString VLRUserNotificationTypeKey = QStringLiteral("VLRUserNotificationTypeKey");
inline const QString VLRUserNotificationFilePathKey = QStringLiteral("VLRUserNotificationFilePathKey");
inline const QString VLRUserNotificationObjectIdentifierKey = QStringLiteral("VLRUserNotificationObjectIdentifierKey");

// Types, by which an activated notification is routed.
inline const QString VLRUserNotificationTypeTransferFailed = QStringLiteral("VLRUserNotificationTypeTransferFailed");
inline const QString VLRUserNotificationTypePasswordChanged = QStringLiteral("VLRUserNotificationTypePasswordChanged");
inline const QString VLRUserNotificationTypeDownloadCompleted =
    QStringLiteral("VLRUserNotificationTypeDownloadCompleted");
inline const QString VLRUserNotificationTypeUpdateAvailable = QStringLiteral("VLRUserNotificationTypeUpdateAvailable");
inline const QString VLRUserNotificationTypeErrorLoggingOut = QStringLiteral("VLRUserNotificationTypeErrorLoggingOut");
inline const QString VLRUserNotificationTypeNewPublication = QStringLiteral("VLRUserNotificationTypeNewPublication");
inline const QString VLRUserNotificationTypeCCExpired = QStringLiteral("VLRUserNotificationTypeCCExpired");
inline const QString VLRUserNotificationTypeCCAboutToExpire = QStringLiteral("VLRUserNotificationTypeCCAboutToExpire");
