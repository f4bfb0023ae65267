#include "platform/VLRSystemDesktopServices.h"
#include "service/VLRLogFormat.h"
#include "service/VLRLogHandler.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

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

} // namespace

#include "VLRSystemDesktopServicesTest.moc"
