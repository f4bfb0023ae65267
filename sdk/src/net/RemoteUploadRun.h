#pragma once

#include "sdk/installs/FolderArchive.h"
#include "sdk/net/RemoteEndpoint.h"
#include "sdk/store/Sha256.h"
#include "sdk/transfers/TransferRunner.h"

#include <chrono>
#include <functional>
#include <optional>

class HttpStream;
class QNetworkAccessManager;

// One run of an upload to the team server, on the queue's worker: an
// upload announced to the server (its id is noted with the job, so that
// even a restart of the client goes on with it), then the rest of the bytes
// in one PATCH body read straight from the file into a content stream of
// their own (the small calls go through the network access manager),
// hashed on the way; a last, empty PATCH names the SHA-256 that the server
// checks before it keeps the file.
// After a cut-off the server is asked for its offset and the upload goes
// on from there; when the server can't be reached the run fails and a
// retry resumes. A folder goes as one tar stream of its files, made anew
// from the files for each attempt.
class RemoteUploadRun
{
public:
    // Reads of the file, for its hash and its bytes, go through one buffer this large.
    static constexpr qint64 blockSize = 4 * 1024 * 1024;
    static constexpr auto retryDelay = std::chrono::milliseconds(500);

    RemoteUploadRun(QNetworkAccessManager& network, const RemoteEndpoint& endpoint, int idleTimeoutMs,
                    const TransferJob& job, const TransferRunner::Context& context);

    TransferResult run();

private:
    // Each gives a result only when the upload ends there.
    // Writes the upload's bytes from offset on (length of them) into the call.
    using Source = std::function<std::optional<TransferResult>(qint64 offset, qint64 length, HttpStream& call)>;

    TransferResult runFolder();
    // Announces the upload (the digest empty when it is named at the end)
    // unless one is under way, then sends what the server lacks.
    TransferResult upload(qint64 size, const QByteArray& digest, const Source& source);
    std::optional<TransferResult> announce(const QByteArray& digest, qint64 size);
    std::optional<TransferResult> askOffset(qint64 size, qint64* offset);
    TransferResult send(qint64 size, qint64 offset, const Source& source);
    std::optional<TransferResult> sendFile(int fd, qint64 offset, qint64 length, HttpStream& call);
    std::optional<TransferResult> hashUpTo(int fd, qint64 offset);
    std::optional<TransferResult> readAt(int fd, qint64 at, qint64 most, qint64* got);
    std::optional<TransferResult> folderEnded(FolderArchive::Outcome outcome, const FolderArchive& archive,
                                              bool tooLong);
    // The source is not what was announced: the upload starts over next time.
    TransferResult changed();
    // Waits a moment before asking again; false when stopped meanwhile.
    bool pause();
    // Moves the reported progress to where the server is.
    void reportAt(qint64 offset);
    void forgetUpload();

    QNetworkAccessManager& m_network;
    RemoteEndpoint m_endpoint;
    int m_idleTimeoutMs;
    TransferJob m_job;
    const TransferRunner::Context& m_context;
    qint64 m_reported = 0;
    bool m_folder = false;
    QByteArray m_buffer;
    // A file's hash so far, and how to name the whole once it is there;
    // a folder's stream is hashed before it is announced.
    Sha256 m_running;
    qint64 m_hashedUpTo = 0;
    std::function<std::optional<TransferResult>(QByteArray* digest)> m_lateDigest;
};
