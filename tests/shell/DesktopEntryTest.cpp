#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// The installed desktop entry makes the client the handler of veluria: links
// and hands them to the program as its one argument.
TEST(DesktopEntryTest, TheEntryHandlesVeluriaLinksAndIsValid)
{
    QFile source(QStringLiteral(VELURIA_SOURCE_DIR "/src/resources/desktop/veluria.desktop.in"));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    QString entry = QString::fromUtf8(source.readAll());
    entry.replace("@VELURIA_INSTALLED_PROGRAM@", "/usr/local/bin/veluria");
    const QStringList lines = entry.split('\n');
    EXPECT_TRUE(lines.contains("MimeType=x-scheme-handler/veluria;"));
    EXPECT_TRUE(lines.contains("Exec=\"/usr/local/bin/veluria\" %u"));
    EXPECT_TRUE(lines.contains("Icon=veluria"));
    EXPECT_TRUE(QFile::exists(QStringLiteral(VELURIA_SOURCE_DIR "/src/resources/desktop/veluria.svg")));

    const QString validator = QStandardPaths::findExecutable("desktop-file-validate");
    if (validator.isEmpty())
        GTEST_SKIP() << "desktop-file-validate is not installed";
    QTemporaryDir folder;
    QFile written(folder.filePath("veluria.desktop"));
    ASSERT_TRUE(written.open(QIODevice::WriteOnly));
    written.write(entry.toUtf8());
    written.close();
    QProcess validate;
    validate.start(validator, {written.fileName()});
    ASSERT_TRUE(validate.waitForFinished());
    EXPECT_EQ(validate.exitCode(), 0) << validate.readAllStandardOutput().toStdString();
}
