#include "platform/VLRSystemDesktopServices.h"
#include "service/VLRLogFormat.h"
#include "service/VLRLogHandler.h"
#include "support/TestFiles.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

// Takes the URLs that the desktop would otherwise hand to a browser or an
// application.
class UrlCatcher : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> urls;

public Q_SLOTS:
    void openUrl(const QUrl& url) { urls << url; }
};

TEST(SystemDesktopServicesTest, OpensOnlyWebAndMailAddressesAndLocalFilesThatExist)
{
    UrlCatcher catcher;
    const QStringList schemes = {"http", "https", "mailto", "file", "ftp", "javascript"};
    for (const QString& scheme : schemes)
        QDesktopServices::setUrlHandler(scheme, &catcher, "openUrl");
    QStringList logLines;
    vlr::setLogFilePath(QString());
    vlr::setLogObserver([&logLines](int, const QString&, const QString& message) { logLines << message; });
    VLRSystemDesktopServices services;

    const QUrl manage("https://veluria.example/purchases/7/manage");
    const QUrl mail("mailto:support@veluria.example");
    EXPECT_TRUE(services.openURL(manage));
    EXPECT_TRUE(services.openURL(mail));
    for (const char* refused :
         {"file:///etc/passwd", "javascript:alert(1)", "ftp://veluria.example/x", "https:no-host", ""})
        EXPECT_FALSE(services.openURL(QUrl(refused))) << refused;
    EXPECT_EQ(logLines.size(), 5);
    EXPECT_EQ(logLines.value(0), "Not opening \"file:///etc/passwd\": only web and mail addresses are opened");
    EXPECT_EQ(logLines.value(4), "Not opening \"(null)\": only web and mail addresses are opened");

    QTemporaryDir folder;
    const QString file = folder.filePath("Plan & Budget #2.pdf");
    EXPECT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    EXPECT_TRUE(services.openFile(file));
    EXPECT_FALSE(services.openFile(folder.filePath("moved away.pdf")));
    EXPECT_FALSE(services.openFile(QDir::current().relativeFilePath(file)));
    EXPECT_FALSE(services.openFile(QString()));
    EXPECT_EQ(catcher.urls, QList<QUrl>({manage, mail, QUrl::fromLocalFile(file)}));

    vlr::setLogObserver(nullptr);
    for (const QString& scheme : schemes)
        QDesktopServices::unsetUrlHandler(scheme);
}

TEST(SystemDesktopServicesTest, AFileThatMightRunAProgramIsShownInItsFolderNeverOpened)
{
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler("file", &catcher, "openUrl");
    vlr::setLogFilePath(QString());
    VLRSystemDesktopServices services;
    QTemporaryDir folder;
    const QString picture = folder.filePath("photo.png");
    writeFile(picture, QByteArray::fromHex("89504e470d0a1a0a"));
    // By name, by contents under a harmless name, by mode.
    writeFile(folder.filePath("notes.desktop"), "[Desktop Entry]\nType=Application\nExec=sh -c 'rm -rf ~'\n");
    writeFile(folder.filePath("report.pdf"), "[Desktop Entry]\nType=Application\nExec=sh -c 'rm -rf ~'\n");
    writeFile(folder.filePath("install.sh"), "echo hi\n");
    writeFile(folder.filePath("readme"), "#!/bin/sh\necho hi\n");
    writeFile(folder.filePath("tool"), "data", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    EXPECT_TRUE(services.openFile(picture));
    for (const char* name : {"notes.desktop", "report.pdf", "install.sh", "readme", "tool"})
        EXPECT_TRUE(services.openFile(folder.filePath(name))) << name;

    // Without a file manager on the bus, the folder itself is opened.
    const QUrl shownFolder = QUrl::fromLocalFile(folder.path());
    EXPECT_TRUE(QTest::qWaitFor([&catcher] { return catcher.urls.size() == 6; }, 10000));
    EXPECT_EQ(
        catcher.urls,
        QList<QUrl>({QUrl::fromLocalFile(picture), shownFolder, shownFolder, shownFolder, shownFolder, shownFolder}));
    QDesktopServices::unsetUrlHandler("file");
}

} // namespace

#include "VLRSystemDesktopServicesTest.moc"
