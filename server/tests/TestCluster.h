#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QSslConfiguration>
#include <QTemporaryDir>
#include <QVariantMap>

#include <functional>
#include <memory>

// A real PostgreSQL made for the test run (initdb and pg_ctl in a temporary
// folder), a self-signed certificate, and veluria-server processes on
// loopback that share the database and one store.
class TestCluster
{
public:
    TestCluster();
    ~TestCluster();

    // Empty when the cluster stands; otherwise why it doesn't.
    QString missing() const { return m_missing; }

    // Starts one more server process, with these [server] settings changed,
    // on the given port or a free one; its port.
    quint16 startServer(const QVariantMap& settings = {}, quint16 port = 0);
    // Kills the server processes on that port, as a crash would.
    void killServer(quint16 port);
    // PostgreSQL stopped and started again under the running servers.
    bool stopDatabase();
    bool startDatabase();
    QString storePath() const { return m_dir.path() + QStringLiteral("/store"); }
    // The TOTP secret (base 32) when asked for a second factor.
    QString addUser(const QString& email, const QString& password, bool secondFactor = false);
    bool sql(const QString& statement);

    struct Reply
    {
        int status = 0;
        QByteArray body;
        QJsonObject json;
        QList<QNetworkReply::RawHeaderPair> headers;
        QByteArray header(const QByteArray& name) const;
    };
    Reply call(quint16 port, const QByteArray& method, const QString& path, const QByteArray& token,
               const QByteArray& body = {}, const QList<std::pair<QByteArray, QByteArray>>& headers = {});
    QByteArray signIn(quint16 port, const QString& email, const QString& password);
    QNetworkReply* openEvents(quint16 port, const QByteArray& token, qint64 lastEventId = -1);
    QSslConfiguration tls() const { return m_tls; }
    // The servers' configuration file and the cluster's own folder.
    QString configPath() const { return m_config; }
    QString folder() const { return m_dir.path(); }
    QNetworkAccessManager& network() { return m_network; }

    static bool waitFor(const std::function<bool()>& condition, int ms = 5000);

private:
    bool run(const QStringList& command, QString* output = nullptr);
    bool pgCtl(const QStringList& arguments, QString* output = nullptr);
    QStringList asDatabaseOwner(const QStringList& command) const;

    QTemporaryDir m_dir;
    QString m_missing;
    QString m_binaries;
    QString m_config;
    bool m_running = false;
    QList<std::shared_ptr<QProcess>> m_servers;
    QSslConfiguration m_tls;
    QNetworkAccessManager m_network;
};
