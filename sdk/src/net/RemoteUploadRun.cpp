#include "sdk/net/RemoteUploadRun.h"

#include "sdk/base/ServiceError.h"
#include "sdk/installs/FolderArchive.h"
#include "sdk/net/HttpStream.h"
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

RemoteUploadRun::RemoteUploadRun(QNetworkAccessManager& network, const RemoteEndpoint& endpoint, int idleTimeoutMs,
                                 const TransferJob& job, const TransferRunner::Context& context)
    : m_network(network)
    , m_endpoint(endpoint)
    , m_idleTimeoutMs(idleTimeoutMs)
    , m_job(job)
    , m_context(context)
    , m_buffer(blockSize, Qt::Uninitialized)
{ }

TransferResult RemoteUploadRun::run()
{
    if (QFileInfo(m_job.filePath).isDir())
        return runFolder();
    const int fd = ::open(QFile::encodeName(m_job.filePath).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return unreadable(m_job.filePath);
    const auto closeFile = qScopeGuard([fd] { ::close(fd); });
    struct stat status;
    if (::fstat(fd, &status) != 0)
        return unreadable(m_job.filePath);
    const qint64 size = status.st_size;
    m_context.sized(size);
    // A file is hashed as it is sent, and its digest named once all its
    // bytes are there: it is read once rather than twice.
    m_lateDigest = [this, fd, size, named = QByteArray()](QByteArray* digest) mutable {
        if (named.isEmpty()) {
            if (auto ended = hashUpTo(fd, size))
                return ended;
            named = m_running.hexDigest();
        }
        *digest = named;
        return std::optional<TransferResult>();
    };
    return upload(size, QByteArray(),
                  [&](qint64 offset, qint64 length, HttpStream& call) { return sendFile(fd, offset, length, call); });
}

// The running hash covers the file up to the offset, read again from the
// start when a resume goes back before what it covers.
std::optional<TransferResult> RemoteUploadRun::hashUpTo(int fd, qint64 offset)
{
    if (offset < m_hashedUpTo) {
        m_running.hexDigest();
        m_hashedUpTo = 0;
    }
    while (m_hashedUpTo < offset) {
        if (m_context.shouldStop())
            return TransferResult::stopped();
        qint64 got = 0;
        if (auto ended = readAt(fd, m_hashedUpTo, offset - m_hashedUpTo, &got))
            return ended;
        m_running.add(m_buffer.constData(), got);
        m_hashedUpTo += got;
    }
    return std::nullopt;
}

// The file's next bytes at the position, at most this many, into the buffer.
std::optional<TransferResult> RemoteUploadRun::readAt(int fd, qint64 at, qint64 most, qint64* got)
{
    for (;;) {
        const ssize_t read = ::pread(fd, m_buffer.data(), size_t(std::min<qint64>(m_buffer.size(), most)), at);
        if (read < 0 && errno == EINTR)
            continue;
        if (read < 0)
            return unreadable(m_job.filePath);
        // Shorter than when it was announced.
        if (read == 0)
            return changed();
        *got = read;
        return std::nullopt;
    }
}

// A folder goes as the tar stream of its files, measured and hashed first:
// the size says whether an upload noted earlier is still the same one.
TransferResult RemoteUploadRun::runFolder()
{
    m_folder = true;
    FolderArchive archive(m_job.filePath, m_context.shouldStop);
    Sha256 sha;
    qint64 size = 0;
    const FolderArchive::Outcome measured = archive.write(0, [&](const char* data, qint64 length) {
        sha.add(data, length);
        size += length;
        return true;
    });
    if (measured != FolderArchive::Outcome::Done) {
        const auto ended = folderEnded(measured, archive, false);
        return ended ? *ended
                     : TransferResult::failed(ServiceError::make(ServiceError::FileUnreadable, archive.failure()));
    }
    m_context.sized(size);
    return upload(size, sha.hexDigest(),
                  [&](qint64 offset, qint64 length, HttpStream& call) -> std::optional<TransferResult> {
                      qint64 sent = 0;
                      bool tooLong = false;
                      const FolderArchive::Outcome outcome = archive.write(offset, [&](const char* data, qint64 count) {
                          tooLong = sent + count > length;
                          if (tooLong || !call.write(data, count))
                              return false;
                          sent += count;
                          reportAt(offset + sent);
                          return true;
                      });
                      if (outcome == FolderArchive::Outcome::Done && sent < length)
                          return changed();
                      return folderEnded(outcome, archive, tooLong);
                  });
}

std::optional<TransferResult> RemoteUploadRun::folderEnded(FolderArchive::Outcome outcome, const FolderArchive& archive,
                                                           bool tooLong)
{
    switch (outcome) {
    case FolderArchive::Outcome::Done:
        return std::nullopt;
    case FolderArchive::Outcome::Stopped:
        return TransferResult::stopped();
    case FolderArchive::Outcome::Refused:
        // More bytes than announced means a changed file; otherwise the
        // stream broke, which the call tells.
        if (tooLong)
            return changed();
        return std::nullopt;
    case FolderArchive::Outcome::Changed:
        return changed();
    case FolderArchive::Outcome::Unreadable:
        break;
    }
    return TransferResult::failed(ServiceError::make(ServiceError::FileUnreadable, archive.failure()));
}

TransferResult RemoteUploadRun::changed()
{
    forgetUpload();
    return TransferResult::failed(ServiceError::make(ServiceError::FileChanged, QFileInfo(m_job.filePath).fileName()));
}

TransferResult RemoteUploadRun::upload(qint64 size, const QByteArray& digest, const Source& source)
{
    qint64 offset = 0;
    if (!m_job.uploadId.isEmpty())
        if (auto ended = askOffset(size, &offset))
            return *ended;
    if (m_job.uploadId.isEmpty()) {
        if (auto ended = announce(digest, size))
            return *ended;
        offset = 0;
    }
    return send(size, offset, source);
}

std::optional<TransferResult> RemoteUploadRun::sendFile(int fd, qint64 offset, qint64 length, HttpStream& call)
{
    if (length > 0)
        if (auto ended = hashUpTo(fd, offset))
            return ended;
    for (qint64 at = 0; at < length;) {
        qint64 got = 0;
        if (auto ended = readAt(fd, offset + at, length - at, &got))
            return ended;
        if (!call.write(m_buffer.constData(), got))
            break;
        m_running.add(m_buffer.constData(), got);
        m_hashedUpTo += got;
        at += got;
        reportAt(offset + at);
    }
    return std::nullopt;
}

std::optional<TransferResult> RemoteUploadRun::announce(const QByteArray& digest, qint64 size)
{
    QJsonObject body{{QStringLiteral("workspace"), m_job.workspaceId},
                     {QStringLiteral("fileName"), SafeName::component(QFileInfo(m_job.filePath).fileName())},
                     {QStringLiteral("size"), size},
                     {QStringLiteral("publish"), true},
                     {QStringLiteral("text"), m_job.text},
                     {QStringLiteral("folder"), m_folder}};
    // A file's digest is named with its last bytes instead.
    if (!digest.isEmpty())
        body.insert(QStringLiteral("sha256"), QString::fromLatin1(digest));
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
    *offset = call.header("upload-offset").toLongLong(&given);
    if (call.status() != 204 || !given)
        return TransferResult::failed(call.failure());
    return std::nullopt;
}

TransferResult RemoteUploadRun::send(qint64 size, qint64 offset, const Source& source)
{
    reportAt(offset);
    for (int cutOffs = 0;;) {
        const qint64 length = size - offset;
        HttpStream call(m_endpoint, m_context.shouldStop, m_idleTimeoutMs);
        QList<std::pair<QByteArray, QByteArray>> headers{{"Content-Type", "application/offset+octet-stream"},
                                                         {"Upload-Offset", QByteArray::number(offset)}};
        if (length == 0 && m_lateDigest) {
            QByteArray digest;
            if (auto ended = m_lateDigest(&digest))
                return *ended;
            headers.append({"Upload-Digest", "sha-256=" + digest});
        }
        if (call.begin("PATCH", QStringLiteral("uploads/") + m_job.uploadId, headers, length))
            if (auto ended = source(offset, length, call))
                return *ended;
        if (call.state() == HttpStream::State::Open)
            call.readHead();
        if (call.state() == HttpStream::State::Stopped)
            return TransferResult::stopped();
        bool given = false;
        const qint64 serverOffset = call.header("upload-offset").toLongLong(&given);
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
            return changed();
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
