#pragma once

#include <QString>

// Every setting the program stores, with the store named beside it.

// Standard store.
inline const QString VLRUserDefaultsKeyFirstLaunchDate = QStringLiteral("VLRUserDefaultsKeyFirstLaunchDate");
inline const QString VLRUserDefaultsKeyUpdatePostponedDate = QStringLiteral("VLRUserDefaultsKeyUpdatePostponedDate");
inline const QString VLRUserDefaultsKeyShowNotifications = QStringLiteral("VLRUserDefaultsKeyShowNotifications");
inline const QString VLRUserDefaultsKeyAutoOpenAssets = QStringLiteral("VLRUserDefaultsKeyAutoOpenAssets");
inline const QString VLRUserDefaultsKeyLimitDownloadCacheSize =
    QStringLiteral("VLRUserDefaultsKeyLimitDownloadCacheSize");
inline const QString VLRUserDefaultsKeyLaunchRestProxy = QStringLiteral("VLRUserDefaultsKeyLaunchRestProxy");
inline const QString VLRUserDefaultsKeyEmail = QStringLiteral("com.veluria.Veluria.Email");

// Persistent domain of its own, shared with other programs of the service.
inline const QString VLRUserDefaultsPersistentDomain = QStringLiteral("com.veluria-dev.Veluria2.UserDefaults");
inline const QString VLRUserDefaultsKeyEnvironment = QStringLiteral("com.veluria-dev.Veluria.Environment");
