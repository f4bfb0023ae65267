#include "ServiceFixture.h"

#include "service/VLRKeychain.h"
#include "service/VLRLogFormat.h"
#include "service/VLRLogHandler.h"

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
    QString everything;
    vlr::setLogObserver([&](int, const QString& source, const QString& message) {
        everything += message;
        if (source == QLatin1String("veluria.sdk.accounts") && message.startsWith(QLatin1String("Keychain")))
            lines.append(message);
    });
    EXPECT_TRUE(library().keychain().loadPassword().isNull());
    library().keychain().savePassword(QStringLiteral("lost"));
    EXPECT_TRUE(library().keychain().loadPassword().isNull());
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
    keyring.start(daemon,
                  {QStringLiteral("--foreground"), QStringLiteral("--unlock"), QStringLiteral("--components=secrets")});
    ASSERT_TRUE(keyring.waitForStarted());
    keyring.write("test keyring password");
    keyring.closeWriteChannel();

    ASSERT_TRUE(ServiceFixture::waitUntil(
        [] {
            library().keychain().savePassword(QStringLiteral("correct horse"));
            return library().keychain().loadPassword() == QStringLiteral("correct horse");
        },
        15000));
    library().keychain().savePassword(QStringLiteral("battery staple"));
    EXPECT_EQ(library().keychain().loadPassword(), QStringLiteral("battery staple"));
    library().keychain().deletePassword();
    EXPECT_TRUE(library().keychain().loadPassword().isNull());
    library().keychain().savePassword(QStringLiteral(""));
    EXPECT_EQ(library().keychain().loadPassword(), QStringLiteral(""));

    keyring.terminate();
    keyring.waitForFinished(5000);
    vlr::setLogObserver(nullptr);
    EXPECT_EQ(lines.size(), 1);
    EXPECT_FALSE(everything.contains(QStringLiteral("horse")) || everything.contains(QStringLiteral("staple")));
}

} // namespace
