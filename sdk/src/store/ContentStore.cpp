#include "sdk/store/ContentStore.h"

#include "sdk/base/DatabaseLocation.h"
#include "sdk/base/PrivateFiles.h"
#include "sdk/base/StoreLog.h"
#include "sdk/store/Sha256.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

ContentStore::ContentStore(const QString& databaseFolder)
    : m_root(databaseFolder + QLatin1Char('/') + DatabaseLocation::storeFolderName())
{ }

bool ContentStore::prepare(QString* failure) const
{
    if (PrivateFiles::makeFolder(m_root + QStringLiteral("/tmp")))
        return true;
    if (failure)
        *failure = QStringLiteral("\"%1\": %2").arg(m_root, QString::fromLocal8Bit(std::strerror(errno)));
    return false;
}

bool ContentStore::isDigest(const QByteArray& text)
{
    if (text.size() != 64)
        return false;
    for (const char c : text)
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f')))
            return false;
    return true;
}

QString ContentStore::pathOf(const QByteArray& digest) const
{
    return m_root + QLatin1Char('/') + QString::fromLatin1(digest.left(2)) + QLatin1Char('/')
        + QString::fromLatin1(digest);
}

QString ContentStore::partialPath(const QString& name) const
{
    return m_root + QStringLiteral("/tmp/") + name + QStringLiteral(".part");
}

bool ContentStore::contains(const QByteArray& digest) const
{
    return isDigest(digest) && QFileInfo::exists(pathOf(digest));
}

bool ContentStore::commit(const QString& partial, const QByteArray& digest, QString* failure) const
{
    if (!place(partial, digest, failure))
        return false;
    PrivateFiles::syncFolder(QFileInfo(pathOf(digest)).path());
    return true;
}

bool ContentStore::place(const QString& partial, const QByteArray& digest, QString* failure) const
{
    const QString target = pathOf(digest);
    const QString folder = QFileInfo(target).path();
    auto failed = [&](const QString& path) {
        if (failure)
            *failure = QStringLiteral("\"%1\": %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    };
    if (!isDigest(digest))
        return failed(partial);
    // One call in the usual case, which counts for a folder of many files:
    // the rename never replaces a content that is there already, and the
    // folder is made only when it is missing.
    const QByteArray from = QFile::encodeName(partial);
    const QByteArray to = QFile::encodeName(target);
    auto rename = [&] { return ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE); };
    int renamed = rename();
    if (renamed != 0 && errno == ENOENT) {
        if (!PrivateFiles::makeFolder(folder))
            return failed(folder);
        renamed = rename();
    }
    if (renamed != 0 && errno == EINVAL) {
        // A file system without that kind of rename: look first.
        if (!QFileInfo::exists(target))
            return ::rename(from.constData(), to.constData()) == 0 || failed(target);
    } else if (renamed == 0) {
        return true;
    } else if (errno != EEXIST) {
        return failed(target);
    }
    QFile::remove(partial);
    return true;
}

QByteArray ContentStore::stage(const QByteArray& data, const QString& name, QString* failure) const
{
    const QString partial = partialPath(name);
    const int fd = PrivateFiles::createFile(partial, false);
    const bool written = fd >= 0 && ::write(fd, data.constData(), size_t(data.size())) == data.size();
    const int error = errno;
    if (fd >= 0)
        ::close(fd);
    if (!written) {
        QFile::remove(partial);
        if (failure)
            *failure = QStringLiteral("\"%1\": %2").arg(partial, QString::fromLocal8Bit(std::strerror(error)));
        return {};
    }
    return Sha256::of(data);
}

bool ContentStore::sync(QString* failure) const
{
    const int fd = ::open(QFile::encodeName(m_root).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool synced = fd >= 0 && ::syncfs(fd) == 0;
    const int error = errno;
    if (fd >= 0)
        ::close(fd);
    if (!synced && failure)
        *failure = QStringLiteral("\"%1\": %2").arg(m_root, QString::fromLocal8Bit(std::strerror(error)));
    return synced;
}

QByteArray ContentStore::put(const QByteArray& data, QString* failure) const
{
    const QByteArray digest = Sha256::of(data);
    if (contains(digest))
        return digest;
    if (!prepare(failure))
        return {};
    const QString partial = partialPath(QString::fromLatin1(digest));
    const int fd = PrivateFiles::createFile(partial, false);
    if (fd >= 0)
        PrivateFiles::markInUse(fd);
    const bool written =
        fd >= 0 && ::write(fd, data.constData(), size_t(data.size())) == data.size() && ::fsync(fd) == 0;
    const int error = errno;
    if (fd >= 0)
        ::close(fd);
    if (!written) {
        QFile::remove(partial);
        if (failure)
            *failure = QStringLiteral("\"%1\": %2").arg(partial, QString::fromLocal8Bit(std::strerror(error)));
        return {};
    }
    return commit(partial, digest, failure) ? digest : QByteArray();
}

int ContentStore::removeLeftovers(const std::function<bool(const QString& name)>& resumable) const
{
    int removed = 0;
    const QDir tmp(m_root + QStringLiteral("/tmp"));
    for (const QString& name : tmp.entryList({QStringLiteral("*.part")}, QDir::Files | QDir::Hidden | QDir::System)) {
        if (resumable && resumable(name))
            continue;
        if (PrivateFiles::removeUnlessInUse(tmp.filePath(name)))
            ++removed;
    }
    if (removed > 0)
        qCInfo(lcStore, "Removed %d unfinished file(s) from the content store", removed);
    return removed;
}

QByteArray ContentStore::read(const QByteArray& digest) const
{
    QFile file(pathOf(digest));
    if (!isDigest(digest) || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray data = file.readAll();
    return Sha256::of(data) == digest ? data : QByteArray();
}
