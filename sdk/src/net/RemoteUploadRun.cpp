#include "sdk/net/RemoteUploadRun.h"

#include "sdk/base/ServiceError.h"
#include "sdk/net/FileSlice.h"
#include "sdk/net/RemoteCall.h"
#include "sdk/store/SafeName.h"
#include "sdk/store/Sha256.h"

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QScopeGuard>
#include <QTimer>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A cut-off is asked about and gone on from this many times in one run;
// more means the network is unfit, and the run fails for a later retry.
constexpr int maxCutOffs = 3;

TransferResult unreadable(const QString& path)
{
    return TransferResult::failed(ServiceError::make(
        ServiceError::FileUnreadable,
        QStringLiteral("\"%1\": %2").arg(QFileInfo(path).fileName(), QString::fromLocal8Bit(std::strerror(errno)))));
}

} // namespace

RemoteUploadRun::RemoteUploadRun(QNetworkAccessManager& network, const RemoteEndpoint& endpoint, const TransferJob& job,
                                 const TransferRunner::Context& context)
    : m_network(network)
    , m_endpoint(endpoint)
    , m_job(job)
    , m_context(context)
{ }

TransferResult RemoteUploadRun::run()
{
    const QFileInfo source(m_job.filePath);
    if (source.isDir())
        return TransferResult::failed(ServiceError::make(ServiceError::FolderNotUploadable, source.fileName()));
    const int fd = ::open(QFile::encodeName(m_job.filePath).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return unreadable(m_job.filePath);
    const auto closeFile = qScopeGuard([fd] { ::close(fd); });
    struct stat status;
    if (::fstat(fd, &status) != 0)
        return unreadable(m_job.filePath);
    const qint64 size = status.st_size;
    m_context.sized(size);

    qint64 offset = 0;
    if (!m_job.uploadId.isEmpty())
        if (auto ended = askOffset(size, &offset))
            return *ended;
    if (m_job.uploadId.isEmpty()) {
        QByteArray digest;
        if (auto ended = hash(fd, &digest))
            return *ended;
        if (auto ended = announce(digest, size))
            return *ended;
        offset = 0;
    }
    return send(fd, size, offset);
}

std::optional<TransferResult> RemoteUploadRun::hash(int fd, QByteArray* digest)
{
    Sha256 sha;
    QByteArray buffer(hashBlockSize, Qt::Uninitialized);
    for (qint64 at = 0;;) {
        if (m_context.shouldStop())
            return TransferResult::stopped();
        const ssize_t got = ::pread(fd, buffer.data(), size_t(buffer.size()), off_t(at));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return unreadable(m_job.filePath);
        if (got == 0)
            break;
        sha.add(buffer.constData(), got);
        at += got;
    }
    *digest = sha.hexDigest();
    return std::nullopt;
}

std::optional<TransferResult> RemoteUploadRun::announce(const QByteArray& digest, qint64 size)
{
    const QJsonObject body{{QStringLiteral("workspace"), m_job.workspaceId},
                           {QStringLiteral("fileName"), SafeName::component(QFileInfo(m_job.filePath).fileName())},
                           {QStringLiteral("size"), size},
                           {QStringLiteral("sha256"), QString::fromLatin1(digest)},
                           {QStringLiteral("publish"), true},
                           {QStringLiteral("text"), m_job.text}};
    RemoteCall call(m_network.post(m_endpoint.request(QStringLiteral("uploads")),
                                   QJsonDocument(body).toJson(QJsonDocument::Compact)));
    if (!call.wait(m_context.shouldStop))
        return TransferResult::stopped();
    const QString id = call.json().value(QStringLiteral("id")).toString();
    if (call.status() != 201 || id.isEmpty())
        return TransferResult::failed(call.failure());
    m_job.uploadId = id;
    m_context.noted(m_job);
    return std::nullopt;
}

// An upload the server no longer knows, or one of a file that has another
// size now, is forgotten: the run starts a new one.
std::optional<TransferResult> RemoteUploadRun::askOffset(qint64 size, qint64* offset)
{
    RemoteCall call(m_network.head(m_endpoint.request(QStringLiteral("uploads/") + m_job.uploadId)));
    if (!call.wait(m_context.shouldStop))
        return TransferResult::stopped();
    bool known = false;
    const qint64 length = call.header("Upload-Length").toLongLong(&known);
    if (call.status() == 404 || (call.status() == 204 && (!known || length != size))) {
        forgetUpload();
        return std::nullopt;
    }
    bool given = false;
    *offset = call.header("Upload-Offset").toLongLong(&given);
    if (call.status() != 204 || !given)
        return TransferResult::failed(call.failure());
    return std::nullopt;
}

TransferResult RemoteUploadRun::send(int fd, qint64 size, qint64 offset)
{
    reportAt(offset);
    for (int cutOffs = 0;;) {
        QNetworkRequest request = m_endpoint.request(QStringLiteral("uploads/") + m_job.uploadId);
        const qint64 length = std::min(bodySize, size - offset);
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/offset+octet-stream"));
        request.setHeader(QNetworkRequest::ContentLengthHeader, length);
        request.setRawHeader("Upload-Offset", QByteArray::number(offset));
        request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
        auto* body = new FileSlice(fd, offset, length);
        RemoteCall call(m_network.sendCustomRequest(request, "PATCH", body));
        body->setParent(call.reply());
        qint64 sent = 0;
        QObject::connect(call.reply(), &QNetworkReply::uploadProgress, call.reply(), [&](qint64 bytes, qint64) {
            if (bytes > sent)
                reportAt(offset + bytes);
            sent = std::max(sent, bytes);
        });
        if (!call.wait(m_context.shouldStop))
            return TransferResult::stopped();
        bool given = false;
        const qint64 serverOffset = call.header("Upload-Offset").toLongLong(&given);
        switch (call.status()) {
        case 201: {
            TransferResult result;
            result.revisionId = call.json().value(QStringLiteral("revision")).toString();
            result.totalSize = size;
            result.filePath = m_job.filePath;
            reportAt(size);
            return result;
        }
        case 204:
        case 409:
            if (!given)
                break;
            offset = serverOffset;
            reportAt(offset);
            continue;
        case 422:
            // The server's check of the whole found other bytes than were
            // announced: the file changed under the upload.
            forgetUpload();
            return TransferResult::failed(
                ServiceError::make(ServiceError::FileChanged, QFileInfo(m_job.filePath).fileName()));
        case 404:
            forgetUpload();
            break;
        default:
            break;
        }
        // Cut off, or refused while an earlier, broken request of the same
        // upload still holds it on the server: ask where it stands.
        const vlr::Error failure = call.failure();
        if (call.status() != 0 && call.status() != 409)
            return TransferResult::failed(failure);
        if (++cutOffs > maxCutOffs)
            return TransferResult::failed(failure);
        if (call.status() == 409 && !pause())
            return TransferResult::stopped();
        if (auto ended = askOffset(size, &offset))
            return ended->outcome == TransferResult::Outcome::Stopped ? *ended : TransferResult::failed(failure);
        if (m_job.uploadId.isEmpty())
            return TransferResult::failed(failure);
        reportAt(offset);
    }
}

bool RemoteUploadRun::pause()
{
    QEventLoop loop;
    QTimer::singleShot(retryDelay, &loop, &QEventLoop::quit);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (m_context.shouldStop())
            loop.quit();
    });
    poll.start(RemoteCall::stopPollInterval);
    loop.exec();
    return !m_context.shouldStop();
}

void RemoteUploadRun::reportAt(qint64 offset)
{
    if (offset != m_reported)
        m_context.advanced(offset - m_reported);
    m_reported = offset;
}

void RemoteUploadRun::forgetUpload()
{
    m_job.uploadId.clear();
    m_context.noted(m_job);
}
