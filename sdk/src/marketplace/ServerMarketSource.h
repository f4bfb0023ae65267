#pragma once

#include "sdk/marketplace/MarketSource.h"
#include "sdk/net/RemoteEndpoint.h"

#include <QHash>

#include <mutex>

class QJsonObject;

// The marketplace of a team server: the catalogue is the server's answer
// for this machine, pictures are fetched once per content, and a package
// is downloaded over HTTPS into the same partial file that a local install
// uses, going on from its size after a break, checked against its SHA-256,
// installed by the same Installation, and the install told to the server.
// The catalogue itself is changed only by the server's administrators.
class ServerMarketSource : public MarketSource
{
public:
    explicit ServerMarketSource(const RemoteEndpoint& endpoint);

    std::optional<MarketSnapshot> snapshot(ServiceThread& thread, QString* failure) override;
    vlr::OptionalError install(ServiceThread& thread, const InstallRun::Job& job,
                               const std::function<bool()>& shouldStop,
                               const std::function<void(InstallRun::Phase, double)>& progress) override;
    vlr::OptionalError forgetInstall(ServiceThread& thread, const QString& userId, const QString& installerId) override;
    vlr::OptionalError edit(ServiceThread& thread, const Edit& edit, QString* installerId) override;

private:
    // The catalogue's JSON as a snapshot, with its pictures; nullopt when
    // the JSON is not a catalogue.
    std::optional<MarketSnapshot> snapshotOf(const QJsonObject& catalogue);

    QByteArray picture(const QString& path, const QString& digest);
    vlr::OptionalError download(const QString& revisionId, const QString& sha256, qint64 size, const QString& name,
                                const std::function<bool()>& shouldStop,
                                const std::function<void(InstallRun::Phase, double)>& progress);

    RemoteEndpoint m_endpoint;
    std::mutex m_picturesMutex;
    QHash<QString, QByteArray> m_pictures;
};
