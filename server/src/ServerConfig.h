#pragma once

#include <QHostAddress>
#include <QString>

// What one server process is told by its configuration file (INI): where to
// listen, its certificate, the database and the store that all processes of
// one installation share.
struct ServerConfig
{
    QHostAddress listenAddress = QHostAddress::LocalHost;
    quint16 port = 8443;
    bool tls = true;
    QString certificatePath;
    QString keyPath;
    QString storePath;
    // The version manifest that clients may fetch; none when empty.
    QString manifestPath;
    qint64 sessionLifetimeSeconds = 30 * 24 * 3600;
    // Connection threads; the processor's cores unless told.
    int threads = 0;
    // An upload that gets no byte this long is removed with its bytes.
    qint64 uploadTimeoutSeconds = 24 * 3600;
    // Proxies in front of the server (address, prefix length).
    QList<std::pair<QHostAddress, int>> trustedProxies;

    QString databaseHost;
    int databasePort = 5432;
    QString databaseName = QStringLiteral("veluria");
    QString databaseUser;
    QString databasePassword;

    // The web pages: the address that mailed links begin with, and how mail leaves.
    QString webAddress;
    QString mailCommand;
    QString mailFrom;

    // A null config and the reason in failure when the file can't be used.
    static bool load(const QString& path, ServerConfig* config, QString* failure);
};
