#include "ServiceFixture.h"

#include "service/VLRKeychain.h"
#include "service/VLRLogFormat.h"

#include <QProcess>
#include <QStandardPaths>

namespace {

// Without a keyring the password is simply not kept, and the log says so
// once; with an unlocked gnome-keyring on the bus it is kept, read and
// deleted. Needs the private session bus of the test command.
TEST(Keychain, NoKeyringMeansNoPasswordThenARealKeyringKeepsIt)
{
    if (qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS").isEmpty())
        GTEST_SKIP() << "needs a session bus (dbus-run-session)";
    QStringList lines;
    vlr::setLogObserver([&lines](int, const QString& tag, const QString& message) {
        if (tag == QLatin1String("VeluriaSDK") && message.startsWith(QLatin1String("Keychain")))
            lines.append(message);
    });
    EXPECT_TRUE(VLRKeychain::loadPassword().isNull());
    VLRKeychain::savePassword(QStringLiteral("lost"));
    EXPECT_TRUE(VLRKeychain::loadPassword().isNull());
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines.at(0).endsWith(QStringLiteral("); the password is not kept")));

    const QString daemon = QStandardPaths::findExecutable(QStringLiteral("gnome-keyring-daemon"));
    if (daemon.isEmpty()) {
        vlr::setLogObserver(nullptr);
        GTEST_SKIP() << "gnome-keyring-daemon is not installed";
    }
    QTemporaryDir keyringHome;
    QProcess keyring;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), keyringHome.path());
    environment.insert(QStringLiteral("XDG_DATA_HOME"), keyringHome.path() + QStringLiteral("/data"));
    keyring.setProcessEnvironment(environment);
    keyring.start(daemon, {QStringLiteral("--foreground"), QStringLiteral("--unlock"), QStringLiteral("--components=secrets")});
    ASSERT_TRUE(keyring.waitForStarted());
    keyring.write("test keyring password");
    keyring.closeWriteChannel();

    ASSERT_TRUE(ServiceFixture::waitUntil(
        [] {
            VLRKeychain::savePassword(QStringLiteral("correct horse"));
            return VLRKeychain::loadPassword() == QStringLiteral("correct horse");
        },
        15000));
    VLRKeychain::savePassword(QStringLiteral("battery staple"));
    EXPECT_EQ(VLRKeychain::loadPassword(), QStringLiteral("battery staple"));
    VLRKeychain::deletePassword();
    EXPECT_TRUE(VLRKeychain::loadPassword().isNull());

    keyring.terminate();
    keyring.waitForFinished(5000);
    vlr::setLogObserver(nullptr);
    EXPECT_EQ(lines.size(), 1);
}

} // namespace
