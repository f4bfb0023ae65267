#include "platform/VLRFileManager.h"
#include "platform/VLRUserDefaults.h"
#include "service/VLRLogFile.h"
#include "support/TestFiles.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

int modeOf(const QString& path)
{
    struct stat info
    { };
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 07777) : -1;
}

} // namespace

TEST(PrivateFilesTest, SettingsLogsAndFoldersTheClientMakesAreTheUsersAloneWhateverTheUmask)
{
    QTemporaryDir home;
    const mode_t umask = ::umask(0); // the widest there is

    // Settings in folders that aren't there yet, and in one that an older
    // version left readable to all, with its file.
    VLRUserDefaults fresh(home.filePath("config/Veluria"));
    fresh.setObject(QStringLiteral("ada@example.com"), QStringLiteral("com.veluria.Veluria.Email"));
    fresh.setPersistentDomain({{"k", "v"}}, QStringLiteral("com.veluria-dev.Veluria2.UserDefaults"));
    EXPECT_EQ(modeOf(home.filePath("config")), 0700);
    EXPECT_EQ(modeOf(home.filePath("config/Veluria")), 0700);
    EXPECT_EQ(modeOf(home.filePath("config/Veluria/Veluria.conf")), 0600);
    EXPECT_EQ(modeOf(home.filePath("config/Veluria/com.veluria-dev.Veluria2.UserDefaults.conf")), 0600);

    writeFile(home.filePath("old/Veluria/Veluria.conf"), "[General]\na=1\n", QFile::Permissions(0x6644));
    QFile::setPermissions(home.filePath("old/Veluria"), QFile::Permissions(0x7755));
    VLRUserDefaults old(home.filePath("old/Veluria"));
    old.setBool(true, QStringLiteral("b"));
    EXPECT_EQ(modeOf(home.filePath("old/Veluria")), 0700);
    EXPECT_EQ(modeOf(home.filePath("old/Veluria/Veluria.conf")), 0600);

    // The log's folders and file.
    VLRLogFile log(home.filePath("data/Veluria/Logs/veluria.log"));
    EXPECT_TRUE(log.append("line\n"));
    EXPECT_EQ(modeOf(home.filePath("data/Veluria")), 0700);
    EXPECT_EQ(modeOf(home.filePath("data/Veluria/Logs")), 0700);
    EXPECT_EQ(modeOf(home.filePath("data/Veluria/Logs/veluria.log")), 0600);

    // The user folder of the first launch.
    EXPECT_TRUE(VLRFileManager::createDirectoryAtPath(home.filePath("Veluria/"), false));
    EXPECT_FALSE(VLRFileManager::createDirectoryAtPath(home.filePath("missing/Veluria"), false));
    EXPECT_EQ(modeOf(home.filePath("Veluria")), 0700);
    ::umask(umask);
}
