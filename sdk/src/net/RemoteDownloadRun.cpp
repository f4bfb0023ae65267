#include "sdk/net/RemoteDownloadRun.h"

#include "sdk/base/PrivateFiles.h"
#include "sdk/base/ServiceError.h"
#include "sdk/installs/ArchiveUnpacker.h"
#include "sdk/net/HttpStream.h"
#include "sdk/net/RemoteTransfers.h"
#include "sdk/store/Sha256.h"
#include "sdk/transfers/DownloadRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
// How the server sends a folder: the tar stream of its files.
const QByteArray folderType = QByteArrayLiteral("application/x-tar");
} // namespace

RemoteDownloadRun::RemoteDownloadRun(const RemoteEndpoint& endpoint, int idleTimeoutMs, Database& database,
                                     const QString& databaseFolder, const TransferJob& job,
                                     const TransferRunner::Context& context)
    : m_endpoint(endpoint)
    , m_idleTimeoutMs(idleTimeoutMs)
    , m_database(database)
    , m_databaseFolder(databaseFolder)
    , m_job(job)
    , m_context(context)
    , m_partial(DownloadRun::partialPathFor(job.filePath))
    , m_sha(std::make_unique<Sha256>())
    , m_buffer(chunkSize, Qt::Uninitialized)
{ }

RemoteDownloadRun::~RemoteDownloadRun()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

TransferResult RemoteDownloadRun::run()
{
    if (auto ended = resume())
        return *ended;
    HttpStream stream(m_endpoint, m_context.shouldStop, m_idleTimeoutMs);
    QList<std::pair<QByteArray, QByteArray>> headers;
    if (m_have > 0)
        headers.append({"Range", "bytes=" + QByteArray::number(m_have) + '-'});
    if (stream.begin("GET", QStringLiteral("revisions/%1/content").arg(m_job.revisionId), headers, -1)
        && stream.readHead()) {
        if (!accept(stream.status(), stream.header("content-range"), stream.header("content-type")))
            return m_writeFailure ? *m_writeFailure : TransferResult::failed(stream.failure());
        for (qint64 got; (got = stream.read(m_buffer.data(), m_buffer.size())) > 0;)
            if (!take(got))
                return *m_writeFailure;
    }
    if (stream.state() == HttpStream::State::Stopped)
        return TransferResult::stopped();
    if (stream.state() != HttpStream::State::Open)
        return TransferResult::failed(stream.failure());
    return finish(stream.header("digest"));
}

std::optional<TransferResult> RemoteDownloadRun::resume()
{
    const QFileInfo partial(m_partial);
    m_folder = partial.isDir() && !partial.isSymLink();
    m_fd = ::open(QFile::encodeName(bytesPath()).constData(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    if (m_fd < 0)
        return errno == ENOENT ? std::nullopt
                               : std::optional(TransferResult::failed(DownloadRun::unwritable(m_partial)));
    struct stat status;
    if (::fstat(m_fd, &status) != 0 || !S_ISREG(status.st_mode))
        return TransferResult::failed(DownloadRun::unwritable(m_partial));
    // A partial as long as the whole asks for nothing: its last byte comes
    // again, with the server's digest.
    m_have = m_job.totalSize > 0 ? std::min<qint64>(status.st_size, m_job.totalSize - 1) : 0;
    if (m_have != status.st_size && ::ftruncate(m_fd, m_have) != 0)
        return TransferResult::failed(DownloadRun::unwritable(m_partial));
    for (qint64 at = 0; at < m_have;) {
        if (m_context.shouldStop())
            return TransferResult::stopped();
        const ssize_t got = ::pread(m_fd, m_buffer.data(), size_t(std::min<qint64>(chunkSize, m_have - at)), at);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return TransferResult::failed(DownloadRun::unwritable(m_partial));
        m_sha->add(m_buffer.constData(), got);
        at += got;
    }
    m_context.advanced(m_have);
    return std::nullopt;
}

bool RemoteDownloadRun::accept(int status, const QByteArray& contentRange, const QByteArray& contentType)
{
    if (status != 200 && status != 206)
        return false;
    const bool folder = contentType == folderType;
    if (folder != m_folder && m_fd >= 0) {
        // What an earlier run left is of the other kind: it is no part of this.
        ::close(m_fd);
        m_fd = -1;
        discardPartial();
        m_writeFailure = TransferResult::failed(
            ServiceError::make(ServiceError::ContentDamaged, QFileInfo(m_job.filePath).fileName()));
        return false;
    }
    m_folder = folder;
    if (status == 206 && !contentRange.startsWith("bytes " + QByteArray::number(m_have) + '-')) {
        m_writeFailure = TransferResult::failed(
            vlr::makeError(vlr::VLRWebErrorDomain, status,
                           QStringLiteral("The Veluria server sent another part of \"%1\" than was asked for.")
                               .arg(QFileInfo(m_job.filePath).fileName())));
        return false;
    }
    if (m_fd < 0) {
        // A folder that an unpacking left half done starts over.
        discardPartial();
        const QString folder = m_folder ? m_partial : QFileInfo(m_partial).path();
        if (!PrivateFiles::makeFolder(folder)) {
            m_writeFailure = TransferResult::failed(DownloadRun::unwritable(folder));
            return false;
        }
        m_fd = ::open(QFile::encodeName(bytesPath()).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (m_fd < 0) {
            m_writeFailure = TransferResult::failed(DownloadRun::unwritable(m_partial));
            return false;
        }
    }
    if (status == 200 && m_have > 0) {
        if (::ftruncate(m_fd, 0) != 0) {
            m_writeFailure = TransferResult::failed(DownloadRun::unwritable(m_partial));
            return false;
        }
        m_sha = std::make_unique<Sha256>();
        m_context.advanced(-m_have);
        m_have = 0;
    }
    return true;
}

bool RemoteDownloadRun::take(qint64 got)
{
    for (qint64 written = 0; written < got;) {
        const ssize_t put = ::pwrite(m_fd, m_buffer.constData() + written, size_t(got - written), m_have + written);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0) {
            m_writeFailure = TransferResult::failed(DownloadRun::unwritable(m_job.filePath));
            return false;
        }
        written += put;
    }
    m_sha->add(m_buffer.constData(), got);
    m_have += got;
    m_context.advanced(got);
    return true;
}

TransferResult RemoteDownloadRun::finish(const QByteArray& digestHeader)
{
    if (digestHeader != "sha-256=" + m_sha->hexDigest()) {
        ::close(m_fd);
        m_fd = -1;
        discardPartial();
        return TransferResult::failed(
            ServiceError::make(ServiceError::ContentDamaged, QFileInfo(m_job.filePath).fileName()));
    }
    const bool synced = ::fdatasync(m_fd) == 0;
    ::close(m_fd);
    m_fd = -1;
    if (!synced)
        return TransferResult::failed(DownloadRun::unwritable(m_job.filePath));
    if (m_folder)
        if (auto failed = unpack())
            return *failed;
    TransferResult result = DownloadRun::putInPlace(m_database, m_databaseFolder, m_job, m_partial,
                                                    RemoteTransfers::assetOf(m_job), m_job.revisionId);
    result.totalSize = m_have;
    return result;
}

std::optional<TransferResult> RemoteDownloadRun::unpack()
{
    // The files land beside the stream, whose name no entry can take: the
    // unpacking never replaces a file.
    ArchiveUnpacker unpacker(
        bytesPath(), m_partial, [] { return false; }, [](qint64) {});
    const ArchiveUnpacker::Outcome outcome = unpacker.run();
    QFile::remove(bytesPath());
    if (outcome == ArchiveUnpacker::Outcome::Done)
        return std::nullopt;
    discardPartial();
    return TransferResult::failed(
        unpacker.failedOnDisk()
            ? ServiceError::make(ServiceError::FileUnwritable, unpacker.failure())
            : ServiceError::make(ServiceError::ContentDamaged, QFileInfo(m_job.filePath).fileName()));
}

QString RemoteDownloadRun::bytesPath() const
{
    return m_folder ? m_partial + QStringLiteral("/.veluria-folder.tar") : m_partial;
}

void RemoteDownloadRun::discardPartial()
{
    const QFileInfo partial(m_partial);
    if (partial.isDir() && !partial.isSymLink())
        QDir(m_partial).removeRecursively();
    else
        QFile::remove(m_partial);
}
