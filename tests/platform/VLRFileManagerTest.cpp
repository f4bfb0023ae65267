#include "platform/VLRFileManager.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

TEST(FileManagerTest, AnswersAboutFilesDirectoriesAndPackages)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    const QString file = folder.filePath(QStringLiteral("notes.txt"));
    QFile(file).open(QIODevice::WriteOnly);
    ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("missing")), folder.filePath(QStringLiteral("dangling"))));

    bool isDirectory = true;
    EXPECT_TRUE(VLRFileManager::fileExistsAtPath(file, &isDirectory));
    EXPECT_FALSE(isDirectory);
    EXPECT_TRUE(VLRFileManager::fileExistsAtPath(folder.path(), &isDirectory));
    EXPECT_TRUE(isDirectory);
    EXPECT_FALSE(VLRFileManager::fileExistsAtPath(folder.filePath(QStringLiteral("dangling")), &isDirectory));
    EXPECT_FALSE(isDirectory);
    EXPECT_FALSE(VLRFileManager::fileExistsAtPath(QString()));

    const QString nested = folder.filePath(QStringLiteral("a/b"));
    EXPECT_FALSE(VLRFileManager::createDirectoryAtPath(nested, false));
    EXPECT_TRUE(VLRFileManager::createDirectoryAtPath(nested, true));
    EXPECT_TRUE(VLRFileManager::createDirectoryAtPath(nested, true));
    EXPECT_FALSE(VLRFileManager::createDirectoryAtPath(nested, false));
    EXPECT_TRUE(VLRFileManager::createDirectoryAtPath(folder.filePath(QStringLiteral("a/c")), false));
    EXPECT_FALSE(VLRFileManager::createDirectoryAtPath(file + QStringLiteral("/inside"), true));
    EXPECT_FALSE(VLRFileManager::createDirectoryAtPath(QString(), true));

    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("Tool.APP")));
    QFile(folder.filePath(QStringLiteral("script.app"))).open(QIODevice::WriteOnly);
    EXPECT_TRUE(VLRFileManager::isFilePackageAtPath(folder.filePath(QStringLiteral("Tool.APP"))));
    EXPECT_TRUE(VLRFileManager::isFilePackageAtPath(folder.filePath(QStringLiteral("Tool.APP/"))));
    EXPECT_FALSE(VLRFileManager::isFilePackageAtPath(folder.filePath(QStringLiteral("script.app"))));
    EXPECT_FALSE(VLRFileManager::isFilePackageAtPath(nested));
    EXPECT_FALSE(VLRFileManager::isFilePackageAtPath(QString()));

    EXPECT_EQ(VLRFileManager::homeDirectory(), QDir::homePath());
}

} // namespace
