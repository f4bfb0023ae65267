#include "sdk/net/RemoteDownloadRun.h"

#include "sdk/base/PrivateFiles.h"
#include "sdk/base/ServiceError.h"
#include "sdk/net/RemoteCall.h"
#include "sdk/store/Sha256.h"
#include "sdk/transfers/DownloadRun.h"

#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

RemoteDownloadRun::RemoteDownloadRun(QNetworkAccessManager& network, const RemoteEndpoint& endpoint, Database& database,
                                     const QString& databaseFolder, const TransferJob& job,
                                     const TransferRunner::Context& context)
    : m_network(network)
    , m_endpoint(endpoint)
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
    QNetworkRequest request = m_endpoint.request(QStringLiteral("revisions/%1/content").arg(m_job.revisionId));
    if (m_have > 0)
        request.setRawHeader("Range", "bytes=" + QByteArray::number(m_have) + '-');
    RemoteCall call(m_network.get(request));
    QNetworkReply* reply = call.reply();
    reply->setReadBufferSize(readBufferSize);
    bool accepted = false;
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [&] {
        if (!accepted && !(accepted = accept(call.status(), call.header("Content-Range")))) {
            if (m_writeFailure)
                reply->abort();
            return;
        }
        if (!drain(reply))
            reply->abort();
    });
    if (!call.wait(m_context.shouldStop))
        return TransferResult::stopped();
    if (m_writeFailure)
        return *m_writeFailure;
    if (call.status() != 200 && call.status() != 206)
        return TransferResult::failed(call.failure());
    if (reply->error() != QNetworkReply::NoError)
        return TransferResult::failed(call.failure());
    if ((!accepted && !accept(call.status(), call.header("Content-Range"))) || !drain(reply))
        return m_writeFailure ? *m_writeFailure : TransferResult::failed(call.failure());
    return finish(call.header("Digest"));
}

std::optional<TransferResult> RemoteDownloadRun::resume()
{
    const QByteArray native = QFile::encodeName(m_partial);
    m_fd = ::open(native.constData(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
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

bool RemoteDownloadRun::accept(int status, const QByteArray& contentRange)
{
    if (status != 200 && status != 206)
        return false;
    if (status == 206 && !contentRange.startsWith("bytes " + QByteArray::number(m_have) + '-')) {
        m_writeFailure = TransferResult::failed(
            vlr::makeError(vlr::VLRWebErrorDomain, status,
                           QStringLiteral("The Veluria server sent another part of \"%1\" than was asked for.")
                               .arg(QFileInfo(m_job.filePath).fileName())));
        return false;
    }
    if (m_fd < 0) {
        if (!PrivateFiles::makeFolder(QFileInfo(m_partial).path())) {
            m_writeFailure = TransferResult::failed(DownloadRun::unwritable(QFileInfo(m_partial).path()));
            return false;
        }
        m_fd = ::open(QFile::encodeName(m_partial).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
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

bool RemoteDownloadRun::drain(QNetworkReply* reply)
{
    for (;;) {
        const qint64 got = reply->read(m_buffer.data(), m_buffer.size());
        if (got <= 0)
            return true;
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
    }
}

TransferResult RemoteDownloadRun::finish(const QByteArray& digestHeader)
{
    if (digestHeader != "sha-256=" + m_sha->hexDigest()) {
        ::close(m_fd);
        m_fd = -1;
        QFile::remove(m_partial);
        return TransferResult::failed(
            ServiceError::make(ServiceError::ContentDamaged, QFileInfo(m_job.filePath).fileName()));
    }
    const bool synced = ::fdatasync(m_fd) == 0;
    ::close(m_fd);
    m_fd = -1;
    if (!synced)
        return TransferResult::failed(DownloadRun::unwritable(m_job.filePath));
    TransferResult result =
        DownloadRun::putInPlace(m_database, m_databaseFolder, m_job, m_partial, m_job.revisionId, m_job.revisionId);
    result.totalSize = m_have;
    return result;
}
