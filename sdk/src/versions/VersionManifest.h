#pragma once

#include "service/VLRError.h"
#include "service/VLRTypes.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

// The newest release as a version manifest describes it, a JSON object:
//   {"latestVersion": "2.1.0", "latestVersionNice": "2.1", "minimumVersion": "2.0.0",
//    "releaseNotesHTML": "...", "termsOfService": "...", "downloadPageURL": "https://...",
//    "packageURL": "https://.../veluria-2.1.0.tar.gz", "sha256": "<64 hex digits>"}
// Only "latestVersion" is required. Versions are dotted numbers ("2.1.0") and
// are compared as numbers, never as text.
class VersionManifest
{
public:
    // A manifest larger than this is refused unread.
    static constexpr qint64 MaximumSize = 1024 * 1024;

    // The manifest of a library that knows of nothing newer than itself.
    static VersionManifest current(const QString& runningVersion);
    // A manifest, or the error that says why the text is none.
    static VersionManifest parse(const QByteArray& json, const QString& runningVersion, vlr::OptionalError* error);

    bool unsupported() const;
    bool outOfDate() const;
    VLRVersionInfoPtr info() const;

    // The package of the latest version and the SHA-256 of its bytes (lower
    // case hex), for the installer; empty where the manifest names none.
    const QUrl& packageURL() const { return m_packageURL; }
    const QString& sha256() const { return m_sha256; }

private:
    QString m_runningVersion;
    QString m_latestVersion;
    QString m_latestVersionNice;
    QString m_minimumVersion;
    QString m_releaseNotesHTML;
    QString m_termsOfService;
    QString m_downloadPageURL;
    QUrl m_packageURL;
    QString m_sha256;
};
