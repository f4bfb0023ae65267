#include "platform/VLRFileManager.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(FileManagerTest, AnswersAboutFilesDirectoriesAndPackages)
{
    QTemporaryDir folder;
    const QString file = folder.filePath("notes.txt");
    ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    ASSERT_TRUE(QFile::link(folder.filePath("missing"), folder.filePath("dangling")));
    bool isDirectory = true;
    EXPECT_TRUE(VLRFileManager::fileExistsAtPath(file, &isDirectory));
    EXPECT_FALSE(isDirectory);
    EXPECT_TRUE(VLRFileManager::fileExistsAtPath(folder.path(), &isDirectory));
    EXPECT_TRUE(isDirectory);
    EXPECT_FALSE(VLRFileManager::fileExistsAtPath(folder.filePath("dangling"), &isDirectory));
    EXPECT_FALSE(isDirectory);
    EXPECT_FALSE(VLRFileManager::fileExistsAtPath(QString()));

    // Intermediate folders only when asked for.
    const QString nested = folder.filePath("a/b");
    EXPECT_FALSE(VLRFileManager::createDirectoryAtPath(nested, false));
    EXPECT_TRUE(VLRFileManager::createDirectoryAtPath(nested, true));
    EXPECT_TRUE(VLRFileManager::createDirectoryAtPath(folder.filePath("a/c"), false));
    EXPECT_FALSE(VLRFileManager::createDirectoryAtPath(file + "/inside", true));
    EXPECT_FALSE(VLRFileManager::createDirectoryAtPath(QString(), true));

    // A package is a folder whose name ends in ".app", in any case.
    ASSERT_TRUE(QDir(folder.path()).mkdir("Tool.APP"));
    ASSERT_TRUE(QFile(folder.filePath("script.app")).open(QIODevice::WriteOnly));
    EXPECT_TRUE(VLRFileManager::isFilePackageAtPath(folder.filePath("Tool.APP/")));
    EXPECT_FALSE(VLRFileManager::isFilePackageAtPath(folder.filePath("script.app")));
    EXPECT_FALSE(VLRFileManager::isFilePackageAtPath(nested));
    EXPECT_FALSE(VLRFileManager::isFilePackageAtPath(QString()));
}
