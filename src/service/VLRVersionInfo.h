#pragma once

#include "service/VLRObject.h"

#include <QUrl>

// What a version check found out about the newest release.
class VLRVersionInfo : public VLRObject
{
public:
    const QString& currentVersion() const { return m_currentVersion; }
    const QString& latestVersionNice() const { return m_latestVersionNice; }
    const QString& releaseNotesHTML() const { return m_releaseNotesHTML; }
    const QString& termsOfService() const { return m_termsOfService; }
    const QUrl& downloadPageURL() const { return m_downloadPageURL; }

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setCurrentVersion(const QString& value) { m_currentVersion = value; }
    void setLatestVersionNice(const QString& value) { m_latestVersionNice = value; }
    void setReleaseNotesHTML(const QString& value) { m_releaseNotesHTML = value; }
    void setTermsOfService(const QString& value) { m_termsOfService = value; }
    void setDownloadPageURL(const QUrl& value) { m_downloadPageURL = value; }

private:
    QString m_currentVersion;
    QString m_latestVersionNice;
    QString m_releaseNotesHTML;
    QString m_termsOfService;
    QUrl m_downloadPageURL;
};
