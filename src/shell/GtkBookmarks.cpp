#include "shell/GtkBookmarks.h"

#include "service/VLRPrivateFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>

QString GtkBookmarks::bookmarksFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/gtk-3.0/bookmarks");
}

bool GtkBookmarks::insertFirst(const QString& folderPath, const QString& label)
{
    const QString path = bookmarksFilePath();
    QString folder = folderPath;
    while (folder.size() > 1 && folder.endsWith(QLatin1Char('/')))
        folder.chop(1);
    const QByteArray uri = QUrl::fromLocalFile(folder).toEncoded();

    QList<QByteArray> lines;
    QFile existing(path);
    if (existing.open(QIODevice::ReadOnly))
        lines = existing.readAll().split('\n');
    existing.close();

    QByteArray contents = uri + ' ' + label.toUtf8() + '\n';
    for (const QByteArray& line : lines) {
        if (line.isEmpty() || line.split(' ').value(0) == uri)
            continue;
        contents += line + '\n';
    }
    // A file of the desktop's keeps its mode; one made here is the user's alone.
    if (!VLRPrivateFiles::makeFolder(QFileInfo(path).absolutePath()))
        return false;
    const bool isNew = !existing.exists();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(contents);
    if (!file.commit())
        return false;
    if (isNew)
        VLRPrivateFiles::restrictFile(path);
    return true;
}
