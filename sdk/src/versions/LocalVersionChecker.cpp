#include "sdk/versions/LocalVersionChecker.h"

#include "sdk/base/LibrarySettings.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"

#include "sdk/base/LocalEnvironment.h"
#include "sdk/versions/VersionsLog.h"

#include <QNetworkReply>

#include <utility>

namespace {

// A server that does not answer within this time counts as unreachable.
constexpr int TimeoutMilliseconds = 15000;

} // namespace

LocalVersionChecker::LocalVersionChecker(const QUrl& manifestURL, const QSslConfiguration& tls, bool absentIsCurrent)
    : m_manifestURL(manifestURL)
    , m_tls(tls)
    , m_absentIsCurrent(absentIsCurrent)
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
    const QString scheme = m_manifestURL.scheme();
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https") && scheme != QLatin1String("file")) {
        const vlr::Error error = ServiceError::make(ServiceError::VersionInfoUnreadable,
                                                    QStringLiteral("it is neither a file nor a web address"));
        qCWarning(lcVersions, "The version manifest %s could not be read: %s",
                  qUtf8Printable(m_manifestURL.toDisplayString()), qUtf8Printable(error.localizedDescription));
        m_manifest = VersionManifest::current(running);
        m_error = error;
        MainThread::post([handler, manifest = *m_manifest, error] { handler(manifest, error); });
        return;
    }
    QNetworkRequest request(m_manifestURL);
    request.setTransferTimeout(TimeoutMilliseconds);
    request.setSslConfiguration(m_tls);
    QNetworkReply* reply = m_network->get(request);
    // A manifest that grows beyond the cap is dropped as soon as that shows,
    // so that a hostile or broken server can't fill the memory.
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64 total) {
        if (received > VersionManifest::MaximumSize || total > VersionManifest::MaximumSize) {
            reply->setProperty("tooLarge", true);
            reply->abort();
        }
    });
    std::weak_ptr<LocalVersionChecker> weakSelf = weak_from_this();
    const QUrl url = m_manifestURL;
    // The handler may hold the last reference to this checker, whose network
    // access owns the reply: it leaves the reply's connection when the answer
    // comes and runs at the next turn, so that the checker never goes while
    // its reply is being torn down.
    auto pending = std::make_shared<ManifestHandler>(handler);
    const bool absentIsCurrent = m_absentIsCurrent;
    QObject::connect(reply, &QNetworkReply::finished, reply, [weakSelf, reply, pending, running, url, absentIsCurrent] {
        reply->deleteLater();
        ManifestHandler handler = std::exchange(*pending, nullptr);
        vlr::OptionalError error;
        VersionManifest manifest = VersionManifest::current(running);
        if (reply->property("tooLarge").toBool())
            error = ServiceError::make(ServiceError::VersionInfoUnreadable,
                                       QStringLiteral("it is larger than %1 bytes").arg(VersionManifest::MaximumSize));
        else if (absentIsCurrent && reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == 404)
            ; // a server that publishes no manifest: the running version is the current one
        else if (reply->error() != QNetworkReply::NoError)
            error = ServiceError::make(ServiceError::VersionInfoUnreadable, reply->errorString());
        else
            manifest = VersionManifest::parse(reply->read(VersionManifest::MaximumSize + 1), running, &error);
        if (error)
            qCWarning(lcVersions, "The version manifest %s could not be read: %s",
                      qUtf8Printable(url.toDisplayString()), qUtf8Printable(error->localizedDescription));
        if (auto self = weakSelf.lock()) {
            self->m_manifest = manifest;
            self->m_error = error;
        }
        MainThread::post([handler, manifest, error] { handler(manifest, error); });
    });
}
