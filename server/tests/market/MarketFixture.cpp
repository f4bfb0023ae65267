#include "MarketFixture.h"

#include "BlobStore.h"
#include "Database.h"
#include "MarketAdmin.h"
#include "ServerConfig.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {
class ClusterEnvironment : public ::testing::Environment
{
public:
    void SetUp() override { MarketFixture::startCluster(); }
    void TearDown() override { MarketFixture::stopCluster(); }
};
const auto* environment = ::testing::AddGlobalTestEnvironment(new ClusterEnvironment);
} // namespace

void MarketFixture::startCluster()
{
    cluster = new TestCluster;
    files = new QTemporaryDir;
    if (!cluster->missing().isEmpty())
        return;
    port = cluster->startServer();
    ServerConfig config;
    QString failure;
    if (!ServerConfig::load(cluster->configPath(), &config, &failure) || !Database::open(config, &failure))
        qFatal("The test's database connection failed: %s", qPrintable(failure));
    store = config.storePath;
}

void MarketFixture::stopCluster()
{
    Database::connection().close();
    delete cluster;
    delete files;
    cluster = nullptr;
}

void MarketFixture::SetUp()
{
    if (!cluster->missing().isEmpty())
        GTEST_SKIP() << cluster->missing().toStdString();
}

QString MarketFixture::storeBlob(const QByteArray& bytes)
{
    const QString sha256 = QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
    const QString path = BlobStore(store).contentPath(sha256);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        ADD_FAILURE() << "The store can't be written.";
    return sha256;
}

QString MarketFixture::writeFile(const QString& name, const QByteArray& bytes)
{
    const QString path = files->filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        ADD_FAILURE() << "The test file can't be written.";
    return path;
}

QJsonObject MarketFixture::admin(const QString& command, const QStringList& arguments, const QJsonObject& options,
                                 const QMap<QString, QString>& named)
{
    QJsonObject blobs;
    for (auto it = named.begin(); it != named.end(); ++it) {
        QFile file(it.value());
        if (file.open(QIODevice::ReadOnly))
            blobs.insert(it.key(), storeBlob(file.readAll()));
    }
    return MarketAdmin::run(command,
                            {{QStringLiteral("arguments"), QJsonArray::fromStringList(arguments)},
                             {QStringLiteral("options"), options},
                             {QStringLiteral("files"), blobs}},
                            BlobStore(store));
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
