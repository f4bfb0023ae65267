#pragma once

#include "sdk/versions/VersionManifest.h"

#include "service/VLRVersionChecker.h"

#include <QNetworkAccessManager>
#include <QSslConfiguration>

#include <functional>
#include <memory>
#include <optional>

// One check of the running version against the version manifest that the
// library's settings name (a file or a web address). With none named, the
// running version is the current one. An https address is trusted as the
// TLS configuration says (a team server's own certificate); with
// absentIsCurrent, an address that has no manifest (404) means the same as
// none named.
class LocalVersionChecker : public VLRVersionChecker, public std::enable_shared_from_this<LocalVersionChecker>
{
public:
    explicit LocalVersionChecker(const QUrl& manifestURL,
                                 const QSslConfiguration& tls = QSslConfiguration::defaultConfiguration(),
                                 bool absentIsCurrent = false);

    void checkVersion(const VLRVersionCheckHandler& handler) override;
    void getVersionInfo(const VLRVersionInfoHandler& handler) override;

private:
    using ManifestHandler = std::function<void(const VersionManifest& manifest, const vlr::OptionalError& error)>;

    // Reads the manifest once; later calls get the first answer.
    void readManifest(const ManifestHandler& handler);

    QUrl m_manifestURL;
    QSslConfiguration m_tls;
    bool m_absentIsCurrent = false;
    std::optional<VersionManifest> m_manifest;
    vlr::OptionalError m_error;
    std::unique_ptr<QNetworkAccessManager> m_network;
};
