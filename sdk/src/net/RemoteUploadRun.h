#pragma once

#include "sdk/net/RemoteEndpoint.h"
#include "sdk/transfers/TransferRunner.h"

#include <chrono>
#include <optional>

class QNetworkAccessManager;

// One run of an upload to the team server, on the queue's worker: the
// file's SHA-256 first, then an upload announced to the server (its id is
// noted with the job, so that even a restart of the client goes on with
// it), then the bytes in large PATCH bodies read straight from the file.
// After a cut-off the server is asked for its offset and the upload goes
// on from there; when the server can't be reached the run fails and a
// retry resumes. A folder is refused for now.
class RemoteUploadRun
{
public:
    static constexpr qint64 bodySize = 256 * 1024 * 1024;
    static constexpr qint64 hashBlockSize = 4 * 1024 * 1024;
    static constexpr auto retryDelay = std::chrono::milliseconds(500);

    RemoteUploadRun(QNetworkAccessManager& network, const RemoteEndpoint& endpoint, const TransferJob& job,
                    const TransferRunner::Context& context);

    TransferResult run();

private:
    // Each gives a result only when the upload ends there.
    std::optional<TransferResult> hash(int fd, QByteArray* digest);
    std::optional<TransferResult> announce(const QByteArray& digest, qint64 size);
    std::optional<TransferResult> askOffset(qint64 size, qint64* offset);
    TransferResult send(int fd, qint64 size, qint64 offset);
    // Waits a moment before asking again; false when stopped meanwhile.
    bool pause();
    // Moves the reported progress to where the server is.
    void reportAt(qint64 offset);
    void forgetUpload();

    QNetworkAccessManager& m_network;
    RemoteEndpoint m_endpoint;
    TransferJob m_job;
    const TransferRunner::Context& m_context;
    qint64 m_reported = 0;
};
