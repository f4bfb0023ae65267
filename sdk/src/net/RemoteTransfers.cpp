#include "sdk/net/RemoteTransfers.h"

#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/net/RemoteCall.h"
#include "sdk/net/RemoteTransferRunner.h"
#include "sdk/store/SafeName.h"
#include "sdk/transfers/DownloadLink.h"

#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUuid>

TransferRunner::Factory RemoteTransfers::runner(const RemoteEndpoint& endpoint, const QString& databaseFolder)
{
    return [endpoint, databaseFolder] { return std::make_unique<RemoteTransferRunner>(endpoint, databaseFolder); };
}

std::optional<RemoteTransfers::Revision> RemoteTransfers::Revision::fromJson(const QJsonObject& object,
                                                                             const QString& workspaceId)
{
    Revision revision;
    revision.id = object.value(QStringLiteral("id")).toString();
    revision.workspaceId = object.value(QStringLiteral("workspace")).toString(workspaceId);
    revision.fileName = object.value(QStringLiteral("fileName")).toString();
    revision.size = object.value(QStringLiteral("size")).toInteger(-1);
    revision.sha256 = object.value(QStringLiteral("sha256")).toString();
    if (QUuid::fromString(revision.id).isNull() || QUuid::fromString(revision.workspaceId).isNull()
        || revision.fileName.isEmpty() || revision.size < 0)
        return std::nullopt;
    return revision;
}

TransferJob RemoteTransfers::downloadJob(const QString& userId, const Revision& revision, const QString& folder,
                                         qint64 subType)
{
    TransferJob job =
        TransferJob::download(userId, revision.workspaceId, revision.id, revision.size,
                              folder + QLatin1Char('/') + SafeName::component(revision.fileName), subType);
    job.text = revision.fileName;
    return job;
}

QString RemoteTransfers::assetOf(const TransferJob& job)
{
    return job.workspaceId + QLatin1Char('/') + job.text;
}

void RemoteTransfers::resolveDownloadLink(QNetworkAccessManager& network, const RemoteEndpoint& endpoint,
                                          const QString& link, const QString& userId, qint64 subType,
                                          const FolderForWorkspace& folderFor, const JobHandler& handler)
{
    const auto target = DownloadLink::parse(link);
    if (!target) {
        MainThread::post([handler] { handler(std::nullopt, ServiceError::make(ServiceError::InvalidLink)); });
        return;
    }
    QNetworkReply* reply = network.get(endpoint.request(QStringLiteral("revisions/") + target->revisionId));
    QObject::connect(reply, &QNetworkReply::finished, reply, [reply, target, userId, subType, folderFor, handler] {
        reply->deleteLater();
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const QJsonObject body = QJsonDocument::fromJson(reply->readAll()).object();
        const auto revision = status == 200 ? Revision::fromJson(body) : std::nullopt;
        // A link whose workspace is not the revision's names nothing.
        if (status == 404 || (revision && revision->workspaceId != target->workspaceId))
            return handler(std::nullopt, ServiceError::make(ServiceError::RevisionNotFound));
        if (!revision)
            return handler(std::nullopt, RemoteCall::failureOf(*reply, body));
        handler(downloadJob(userId, *revision, folderFor(revision->workspaceId), subType), std::nullopt);
    });
}
