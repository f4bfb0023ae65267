#pragma once

#include "sdk/net/RemoteEndpoint.h"
#include "sdk/transfers/TransferRunner.h"

#include <memory>
#include <optional>

class Database;
class QNetworkAccessManager;
class QNetworkReply;
class Sha256;

// One run of a download from the team server, on the queue's worker: the
// revision's content into the hidden partial beside the target, asked for
// with a Range from what the partial already holds (whose bytes are hashed
// again first), checked against the server's SHA-256 at the end and put in
// place by the same rules as a download of the local service. A partial
// stays for a resume when the network fails or the run is stopped; it goes
// when its content turns out wrong. Nothing is written before the server
// has agreed to send the content.
class RemoteDownloadRun
{
public:
    static constexpr qint64 readBufferSize = 8 * 1024 * 1024;
    static constexpr qint64 chunkSize = 1024 * 1024;

    RemoteDownloadRun(QNetworkAccessManager& network, const RemoteEndpoint& endpoint, Database& database,
                      const QString& databaseFolder, const TransferJob& job, const TransferRunner::Context& context);
    ~RemoteDownloadRun();

    TransferResult run();

private:
    // What an earlier run left: its bytes are hashed and counted as done.
    std::optional<TransferResult> resume();
    // Takes the answer's first bytes: the partial is made, or emptied when
    // the server sends the whole after all.
    bool accept(int status, const QByteArray& contentRange);
    // Writes what has arrived; false after a failure to write.
    bool drain(QNetworkReply* reply);
    TransferResult finish(const QByteArray& digestHeader);

    QNetworkAccessManager& m_network;
    RemoteEndpoint m_endpoint;
    Database& m_database;
    QString m_databaseFolder;
    TransferJob m_job;
    const TransferRunner::Context& m_context;
    QString m_partial;
    int m_fd = -1;
    qint64 m_have = 0;
    std::unique_ptr<Sha256> m_sha;
    QByteArray m_buffer;
    std::optional<TransferResult> m_writeFailure;
};
