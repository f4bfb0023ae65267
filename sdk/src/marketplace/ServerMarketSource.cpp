#include "sdk/marketplace/ServerMarketSource.h"

#include "sdk/base/PrivateFiles.h"
#include "sdk/base/ServiceError.h"
#include "sdk/installs/Applications.h"
#include "sdk/installs/Installation.h"
#include "sdk/market/MarketError.h"
#include "sdk/marketplace/ServerCall.h"
#include "sdk/store/Sha256.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QUrl>
#include <QUuid>

namespace {
// Pictures larger than this are not the catalogue's.
constexpr qint64 maxPictureBytes = 8 * 1024 * 1024;

qint64 msOf(const QJsonValue& value)
{
    const QDateTime time = QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
    return time.isValid() ? time.toMSecsSinceEpoch() : 0;
}

QString textOf(const QJsonValue& value)
{
    return value.isString() ? value.toString() : QString();
}

QString catalogPath()
{
    return QStringLiteral("catalog?machine=")
        + QString::fromLatin1(QUrl::toPercentEncoding(Applications::thisMachine()));
}

vlr::Error serverFailed(const ServerCall::Answer& answer)
{
    if (answer.status == 401)
        return ServiceError::make(ServiceError::SignedOut);
    return MarketError::make(MarketError::ServerFailed, {}, answer.message());
}
} // namespace

ServerMarketSource::ServerMarketSource(const RemoteEndpoint& endpoint)
    : m_endpoint(endpoint)
{ }

QByteArray ServerMarketSource::picture(const QString& path, const QString& digest)
{
    if (digest.isEmpty())
        return {};
    {
        std::lock_guard lock(m_picturesMutex);
        if (m_pictures.contains(digest))
            return m_pictures.value(digest);
    }
    const ServerCall::Answer answer = ServerCall(m_endpoint).get(path);
    if (answer.status != 200 || answer.body.size() > maxPictureBytes)
        return {};
    std::lock_guard lock(m_picturesMutex);
    m_pictures.insert(digest, answer.body);
    return answer.body;
}

std::optional<MarketSnapshot> ServerMarketSource::snapshotOf(const QJsonObject& catalogue)
{
    const QJsonValue installers = catalogue.value(QStringLiteral("installers"));
    const QJsonValue purchases = catalogue.value(QStringLiteral("purchases"));
    if (!installers.isArray() || !purchases.isArray())
        return std::nullopt;
    MarketSnapshot snapshot;
    for (const QJsonValue& entry : catalogue.value(QStringLiteral("vendors")).toArray())
        snapshot.vendors.append({entry[QStringLiteral("id")].toString(), entry[QStringLiteral("name")].toString()});
    for (const QJsonValue& entry : catalogue.value(QStringLiteral("products")).toArray()) {
        const QString id = entry[QStringLiteral("id")].toString();
        snapshot.products.append(
            {id, entry[QStringLiteral("name")].toString(), textOf(entry[QStringLiteral("vendor")]),
             picture(QStringLiteral("products/%1/image").arg(id), textOf(entry[QStringLiteral("image")]))});
    }
    for (const QJsonValue& entry : installers.toArray()) {
        MarketSnapshot::Installer installer;
        installer.id = entry[QStringLiteral("id")].toString();
        installer.name = entry[QStringLiteral("name")].toString();
        installer.imageUrl = textOf(entry[QStringLiteral("imageURL")]);
        installer.image =
            picture(QStringLiteral("installers/%1/image").arg(installer.id), textOf(entry[QStringLiteral("image")]));
        for (const QJsonValue& product : entry[QStringLiteral("products")].toArray())
            installer.productIds.append(product.toString());
        const QJsonValue revision = entry[QStringLiteral("currentRevision")];
        installer.revisionId = textOf(revision[QStringLiteral("id")]);
        installer.version = textOf(revision[QStringLiteral("version")]);
        // What the server knows was installed here counts while its folder
        // is still there, as with the local service.
        const QJsonValue here = entry[QStringLiteral("installedHere")];
        installer.installedHere = here.isObject() && Applications::isPresent(installer.id);
        if (installer.installedHere) {
            installer.installedRevisionId = textOf(here[QStringLiteral("revision")]);
            installer.installedVersion = textOf(here[QStringLiteral("version")]);
        }
        installer.installedAnywhere = entry[QStringLiteral("installedAnywhere")].toBool();
        snapshot.installers.append(installer);
    }
    for (const QJsonValue& entry : purchases.toArray())
        snapshot.purchases.append({entry[QStringLiteral("id")].toString(), entry[QStringLiteral("product")].toString(),
                                   msOf(entry[QStringLiteral("renewsAt")]), entry[QStringLiteral("canceled")].toBool(),
                                   entry[QStringLiteral("paymentType")].toString(),
                                   msOf(entry[QStringLiteral("ccExpiresOn")]),
                                   entry[QStringLiteral("manageURL")].toString()});
    return snapshot;
}

std::optional<MarketSnapshot> ServerMarketSource::snapshot(ServiceThread&, QString* failure)
{
    const ServerCall::Answer answer = ServerCall(m_endpoint).get(catalogPath());
    auto snapshot = answer.status == 200 ? snapshotOf(answer.json()) : std::nullopt;
    if (!snapshot && failure)
        *failure = answer.message();
    return snapshot;
}

vlr::OptionalError ServerMarketSource::download(const QString& revisionId, const QString& sha256, qint64 size,
                                                const QString& name, const std::function<bool()>& shouldStop,
                                                const std::function<void(InstallRun::Phase, double)>& progress)
{
    const QString package = InstallRun::packagePath(revisionId);
    QFile file(package);
    if (!PrivateFiles::makeFolder(QFileInfo(package).path()) || !file.open(QIODevice::ReadWrite)
        || !PrivateFiles::restrict(package, false))
        return MarketError::make(MarketError::InstallFailed, name,
                                 QStringLiteral("Its download folder can't be made."));
    // What an earlier, broken download left counts: it is hashed, and the
    // download goes on after it.
    Sha256 hash;
    qint64 offset = 0;
    if (file.size() > size)
        file.resize(0);
    QByteArray chunk(1 << 20, Qt::Uninitialized);
    for (qint64 n; (n = file.read(chunk.data(), chunk.size())) > 0; offset += n)
        hash.add(chunk.constData(), n);
    if (offset < size) {
        const ServerCall::Answer answer =
            ServerCall(m_endpoint)
                .download(QStringLiteral("packages/") + revisionId, &file, &offset, shouldStop,
                          [&](const QByteArray& piece) {
                              // A server that sent the whole content again: start over.
                              if (offset == piece.size())
                                  hash.hexDigest();
                              hash.add(piece.constData(), piece.size());
                              progress(InstallRun::Phase::Download, size > 0 ? double(offset) / double(size) : 1.0);
                          });
        if (shouldStop())
            return ServiceError::cancelled();
        if (answer.status != 200 && answer.status != 206)
            return serverFailed(answer);
    }
    file.close();
    if (offset != size || hash.hexDigest() != sha256.toLatin1()) {
        QFile::remove(package);
        return MarketError::make(MarketError::PackageDamaged, name);
    }
    return std::nullopt;
}

vlr::OptionalError ServerMarketSource::install(ServiceThread&, const InstallRun::Job& job,
                                               const std::function<bool()>& shouldStop,
                                               const std::function<void(InstallRun::Phase, double)>& progress)
{
    // The catalogue of this moment says what the newest revision is and
    // whether a purchase still covers it.
    const ServerCall server(m_endpoint);
    const ServerCall::Answer answer = server.get(catalogPath());
    if (answer.status != 200)
        return serverFailed(answer);
    QJsonObject installer;
    for (const QJsonValue& entry : answer.json().value(QStringLiteral("installers")).toArray())
        if (entry[QStringLiteral("id")].toString() == job.installerId)
            installer = entry.toObject();
    if (installer.isEmpty())
        return MarketError::make(MarketError::InstallerNotFound);
    const QString name = InstallRun::shownName(installer.value(QStringLiteral("name")).toString());
    const QJsonObject revision = installer.value(QStringLiteral("currentRevision")).toObject();
    // The identifier names the partial package on this disk: it must be
    // the server's plain UUID and nothing else.
    const QString revisionId = revision.value(QStringLiteral("id")).toString();
    if (QUuid::fromString(revisionId).toString(QUuid::WithoutBraces) != revisionId)
        return MarketError::make(MarketError::NoRevision, name);

    if (auto failed = download(revisionId, revision.value(QStringLiteral("sha256")).toString(),
                               revision.value(QStringLiteral("size")).toInteger(), name, shouldStop, progress))
        return failed;
    progress(InstallRun::Phase::Install, 0);
    const QString package = InstallRun::packagePath(revisionId);
    QByteArray icon = picture(QStringLiteral("installers/%1/image").arg(job.installerId),
                              textOf(installer.value(QStringLiteral("image"))));
    const QJsonArray products = installer.value(QStringLiteral("products")).toArray();
    for (const QJsonValue& product : answer.json().value(QStringLiteral("products")).toArray())
        if (icon.isEmpty() && !products.isEmpty() && product[QStringLiteral("id")] == products.first())
            icon = picture(QStringLiteral("products/%1/image").arg(products.first().toString()),
                           textOf(product[QStringLiteral("image")]));
    const QString version = textOf(revision.value(QStringLiteral("version")));
    Installation installation(
        {job.installerId, name, version, package, revision.value(QStringLiteral("fileName")).toString(), icon},
        shouldStop, [&](double fraction) { progress(InstallRun::Phase::Install, fraction); });
    const bool installed = installation.run();
    QFile::remove(package);
    if (!installed)
        return installation.stopped() ? ServiceError::cancelled()
                                      : MarketError::make(MarketError::InstallFailed, name, installation.failure());
    const ServerCall::Answer recorded = server.send("POST", QStringLiteral("installs"),
                                                    {{QStringLiteral("installer"), job.installerId},
                                                     {QStringLiteral("revision"), revisionId},
                                                     {QStringLiteral("machine"), Applications::thisMachine()}});
    if (recorded.status != 201)
        return MarketError::make(MarketError::InstallFailed, name, recorded.message());
    return std::nullopt;
}

vlr::OptionalError ServerMarketSource::forgetInstall(ServiceThread&, const QString&, const QString& installerId)
{
    Installation::remove(installerId);
    const ServerCall::Answer answer =
        ServerCall(m_endpoint)
            .send("DELETE",
                  QStringLiteral("installs/%1?machine=%2")
                      .arg(QString::fromLatin1(QUrl::toPercentEncoding(installerId)),
                           QString::fromLatin1(QUrl::toPercentEncoding(Applications::thisMachine()))),
                  {});
    return answer.status == 204 ? vlr::OptionalError() : serverFailed(answer);
}

vlr::OptionalError ServerMarketSource::edit(ServiceThread&, const Edit&, QString*)
{
    return MarketError::make(MarketError::NotOnServer);
}
