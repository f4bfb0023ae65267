#include "workspaces/FileInfoViewController.h"
#include "support/TestFiles.h"

#include <QLabel>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(FileInfo, NamesLoseTheirLastExtensionAndUnreadableFilesKeepTheSizeText)
{
    QTemporaryDir folder;
    writeFile(folder.filePath("a.b.c"), QByteArray(1500, 'x'));
    FileInfoViewController info;
    info.view()->show();

    info.setFilePaths(QStringList{folder.filePath("a.b.c")});
    EXPECT_EQ(info.nameLabel()->text(), "a.b");
    const QString oneFileSize = info.sizeLabel()->text();
    EXPECT_FALSE(oneFileSize.isEmpty());

    // A file gone before it is shown has a name and no new size.
    info.setFilePaths(QStringList{folder.filePath("gone.txt")});
    EXPECT_EQ(info.nameLabel()->text(), "gone");
    EXPECT_EQ(info.sizeLabel()->text(), oneFileSize);

    // A folder shows no size; the same name twice shows twice.
    info.setFilePaths(QStringList{folder.path()});
    EXPECT_TRUE(info.sizeLabel()->text().isEmpty());
    info.setFilePaths(QStringList{"/x/same.png", "/y/same.png"});
    EXPECT_EQ(info.nameLabel()->text(), "same, same");
    EXPECT_EQ(info.sizeLabel()->text(), "2 files");
    EXPECT_EQ(info.filePath(), folder.path());

    // Only a path of its own unhides the panel.
    info.setFilePath(QString());
    EXPECT_FALSE(info.view()->isVisible());
    info.setFilePaths(QStringList{"/x/a.png", "/x/b.png"});
    EXPECT_FALSE(info.view()->isVisible());
    info.setFilePaths(std::nullopt);
    EXPECT_TRUE(info.nameLabel()->text().isEmpty());
}
