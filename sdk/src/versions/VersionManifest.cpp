#include "sdk/versions/VersionManifest.h"

#include "sdk/base/ServiceError.h"
#include "sdk/versions/LocalVersionInfo.h"

#include "service/VLRVersionInfo.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QVersionNumber>

namespace {

// A version is dotted numbers and nothing else: "2.1.0-beta" or "2.x" would
// otherwise compare by whatever prefix happened to parse.
QVersionNumber strictVersion(const QString& text)
{
    qsizetype suffix = 0;
    const QVersionNumber version = QVersionNumber::fromString(text, &suffix);
    return suffix == text.size() ? version : QVersionNumber();
}

} // namespace

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
    auto refuse = [&](const QString& why) {
        if (error)
            *error = ServiceError::make(ServiceError::VersionInfoUnreadable, why);
        return current(runningVersion);
    };
    if (json.size() > MaximumSize)
        return refuse(QStringLiteral("it is larger than %1 bytes").arg(MaximumSize));
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return refuse(parseError.errorString());
    if (!document.isObject())
        return refuse(QStringLiteral("it is not a JSON object"));
    const QJsonObject object = document.object();
    auto text = [&](const char* key) {
        const QJsonValue value = object.value(QLatin1String(key));
        return value.isString() ? value.toString() : QString();
    };
    const QString latest = text("latestVersion");
    if (latest.isEmpty())
        return refuse(QStringLiteral("it names no latest version"));
    if (strictVersion(latest).isNull())
        return refuse(QStringLiteral("the latest version \"%1\" is not a version").arg(latest));
    const QString minimum = text("minimumVersion");
    if (!minimum.isEmpty() && strictVersion(minimum).isNull())
        return refuse(QStringLiteral("the minimum version \"%1\" is not a version").arg(minimum));
    const QString sha256 = text("sha256").toLower();
    static const QRegularExpression hexDigest(QStringLiteral("^[0-9a-f]{64}$"));
    if (!sha256.isEmpty() && !hexDigest.match(sha256).hasMatch())
        return refuse(QStringLiteral("its sha256 is not 64 hexadecimal digits"));

    VersionManifest manifest;
    manifest.m_runningVersion = runningVersion;
    manifest.m_latestVersion = latest;
    manifest.m_latestVersionNice = text("latestVersionNice").isEmpty() ? latest : text("latestVersionNice");
    manifest.m_minimumVersion = minimum;
    manifest.m_releaseNotesHTML = text("releaseNotesHTML").isNull() ? QStringLiteral("") : text("releaseNotesHTML");
    manifest.m_termsOfService = text("termsOfService");
    manifest.m_downloadPageURL = text("downloadPageURL");
    manifest.m_packageURL = QUrl(text("packageURL"));
    manifest.m_sha256 = sha256;
    if (error)
        error->reset();
    return manifest;
}

bool VersionManifest::unsupported() const
{
    const QVersionNumber minimum = strictVersion(m_minimumVersion);
    return !minimum.isNull() && QVersionNumber::fromString(m_runningVersion) < minimum;
}

bool VersionManifest::outOfDate() const
{
    return QVersionNumber::fromString(m_runningVersion) < strictVersion(m_latestVersion);
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
