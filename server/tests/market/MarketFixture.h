#pragma once

#include "TestCluster.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QNetworkReply>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// A real server on a test cluster, its database opened in this process as
// well so that the admin commands of the catalogue can run here, and the
// store to put the files that those commands name. One cluster serves the
// whole program: the process's database connection outlives any suite.
class MarketFixture : public ::testing::Test
{
public:
    static void startCluster();
    static void stopCluster();

protected:
    void SetUp() override;

    // Runs an admin command of the catalogue on the server's database; the
    // files map option names or argument indexes to files on this disk,
    // which go into the server's store first.
    static QJsonObject admin(const QString& command, const QStringList& arguments, const QJsonObject& options = {},
                             const QMap<QString, QString>& files = {});
    // Puts bytes into the server's store; their SHA-256.
    static QString storeBlob(const QByteArray& bytes);
    static QString writeFile(const QString& name, const QByteArray& bytes);
    // A signed-in user's event stream, read into a buffer.
    struct Events
    {
        std::unique_ptr<QNetworkReply> reply;
        std::shared_ptr<QByteArray> received = std::make_shared<QByteArray>();
    };
    static Events listen(const QByteArray& token);
    static QByteArray signedUp(const QString& email);

    static inline TestCluster* cluster = nullptr;
    static inline quint16 port = 0;
    static inline QString store;
    static inline QTemporaryDir* files = nullptr;
};
