#include "service/VLRLogFormat.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(VLRLogFormatTest, FormatsLikePrintfWithObjectsForPercentAt)
{
    using vlr::formatLogMessage;
    EXPECT_EQ(formatLogMessage("User Notification: %@: %@", {QString("Title"), QString("Text")}),
              "User Notification: Title: Text");
    EXPECT_EQ(formatLogMessage("unsupported=%d, size=%lld, ratio=%.2f, hex=%x, 100%%",
                               {qint64(1), qint64(1) << 40, 0.125, quint64(255)}),
              "unsupported=1, size=1099511627776, ratio=0.12, hex=ff, 100%");
    // Arguments that are missing or of no known conversion stay as written.
    EXPECT_EQ(formatLogMessage("%@ and %@", {QString("one")}), "one and %@");
    EXPECT_EQ(formatLogMessage("%q %@", {QString("x")}), "%q x");
    EXPECT_EQ(formatLogMessage("tail %", {}), "tail %");
    EXPECT_EQ(vlr::toLogArgument(QString()), vlr::LogArgument(QString("(null)")));
    EXPECT_EQ(vlr::toLogArgument(true), vlr::LogArgument(qint64(1)));
}

TEST(VLRLogFormatTest, LinesGoToTheObserverAndToAFileOfTheUsersAlone)
{
    QTemporaryDir folder;
    const QString path = folder.filePath("Logs/veluria.log");
    vlr::setLogFilePath(path);
    QStringList seen;
    vlr::setLogObserver([&](int level, const QString& tag, const QString& message) {
        seen.append(QStringLiteral("%1|%2|%3").arg(level).arg(tag, message));
    });
    VLRLogFormat(5, "SDKClient", "Error: Create directory failed for: %@", QString("/home/x/Veluria/"));
    vlr::setLogObserver({});
    vlr::setLogFilePath(QString());

    EXPECT_EQ(seen, QStringList{"5|SDKClient|Error: Create directory failed for: /home/x/Veluria/"});
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().endsWith(" [5] SDKClient: Error: Create directory failed for: /home/x/Veluria/\n"));
    EXPECT_EQ(file.permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther), 0);
}
