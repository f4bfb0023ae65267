#include "ServerConfig.h"

#include <QFileInfo>
#include <QSettings>
#include <QSysInfo>
#include <QThread>

bool ServerConfig::load(const QString& path, ServerConfig* config, QString* failure)
{
    if (!QFileInfo(path).isReadable()) {
        *failure = QStringLiteral("The configuration file %1 can't be read.").arg(path);
        return false;
    }
    QSettings ini(path, QSettings::IniFormat);
    if (ini.status() != QSettings::NoError) {
        *failure = QStringLiteral("The configuration file %1 is not a valid INI file.").arg(path);
        return false;
    }
    ServerConfig c;
    const QString address = ini.value(QStringLiteral("server/listen"), c.listenAddress.toString()).toString();
    if (!c.listenAddress.setAddress(address)) {
        *failure = QStringLiteral("server/listen is not an IP address: %1").arg(address);
        return false;
    }
    bool ok = false;
    const uint port = ini.value(QStringLiteral("server/port"), c.port).toUInt(&ok);
    if (!ok || port > 65535) {
        *failure = QStringLiteral("server/port is not a port number.");
        return false;
    }
    c.port = quint16(port);
    c.tls = ini.value(QStringLiteral("server/tls"), true).toBool();
    c.certificatePath = ini.value(QStringLiteral("server/certificate")).toString();
    c.keyPath = ini.value(QStringLiteral("server/key")).toString();
    c.storePath = ini.value(QStringLiteral("server/store")).toString();
    c.manifestPath = ini.value(QStringLiteral("server/manifest")).toString();
    c.sessionLifetimeSeconds =
        ini.value(QStringLiteral("server/sessionLifetime"), c.sessionLifetimeSeconds).toLongLong(&ok);
    if (!ok || c.sessionLifetimeSeconds <= 0) {
        *failure = QStringLiteral("server/sessionLifetime must be a positive number of seconds.");
        return false;
    }
    c.threads = ini.value(QStringLiteral("server/threads"), QThread::idealThreadCount()).toInt(&ok);
    if (!ok || c.threads < 1 || c.threads > 256) {
        *failure = QStringLiteral("server/threads must be a number of threads from 1 to 256.");
        return false;
    }
    c.uploadTimeoutSeconds = ini.value(QStringLiteral("server/uploadTimeout"), c.uploadTimeoutSeconds).toLongLong(&ok);
    if (!ok || c.uploadTimeoutSeconds <= 0) {
        *failure = QStringLiteral("server/uploadTimeout must be a positive number of seconds.");
        return false;
    }
    // Load balancers whose X-Forwarded-For is believed: addresses or subnets.
    for (const QString& entry : ini.value(QStringLiteral("server/trustedProxies")).toStringList()) {
        const QString text = entry.trimmed();
        const QHostAddress single(text);
        const auto subnet = text.contains(QLatin1Char('/'))
            ? QHostAddress::parseSubnet(text)
            : std::pair(single, single.protocol() == QAbstractSocket::IPv6Protocol ? 128 : 32);
        if (subnet.first.isNull()) {
            *failure = QStringLiteral("server/trustedProxies: \"%1\" is not an address or a subnet.").arg(text);
            return false;
        }
        c.trustedProxies.append(subnet);
    }
    if (c.storePath.isEmpty()) {
        *failure = QStringLiteral("server/store, the folder of file contents, is missing.");
        return false;
    }
    if (c.tls && (c.certificatePath.isEmpty() || c.keyPath.isEmpty())) {
        *failure = QStringLiteral("server/certificate and server/key are needed unless server/tls is false.");
        return false;
    }
    c.databaseHost = ini.value(QStringLiteral("database/host")).toString();
    c.databasePort = ini.value(QStringLiteral("database/port"), c.databasePort).toInt();
    c.databaseName = ini.value(QStringLiteral("database/name"), c.databaseName).toString();
    c.databaseUser = ini.value(QStringLiteral("database/user")).toString();
    c.databasePassword = ini.value(QStringLiteral("database/password")).toString();
    const bool anyAddress = c.listenAddress == QHostAddress::AnyIPv4 || c.listenAddress == QHostAddress::Any;
    const QString host = c.listenAddress.isLoopback() ? QStringLiteral("localhost")
        : anyAddress                                  ? QSysInfo::machineHostName()
                                                      : c.listenAddress.toString();
    c.webAddress =
        ini.value(QStringLiteral("web/address"), QStringLiteral("https://%1:%2").arg(host).arg(c.port)).toString();
    c.mailCommand = ini.value(QStringLiteral("mail/command")).toString();
    c.mailFrom = ini.value(QStringLiteral("mail/from"), QStringLiteral("Veluria <veluria@%1>").arg(host)).toString();
    *config = c;
    return true;
}
