#include "sdk/versions/VersionManifest.h"

#include "sdk/base/ServiceError.h"
#include "sdk/versions/LocalVersionInfo.h"

#include "service/VLRVersionInfo.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QVersionNumber>

VersionManifest VersionManifest::current(const QString& runningVersion)
{
    VersionManifest manifest;
    manifest.m_runningVersion = runningVersion;
    manifest.m_latestVersion = runningVersion;
    manifest.m_latestVersionNice = runningVersion;
    manifest.m_releaseNotesHTML = QStringLiteral("");
    return manifest;
}

VersionManifest VersionManifest::parse(const QByteArray& json, const QString& runningVersion, vlr::OptionalError* error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    const QJsonObject object = document.object();
    const QString latest = object.value(QStringLiteral("latestVersion")).toString();
    if (!document.isObject() || QVersionNumber::fromString(latest).isNull()) {
        if (error)
            *error = ServiceError::make(ServiceError::VersionInfoUnreadable,
                                        parseError.error != QJsonParseError::NoError
                                            ? parseError.errorString()
                                            : QStringLiteral("it names no latest version"));
        return current(runningVersion);
    }
    auto text = [&](const char* key) {
        const QJsonValue value = object.value(QLatin1String(key));
        return value.isString() ? value.toString() : QString();
    };
    VersionManifest manifest;
    manifest.m_runningVersion = runningVersion;
    manifest.m_latestVersion = latest;
    manifest.m_latestVersionNice = text("latestVersionNice").isEmpty() ? latest : text("latestVersionNice");
    manifest.m_minimumVersion = text("minimumVersion");
    manifest.m_releaseNotesHTML = text("releaseNotesHTML").isNull() ? QStringLiteral("") : text("releaseNotesHTML");
    manifest.m_termsOfService = text("termsOfService");
    manifest.m_downloadPageURL = text("downloadPageURL");
    if (error)
        error->reset();
    return manifest;
}

bool VersionManifest::unsupported() const
{
    const QVersionNumber minimum = QVersionNumber::fromString(m_minimumVersion);
    return !minimum.isNull() && QVersionNumber::fromString(m_runningVersion) < minimum;
}

bool VersionManifest::outOfDate() const
{
    return QVersionNumber::fromString(m_runningVersion) < QVersionNumber::fromString(m_latestVersion);
}

VLRVersionInfoPtr VersionManifest::info() const
{
    auto info = std::make_shared<LocalVersionInfo>();
    info->setCurrentVersion(m_runningVersion);
    info->setLatestVersionNice(m_latestVersionNice);
    info->setReleaseNotesHTML(m_releaseNotesHTML);
    info->setTermsOfService(m_termsOfService);
    info->setDownloadPageURL(m_downloadPageURL.isEmpty() ? QUrl() : QUrl(m_downloadPageURL));
    return info;
}
