#include "platform/VLRSystemDesktopServices.h"
#include "service/VLRLogFormat.h"

#include <QDesktopServices>
#include <QFile>
#include <QObject>
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

class SystemDesktopServicesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        for (const char* scheme : {"http", "https", "mailto", "file", "ftp", "javascript"})
            QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), &catcher, "openUrl");
        vlr::setLogFilePath(QString());
        vlr::setLogObserver([this](int, const QString&, const QString& message) { logLines << message; });
    }

    void TearDown() override
    {
        vlr::setLogObserver(nullptr);
        for (const char* scheme : {"http", "https", "mailto", "file", "ftp", "javascript"})
            QDesktopServices::unsetUrlHandler(QString::fromLatin1(scheme));
    }

    UrlCatcher catcher;
    VLRSystemDesktopServices services;
    QStringList logLines;
};

TEST_F(SystemDesktopServicesTest, OnlyWebAndMailAddressesGoToTheBrowser)
{
    const QUrl manage(QStringLiteral("https://veluria.example/purchases/7/manage"));
    const QUrl mail(QStringLiteral("mailto:support@veluria.example"));
    EXPECT_TRUE(services.openURL(manage));
    EXPECT_TRUE(services.openURL(mail));
    EXPECT_FALSE(services.openURL(QUrl(QStringLiteral("file:///etc/passwd"))));
    EXPECT_FALSE(services.openURL(QUrl(QStringLiteral("javascript:alert(1)"))));
    EXPECT_FALSE(services.openURL(QUrl(QStringLiteral("ftp://veluria.example/x"))));
    EXPECT_FALSE(services.openURL(QUrl(QStringLiteral("https:no-host"))));
    EXPECT_FALSE(services.openURL(QUrl()));
    EXPECT_EQ(catcher.urls, (QList<QUrl>{manage, mail}));
    ASSERT_EQ(logLines.size(), 5);
    EXPECT_EQ(logLines[0], QStringLiteral("Not opening \"file:///etc/passwd\": only web and mail addresses are opened"));
    EXPECT_EQ(logLines[4], QStringLiteral("Not opening \"(null)\": only web and mail addresses are opened"));
}

TEST_F(SystemDesktopServicesTest, OpensOnlyLocalFilesThatExist)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    const QString file = folder.filePath(QStringLiteral("Plan & Budget #2.pdf"));
    QFile(file).open(QIODevice::WriteOnly);

    EXPECT_TRUE(services.openFile(file));
    EXPECT_FALSE(services.openFile(folder.filePath(QStringLiteral("moved away.pdf"))));
    EXPECT_FALSE(services.openFile(QStringLiteral("Plan & Budget #2.pdf")));
    EXPECT_FALSE(services.openFile(QString()));
    EXPECT_EQ(catcher.urls, QList<QUrl>{QUrl::fromLocalFile(file)});
    EXPECT_EQ(catcher.urls.value(0).toLocalFile(), file);
}

} // namespace

#include "VLRSystemDesktopServicesTest.moc"
