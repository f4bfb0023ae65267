#include "installer/BundleSwap.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

QString BundleSwap::pointCurrentAt(const QString& root, const QString& versionFolder)
{
    const QByteArray current = QFile::encodeName(root + QLatin1Char('/') + QLatin1String(CurrentLinkName));
    const QByteArray fresh = current + ".new";
    ::unlink(fresh.constData());
    // Relative, so that the whole root can be moved.
    if (::symlink(QFile::encodeName(versionFolder).constData(), fresh.constData()) != 0)
        return QStringLiteral("the link to the new version can't be made: %1")
            .arg(QString::fromLocal8Bit(strerror(errno)));
    // The new tree reaches the disk before the link that names it, so that a
    // crash in between leaves the old version in use rather than a torn one.
    const int rootFd = ::open(QFile::encodeName(root).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (rootFd >= 0)
        ::syncfs(rootFd);
    if (::rename(fresh.constData(), current.constData()) != 0) {
        const QString reason = QString::fromLocal8Bit(strerror(errno));
        ::unlink(fresh.constData());
        if (rootFd >= 0)
            ::close(rootFd);
        return QStringLiteral("the new version can't be put in place: %1").arg(reason);
    }
    if (rootFd >= 0) {
        ::fsync(rootFd);
        ::close(rootFd);
    }
    return QString();
}
