#pragma once

#include "service/VLRError.h"
#include "service/VLRTypes.h"

#include <QByteArray>
#include <QString>

// The newest release as a version manifest describes it, a JSON object:
//   {"latestVersion": "2.1.0", "latestVersionNice": "2.1", "minimumVersion": "2.0.0",
//    "releaseNotesHTML": "...", "termsOfService": "...", "downloadPageURL": "https://..."}
// Only "latestVersion" is required.
class VersionManifest
{
public:
    // The manifest of a library that knows of nothing newer than itself.
    static VersionManifest current(const QString& runningVersion);
    // A manifest, or the error that says why the text is none.
    static VersionManifest parse(const QByteArray& json, const QString& runningVersion, vlr::OptionalError* error);

    bool unsupported() const;
    bool outOfDate() const;
    VLRVersionInfoPtr info() const;

private:
    QString m_runningVersion;
    QString m_latestVersion;
    QString m_latestVersionNice;
    QString m_minimumVersion;
    QString m_releaseNotesHTML;
    QString m_termsOfService;
    QString m_downloadPageURL;
};
