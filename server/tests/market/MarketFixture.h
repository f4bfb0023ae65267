#pragma once

#include "TestCluster.h"

#include <QNetworkReply>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// A real server on a test cluster with an administrator, veluria-admin to
// fill its catalogue, and files to hand it. One cluster serves the whole
// program.
class MarketFixture : public ::testing::Test
{
public:
    static void startCluster();
    static void stopCluster();

    struct Run
    {
        int status = -1;
        QString out;
        QString err;
    };

protected:
    void SetUp() override;

    // veluria-admin on the server, as its administrator.
    static Run admin(const QStringList& command);
    // veluria-admin on a local database in the folder.
    static Run localAdmin(const QString& folder, const QStringList& command);
    // The output of a command on the server that must succeed, trimmed.
    static QString adminOutput(const QStringList& command);
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
    static inline QTemporaryDir* files = nullptr;
};
