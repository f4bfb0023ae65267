#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

// Writes the file, making its folder, and gives it the permissions if any.
inline void writeFile(const QString& path, const QByteArray& contents, QFile::Permissions permissions = {})
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(contents);
    file.close();
    if (permissions)
        file.setPermissions(permissions);
}

// Empty when the file can't be read.
inline QString readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
