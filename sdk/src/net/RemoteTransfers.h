#pragma once

#include "sdk/net/RemoteEndpoint.h"
#include "sdk/transfers/TransferRunner.h"

#include <QJsonObject>

#include <functional>
#include <optional>

class QNetworkAccessManager;

// What a session of a team server needs to move files: the runner for its
// two queues, and download jobs made from links and from revisions that
// the server announces.
class RemoteTransfers
{
public:
    // For TransferQueue: uploads to and downloads from the endpoint's
    // server with its token; downloads are recorded in the local database
    // of that folder, as the local service's are.
    static TransferRunner::Factory runner(const RemoteEndpoint& endpoint, const QString& databaseFolder);

    // A file revision as the server describes it.
    struct Revision
    {
        QString id;
        QString workspaceId;
        QString fileName;
        qint64 size = 0;
        QString sha256;

        // From {"id", "workspace", "fileName", "size", "sha256"}, as GET
        // /v1/revisions/<id> and a "revision" event give it (the workspace
        // given apart for an event's nested revision); nullopt when a part is
        // missing.
        static std::optional<Revision> fromJson(const QJsonObject& object, const QString& workspaceId = QString());
    };
    // A download of the revision into the folder, under its file name made
    // safe; a name taken by then is settled when the file is put in place.
    static TransferJob downloadJob(const QString& userId, const Revision& revision, const QString& folder,
                                   qint64 subType);

    // Where a workspace's downloads go, asked on the GUI thread.
    using FolderForWorkspace = std::function<QString(const QString& workspaceId)>;
    using JobHandler = std::function<void(const std::optional<TransferJob>& job, const vlr::OptionalError& error)>;
    // Asks the server what a veluria://download link names and answers
    // later, once, on the GUI thread, with a job for the download queue or
    // with why not: not a link, a revision that isn't there or not in the
    // user's workspaces (the two are not told apart), the server's refusal
    // (an expired token keeps its code), or an unreachable server. The
    // network access manager lives on the GUI thread.
    static void resolveDownloadLink(QNetworkAccessManager& network, const RemoteEndpoint& endpoint, const QString& link,
                                    const QString& userId, qint64 subType, const FolderForWorkspace& folderFor,
                                    const JobHandler& handler);
};
