#pragma once

#include "service/VLRVersionInfo.h"

#include <memory>

// A version record that a test fills in.
class FakeVersionInfo final : public VLRVersionInfo
{
public:
    using VLRVersionInfo::setCurrentVersion;
    using VLRVersionInfo::setDownloadPageURL;
    using VLRVersionInfo::setLatestVersionNice;
    using VLRVersionInfo::setReleaseNotesHTML;
    using VLRVersionInfo::setTermsOfService;

    static std::shared_ptr<FakeVersionInfo> make(const QString& latest, const QString& notes = QString(),
                                                 const QString& terms = QString())
    {
        auto info = std::make_shared<FakeVersionInfo>();
        info->setCurrentVersion(QStringLiteral("2.0.0"));
        info->setLatestVersionNice(latest);
        info->setReleaseNotesHTML(notes);
        info->setTermsOfService(terms);
        info->setDownloadPageURL(QUrl(QStringLiteral("https://veluria.example.org/download")));
        return info;
    }
};
