#include "MarketFixture.h"

#include <QFile>
#include <QProcess>

namespace {
const QString administrator = QStringLiteral("root@market.org");
const QString administratorPassword = QStringLiteral("root password");

class ClusterEnvironment : public ::testing::Environment
{
public:
    void SetUp() override { MarketFixture::startCluster(); }
    void TearDown() override { MarketFixture::stopCluster(); }
};
const auto* environment = ::testing::AddGlobalTestEnvironment(new ClusterEnvironment);

MarketFixture::Run runAdmin(const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.start(QStringLiteral(VELURIA_ADMIN_BINARY), arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(60000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError())};
}
} // namespace

void MarketFixture::startCluster()
{
    cluster = new TestCluster;
    files = new QTemporaryDir;
    if (!cluster->missing().isEmpty())
        return;
    port = cluster->startServer();
    cluster->addUser(administrator, administratorPassword);
    cluster->sql(QStringLiteral("UPDATE users SET administrator = true WHERE email = '%1'").arg(administrator));
}

void MarketFixture::stopCluster()
{
    delete cluster;
    delete files;
    cluster = nullptr;
}

void MarketFixture::SetUp()
{
    if (!cluster->missing().isEmpty())
        GTEST_SKIP() << cluster->missing().toStdString();
}

MarketFixture::Run MarketFixture::admin(const QStringList& command)
{
    return runAdmin(QStringList{QStringLiteral("--server"), QStringLiteral("https://localhost:%1").arg(port),
                                QStringLiteral("--trust"), cluster->folder() + QStringLiteral("/tls/server.crt"),
                                QStringLiteral("--admin"), administrator}
                        + command,
                    administratorPassword.toUtf8() + '\n');
}

MarketFixture::Run MarketFixture::localAdmin(const QString& folder, const QStringList& command)
{
    return runAdmin(QStringList{QStringLiteral("--database"), folder} + command, {});
}

QString MarketFixture::adminOutput(const QStringList& command)
{
    const Run run = admin(command);
    EXPECT_EQ(run.status, 0) << command.join(QLatin1Char(' ')).toStdString() << ": " << run.err.toStdString();
    return run.out.trimmed();
}

QString MarketFixture::writeFile(const QString& name, const QByteArray& bytes)
{
    const QString path = files->filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        ADD_FAILURE() << "The test file can't be written.";
    return path;
}

MarketFixture::Events MarketFixture::listen(const QByteArray& token)
{
    Events events;
    events.reply.reset(cluster->openEvents(port, token));
    QObject::connect(events.reply.get(), &QNetworkReply::readyRead, events.reply.get(),
                     [reply = events.reply.get(), received = events.received] { *received += reply->readAll(); });
    TestCluster::waitFor([&] { return events.received->contains(": connected"); });
    return events;
}

QByteArray MarketFixture::signedUp(const QString& email)
{
    cluster->addUser(email, QStringLiteral("pw ") + email);
    return cluster->signIn(port, email, QStringLiteral("pw ") + email);
}
