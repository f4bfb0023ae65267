#pragma once

#include "sdk/net/RemoteEndpoint.h"
#include "sdk/transfers/TransferRunner.h"

#include <memory>
#include <optional>

class Database;
class Sha256;

// One run of a download from the team server, on the queue's worker: the
// revision's content into the hidden partial beside the target, asked for
// with a Range from what the partial already holds (whose bytes are hashed
// again first), checked against the server's SHA-256 at the end and put in
// place by the same rules as a download of the local service. A partial
// stays for a resume when the network fails or the run is stopped; it goes
// when its content turns out wrong. Nothing is written before the server
// has agreed to send the content. A folder comes as a tar stream of its
// files: the partial is then a folder, the stream a hidden file in it, and
// the files are unpacked beside it once the stream is checked.
class RemoteDownloadRun
{
public:
    static constexpr qint64 chunkSize = 4 * 1024 * 1024;

    RemoteDownloadRun(const RemoteEndpoint& endpoint, int idleTimeoutMs, Database& database,
                      const QString& databaseFolder, const TransferJob& job, const TransferRunner::Context& context);
    ~RemoteDownloadRun();

    TransferResult run();

private:
    // What an earlier run left: its bytes are hashed and counted as done.
    std::optional<TransferResult> resume();
    // Takes the answer's first bytes: the partial is made, or emptied when
    // the server sends the whole after all.
    bool accept(int status, const QByteArray& contentRange, const QByteArray& contentType);
    // Writes and hashes the buffer's first bytes; false after a failure to write.
    bool take(qint64 got);
    TransferResult finish(const QByteArray& digestHeader);
    std::optional<TransferResult> unpack();
    // Where the content's bytes go: the partial, or the stream in the
    // partial folder.
    QString bytesPath() const;
    // Throws away whatever is at the partial, file or folder.
    void discardPartial();

    RemoteEndpoint m_endpoint;
    int m_idleTimeoutMs;
    Database& m_database;
    QString m_databaseFolder;
    TransferJob m_job;
    const TransferRunner::Context& m_context;
    QString m_partial;
    // The content is a folder's tar stream.
    bool m_folder = false;
    int m_fd = -1;
    qint64 m_have = 0;
    std::unique_ptr<Sha256> m_sha;
    QByteArray m_buffer;
    std::optional<TransferResult> m_writeFailure;
};
