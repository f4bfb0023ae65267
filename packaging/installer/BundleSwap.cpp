#include "installer/BundleSwap.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
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
    if (::rename(fresh.constData(), current.constData()) != 0) {
        const QString reason = QString::fromLocal8Bit(strerror(errno));
        ::unlink(fresh.constData());
        return QStringLiteral("the new version can't be put in place: %1").arg(reason);
    }
    return QString();
}
