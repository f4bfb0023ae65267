#include "TestCluster.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QSettings>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSslCertificate>
#include <QTcpServer>
#include <QThread>

#include <cstdio>

#include <unistd.h>

namespace {
quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}
} // namespace

TestCluster::TestCluster()
{
    const QStringList versions =
        QDir(QStringLiteral("/usr/lib/postgresql")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& version : versions)
        if (QFile::exists(QStringLiteral("/usr/lib/postgresql/%1/bin/initdb").arg(version)))
            m_binaries = QStringLiteral("/usr/lib/postgresql/%1/bin/").arg(version);
    if (m_binaries.isEmpty()) {
        m_missing = QStringLiteral("PostgreSQL's initdb is not installed (apt-get install postgresql).");
        return;
    }
    const QString root = m_dir.path();
    // PostgreSQL refuses to run as root: the cluster then belongs to its own user.
    if (::geteuid() == 0 && !run({QStringLiteral("chown"), QStringLiteral("postgres"), root})) {
        m_missing = QStringLiteral("The postgres user can't own the test cluster.");
        return;
    }
    QString log;
    if (!run(asDatabaseOwner({m_binaries + QStringLiteral("initdb"), QStringLiteral("-D"),
                              root + QStringLiteral("/data"), QStringLiteral("-U"), QStringLiteral("veluria"),
                              QStringLiteral("--auth=trust")}),
             &log)
        || !startDatabase()) {
        m_missing = QStringLiteral("The test cluster did not start: ") + log;
        return;
    }
    m_running = true;
    run({QStringLiteral("bash"), QStringLiteral(VELURIA_SOURCE_DIR "/scripts/server-cert.sh"),
         root + QStringLiteral("/tls")});

    m_config = root + QStringLiteral("/server.ini");
    QSettings ini(m_config, QSettings::IniFormat);
    ini.setValue(QStringLiteral("server/listen"), QStringLiteral("127.0.0.1"));
    ini.setValue(QStringLiteral("server/certificate"), root + QStringLiteral("/tls/server.crt"));
    ini.setValue(QStringLiteral("server/key"), root + QStringLiteral("/tls/server.key"));
    ini.setValue(QStringLiteral("server/store"), root + QStringLiteral("/store"));
    ini.setValue(QStringLiteral("database/host"), root);
    ini.setValue(QStringLiteral("database/name"), QStringLiteral("postgres"));
    ini.setValue(QStringLiteral("database/user"), QStringLiteral("veluria"));
    ini.sync();

    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("test"));
    db.setHostName(root);
    db.setDatabaseName(QStringLiteral("postgres"));
    db.setUserName(QStringLiteral("veluria"));
    db.open();

    m_tls = QSslConfiguration::defaultConfiguration();
    m_tls.setCaCertificates(QSslCertificate::fromPath(root + QStringLiteral("/tls/server.crt")));
}

TestCluster::~TestCluster()
{
    for (const auto& server : std::as_const(m_servers)) {
        server->kill();
        server->waitForFinished();
    }
    QSqlDatabase::database(QStringLiteral("test"), false).close();
    if (m_running)
        pgCtl({QStringLiteral("-m"), QStringLiteral("immediate"), QStringLiteral("stop")});
}

bool TestCluster::pgCtl(const QStringList& arguments, QString* output)
{
    return run(asDatabaseOwner(QStringList{m_binaries + QStringLiteral("pg_ctl"), QStringLiteral("-D"),
                                           m_dir.path() + QStringLiteral("/data"), QStringLiteral("-w")}
                               + arguments),
               output);
}

bool TestCluster::stopDatabase()
{
    QSqlDatabase::database(QStringLiteral("test"), false).close();
    return pgCtl({QStringLiteral("-m"), QStringLiteral("fast"), QStringLiteral("stop")});
}

bool TestCluster::startDatabase()
{
    const QString root = m_dir.path();
    if (!pgCtl({QStringLiteral("-l"), root + QStringLiteral("/pg.log"), QStringLiteral("-o"),
                QStringLiteral("-k %1 -c listen_addresses=''").arg(root), QStringLiteral("start")}))
        return false;
    QSqlDatabase db = QSqlDatabase::database(QStringLiteral("test"), false);
    if (db.isValid())
        db.open();
    return true;
}

QStringList TestCluster::asDatabaseOwner(const QStringList& command) const
{
    return ::geteuid() == 0
        ? QStringList{QStringLiteral("runuser"), QStringLiteral("-u"), QStringLiteral("postgres"), QStringLiteral("--")}
            + command
        : command;
}

bool TestCluster::run(const QStringList& command, QString* output)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(command.first(), command.mid(1));
    const bool ok =
        process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (output)
        *output = QString::fromLocal8Bit(process.readAll());
    return ok;
}

quint16 TestCluster::startServer(const QVariantMap& settings, quint16 port)
{
    // Each process gets its own port in its own copy of the configuration.
    if (port == 0)
        port = freePort();
    const QString config = m_dir.path() + QStringLiteral("/server-%1.ini").arg(port);
    QFile::remove(config);
    QFile::copy(m_config, config);
    {
        QSettings ini(config, QSettings::IniFormat);
        ini.setValue(QStringLiteral("server/port"), port);
        for (auto it = settings.begin(); it != settings.end(); ++it)
            ini.setValue(QStringLiteral("server/") + it.key(), it.value());
    }
    auto server = std::make_shared<QProcess>();
    server->setProcessChannelMode(QProcess::ForwardedOutputChannel);
    server->setProperty("port", port);
    server->start(QStringLiteral(VELURIA_SERVER_BINARY), {QStringLiteral("--config"), config});
    m_servers.append(server);
    QByteArray said;
    if (!waitFor(
            [&] {
                said += server->readAllStandardError();
                return said.contains("listening") || server->state() == QProcess::NotRunning;
            },
            20000)
        || !said.contains("listening"))
        qWarning("veluria-server did not start: %s", said.constData());
    // What the server says later shows with the test's output.
    QObject::connect(server.get(), &QProcess::readyReadStandardError,
                     [process = server.get()] { std::fputs(process->readAllStandardError().constData(), stderr); });
    return port;
}

void TestCluster::killServer(quint16 port)
{
    for (const auto& server : std::as_const(m_servers))
        if (server->property("port").toUInt() == port) {
            server->kill();
            server->waitForFinished();
        }
}

QString TestCluster::addUser(const QString& email, const QString& password, bool secondFactor)
{
    QProcess process;
    QStringList arguments{QStringLiteral("--config"), m_config, QStringLiteral("--add-user"), email};
    if (secondFactor)
        arguments << QStringLiteral("--second-factor");
    process.start(QStringLiteral(VELURIA_SERVER_BINARY), arguments);
    process.write(password.toUtf8() + '\n');
    process.closeWriteChannel();
    process.waitForFinished(60000);
    return QString::fromLatin1(process.readAllStandardOutput()).trimmed();
}

bool TestCluster::sql(const QString& statement)
{
    QSqlQuery query(QSqlDatabase::database(QStringLiteral("test")));
    return query.exec(statement);
}

QByteArray TestCluster::Reply::header(const QByteArray& name) const
{
    for (const auto& [key, value] : headers)
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    return {};
}

TestCluster::Reply TestCluster::call(quint16 port, const QByteArray& method, const QString& path,
                                     const QByteArray& token, const QByteArray& body,
                                     const QList<std::pair<QByteArray, QByteArray>>& headers)
{
    QNetworkRequest request(QUrl(QStringLiteral("https://localhost:%1%2").arg(port).arg(path)));
    request.setSslConfiguration(m_tls);
    if (!token.isEmpty())
        request.setRawHeader("Authorization", "Bearer " + token);
    if (!body.isEmpty())
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    for (const auto& [name, value] : headers)
        request.setRawHeader(name, value);
    QNetworkReply* reply = m_network.sendCustomRequest(request, method, body);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    Reply result;
    result.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    result.body = reply->readAll();
    result.json = QJsonDocument::fromJson(result.body).object();
    result.headers = reply->rawHeaderPairs();
    reply->deleteLater();
    return result;
}

QByteArray TestCluster::signIn(quint16 port, const QString& email, const QString& password)
{
    const QJsonObject body{{QStringLiteral("email"), email}, {QStringLiteral("password"), password}};
    return call(port, "POST", QStringLiteral("/v1/sessions"), {}, QJsonDocument(body).toJson())
        .json.value(QStringLiteral("token"))
        .toString()
        .toLatin1();
}

QNetworkReply* TestCluster::openEvents(quint16 port, const QByteArray& token, qint64 lastEventId)
{
    QNetworkRequest request(QUrl(QStringLiteral("https://localhost:%1/v1/events").arg(port)));
    request.setSslConfiguration(m_tls);
    request.setRawHeader("Authorization", "Bearer " + token);
    if (lastEventId >= 0)
        request.setRawHeader("Last-Event-ID", QByteArray::number(lastEventId));
    return m_network.get(request);
}

bool TestCluster::waitFor(const std::function<bool()>& condition, int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > ms)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(5);
    }
    return true;
}
