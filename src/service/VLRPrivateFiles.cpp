#include "service/VLRPrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <sys/stat.h>

bool VLRPrivateFiles::makeFolder(const QString& path, bool narrowExisting)
{
    if (path.isEmpty())
        return false;
    const QString target = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    if (QFileInfo(target).isDir())
        return !narrowExisting || ::chmod(QFile::encodeName(target).constData(), 0700) == 0;
    // Each missing folder is made from the top down; chmod after mkdir, since
    // the mode given to mkdir passes through the umask.
    qsizetype next = 1;
    while (next > 0) {
        next = target.indexOf(QLatin1Char('/'), next + 1);
        const QByteArray prefix = QFile::encodeName(next < 0 ? target : target.left(next));
        if (::mkdir(prefix.constData(), 0700) == 0)
            ::chmod(prefix.constData(), 0700);
        else if (errno != EEXIST)
            return false;
    }
    return QFileInfo(target).isDir();
}

bool VLRPrivateFiles::restrictFile(const QString& path)
{
    return !path.isEmpty() && ::chmod(QFile::encodeName(path).constData(), 0600) == 0;
}
