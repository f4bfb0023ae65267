#include "sdk/base/PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

bool PrivateFiles::makeFolder(const QString& path)
{
    const QByteArray native = QFile::encodeName(QDir::cleanPath(path));
    if (::mkdir(native.constData(), 0700) == 0)
        return true;
    if (errno == ENOENT) {
        const QString parent = QFileInfo(QDir::cleanPath(path)).path();
        if (parent == path || !makeFolder(parent))
            return false;
        return ::mkdir(native.constData(), 0700) == 0 || errno == EEXIST;
    }
    if (errno != EEXIST)
        return false;
    struct stat info;
    if (::stat(native.constData(), &info) != 0)
        return false;
    if (!S_ISDIR(info.st_mode)) {
        errno = ENOTDIR;
        return false;
    }
    return true;
}

int PrivateFiles::createFile(const QString& path, bool exclusive)
{
    const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (exclusive ? O_EXCL : O_TRUNC);
    const int fd = ::open(QFile::encodeName(path).constData(), flags, 0600);
    if (fd >= 0)
        ::fchmod(fd, 0600);
    return fd;
}

bool PrivateFiles::syncFolder(const QString& path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool synced = ::fsync(fd) == 0;
    ::close(fd);
    return synced;
}

bool PrivateFiles::restrict(const QString& path, bool folder)
{
    return ::chmod(QFile::encodeName(path).constData(), folder ? 0700 : 0600) == 0;
}

void PrivateFiles::markInUse(int fd)
{
    ::flock(fd, LOCK_EX | LOCK_NB);
}

bool PrivateFiles::removeUnlessInUse(const QString& path)
{
    const QByteArray native = QFile::encodeName(path);
    const int fd = ::open(native.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
    if (fd < 0)
        return ::unlink(native.constData()) == 0;
    const bool free = ::flock(fd, LOCK_EX | LOCK_NB) == 0;
    const bool removed = free && ::unlink(native.constData()) == 0;
    ::close(fd);
    return removed;
}

bool PrivateFiles::writeUnlessSame(const QString& path, const QByteArray& contents)
{
    QFile existing(path);
    if (existing.open(QIODevice::ReadOnly) && existing.readAll() == contents)
        return true;
    const int fd = createFile(path, false);
    if (fd < 0)
        return false;
    const bool written = ::write(fd, contents.constData(), size_t(contents.size())) == contents.size();
    ::close(fd);
    return written;
}
