#include "sdk/versions/LocalVersionChecker.h"

#include "sdk/base/LibrarySettings.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"

#include "sdk/base/LocalEnvironment.h"

#include <QNetworkReply>

LocalVersionChecker::LocalVersionChecker(const QUrl& manifestURL)
    : m_manifestURL(manifestURL)
{ }

void LocalVersionChecker::checkVersion(const VLRVersionCheckHandler& handler)
{
    readManifest([handler](const VersionManifest& manifest, const vlr::OptionalError& error) {
        if (handler)
            handler(!error && manifest.unsupported(), !error && manifest.outOfDate(), error);
    });
}

void LocalVersionChecker::getVersionInfo(const VLRVersionInfoHandler& handler)
{
    readManifest([handler](const VersionManifest& manifest, const vlr::OptionalError& error) {
        if (handler)
            handler(error, error ? nullptr : manifest.info());
    });
}

void LocalVersionChecker::readManifest(const ManifestHandler& handler)
{
    const QString running = LocalEnvironment().appVersion();
    if (m_manifest || m_manifestURL.isEmpty()) {
        const VersionManifest manifest = m_manifest.value_or(VersionManifest::current(running));
        const vlr::OptionalError error = m_error;
        MainThread::post([handler, manifest, error] { handler(manifest, error); });
        return;
    }
    if (!m_network)
        m_network = std::make_unique<QNetworkAccessManager>();
    QNetworkReply* reply = m_network->get(QNetworkRequest(m_manifestURL));
    std::weak_ptr<LocalVersionChecker> weakSelf = weak_from_this();
    QObject::connect(reply, &QNetworkReply::finished, reply, [weakSelf, reply, handler, running] {
        reply->deleteLater();
        vlr::OptionalError error;
        VersionManifest manifest = VersionManifest::current(running);
        if (reply->error() != QNetworkReply::NoError)
            error = ServiceError::make(ServiceError::VersionInfoUnreadable, reply->errorString());
        else
            manifest = VersionManifest::parse(reply->readAll(), running, &error);
        if (auto self = weakSelf.lock()) {
            self->m_manifest = manifest;
            self->m_error = error;
        }
        handler(manifest, error);
    });
}
