#include "platform/VLRFileManager.h"

#include "service/VLRPrivateFiles.h"

#include <QDir>
#include <QFileInfo>

bool VLRFileManager::fileExistsAtPath(const QString& path, bool* isDirectory)
{
    const QFileInfo file(path);
    const bool exists = !path.isEmpty() && file.exists();
    if (isDirectory)
        *isDirectory = exists && file.isDir();
    return exists;
}

bool VLRFileManager::createDirectoryAtPath(const QString& path, bool withIntermediateDirectories)
{
    if (path.isEmpty())
        return false;
    // Whatever the program creates is the user's alone.
    if (withIntermediateDirectories)
        return VLRPrivateFiles::makeFolder(path);
    const QFileInfo folder(QDir::cleanPath(path));
    return folder.absoluteDir().exists() && !folder.exists() && VLRPrivateFiles::makeFolder(folder.filePath());
}

bool VLRFileManager::isFilePackageAtPath(const QString& path)
{
    const QFileInfo file(QDir::cleanPath(path));
    return !path.isEmpty() && file.isDir() && file.fileName().endsWith(QLatin1String(".app"), Qt::CaseInsensitive);
}

QString VLRFileManager::homeDirectory()
{
    return QDir::homePath();
}

QString VLRFileManager::lastPathComponent(const QString& path)
{
    QString trimmed = path;
    while (trimmed.size() > 1 && trimmed.endsWith(QLatin1Char('/')))
        trimmed.chop(1);
    if (trimmed == QLatin1String("/"))
        return trimmed;
    return trimmed.mid(trimmed.lastIndexOf(QLatin1Char('/')) + 1);
}
