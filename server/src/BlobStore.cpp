#include "BlobStore.h"

#include "sdk/store/Sha256.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStorageInfo>

#include <fcntl.h>
#include <unistd.h>

namespace {
bool syncPath(const QString& path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool ok = ::fsync(fd) == 0;
    ::close(fd);
    return ok;
}
} // namespace

BlobStore::BlobStore(const QString& root)
    : m_root(QDir::cleanPath(root))
{ }

bool BlobStore::prepare(QString* failure) const
{
    if (!QDir().mkpath(m_root + QStringLiteral("/uploads"))) {
        *failure = QStringLiteral("The store folder %1 can't be made.").arg(m_root);
        return false;
    }
    const auto privateFolder = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    QFile::setPermissions(m_root, privateFolder);
    QFile::setPermissions(m_root + QStringLiteral("/uploads"), privateFolder);
    return true;
}

QString BlobStore::uploadPath(const QString& uploadId) const
{
    return m_root + QStringLiteral("/uploads/") + uploadId;
}

QString BlobStore::contentPath(const QString& sha256) const
{
    return m_root + QLatin1Char('/') + sha256.left(2) + QLatin1Char('/') + sha256;
}

bool BlobStore::isDigest(const QString& text)
{
    static const QRegularExpression hex(QStringLiteral("^[0-9a-f]{64}$"));
    return hex.match(text).hasMatch();
}

BlobStore::Commit BlobStore::commit(const QString& uploadId, const QString& sha256, QString* failure,
                                    const QByteArray& knownDigest) const
{
    const QString partial = uploadPath(uploadId);
    QByteArray digest = knownDigest;
    if (digest.isEmpty()) {
        QFile file(partial);
        if (!file.open(QIODevice::ReadOnly)) {
            *failure = QStringLiteral("The upload's bytes are missing.");
            return Commit::Failed;
        }
        Sha256 hash;
        QByteArray chunk(1 << 20, Qt::Uninitialized);
        for (qint64 n; (n = file.read(chunk.data(), chunk.size())) > 0;)
            hash.add(chunk.constData(), n);
        digest = hash.hexDigest();
    }
    if (QString::fromLatin1(digest) != sha256) {
        discard(uploadId);
        *failure = QStringLiteral("The uploaded bytes don't match their SHA-256; the upload was discarded.");
        return Commit::Mismatch;
    }
    const QString target = contentPath(sha256);
    const QString folder = QFileInfo(target).absolutePath();
    if (!QDir().mkpath(folder) || !syncPath(partial)) {
        *failure = QStringLiteral("The store can't take the content.");
        return Commit::Failed;
    }
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (::rename(QFile::encodeName(partial).constData(), QFile::encodeName(target).constData()) != 0) {
        *failure = QStringLiteral("The store can't take the content.");
        return Commit::Failed;
    }
    syncPath(folder);
    return Commit::Stored;
}

void BlobStore::discard(const QString& uploadId) const
{
    QFile::remove(uploadPath(uploadId));
}

bool BlobStore::hasRoomFor(qint64 bytes) const
{
    QStorageInfo disk(m_root);
    return !disk.isValid() || disk.bytesAvailable() >= bytes;
}
