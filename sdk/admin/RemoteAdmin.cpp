#include "RemoteAdmin.h"

#include "AdminCommandLine.h"
#include "AdminTool.h"

#include "sdk/accounts/ConsolePrompt.h"
#include "sdk/installs/Applications.h"
#include "sdk/installs/FolderArchive.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QTemporaryFile>

#include <memory>

RemoteAdmin::RemoteAdmin(QTextStream& out, QTextStream& err)
    : m_out(out)
    , m_err(err)
{ }

int RemoteAdmin::fail(const QString& reason)
{
    m_err << "veluria-admin: " << reason << "\n";
    return 1;
}

bool RemoteAdmin::configure(QStringList& arguments)
{
    const QString address = AdminCommandLine::takeOption(arguments, QStringLiteral("--server"));
    const QUrl url(address, QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != QLatin1String("https") || url.host().isEmpty()) {
        fail(QStringLiteral("--server needs the server's address as https://host:port, not \"%1\"").arg(address));
        return false;
    }
    m_endpoint.base = QUrl(url.scheme() + QStringLiteral("://") + url.authority());
    const QString trust = AdminCommandLine::takeOption(arguments, QStringLiteral("--trust"));
    if (!trust.isNull()) {
        m_endpoint.trusted = QSslCertificate::fromPath(trust, QSsl::Pem);
        if (m_endpoint.trusted.isEmpty()) {
            fail(QStringLiteral("%1 holds no PEM certificate to trust").arg(trust));
            return false;
        }
    }
    return true;
}

RemoteAdmin::Reply RemoteAdmin::send(const QByteArray& method, const QString& path, const QJsonObject& body)
{
    QByteArray bytes = body.isEmpty() ? QByteArray() : QJsonDocument(body).toJson(QJsonDocument::Compact);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return send(method, path, &buffer, bytes.size());
}

RemoteAdmin::Reply RemoteAdmin::send(const QByteArray& method, const QString& path, QIODevice* body, qint64 size)
{
    QNetworkRequest request = m_endpoint.request(path);
    request.setHeader(QNetworkRequest::ContentLengthHeader, size);
    // A command-line tool may wait: a synchronous request runs in this
    // thread, so no network thread of Qt's is still at work when the
    // process ends and its TLS library is torn down.
    request.setAttribute(QNetworkRequest::SynchronousRequestAttribute, true);
    // Gone before the body it reads from: the caller's device ends with the call.
    const std::unique_ptr<QNetworkReply> reply(m_network.sendCustomRequest(request, method, body));
    const QString certificateProblem =
        reply->error() == QNetworkReply::SslHandshakeFailedError ? reply->errorString() : QString();
    Reply result;
    result.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    result.json = QJsonDocument::fromJson(reply->readAll()).object();
    if (!certificateProblem.isEmpty())
        result.failure = QStringLiteral("the server's certificate is not trusted (%1); if the server is yours, "
                                        "name its certificate with --trust CERT.pem")
                             .arg(certificateProblem);
    else if (result.status == 0)
        result.failure = QStringLiteral("the server can't be reached: %1").arg(reply->errorString());
    else if (result.status >= 300)
        result.failure = result.json.value(QStringLiteral("error"))
                             .toObject()
                             .value(QStringLiteral("message"))
                             .toString(QStringLiteral("the server answered %1").arg(result.status));
    return result;
}

bool RemoteAdmin::signIn(const QString& email)
{
    const QString password = ConsolePrompt::line(QStringLiteral("Password of %1: ").arg(email), true);
    if (password.isEmpty()) {
        fail(QStringLiteral("no password was given (it is read from the terminal or standard input)"));
        return false;
    }
    Reply reply = send("POST", QStringLiteral("sessions"),
                       {{QStringLiteral("email"), email}, {QStringLiteral("password"), password}});
    if (reply.status == 202) {
        const QString code = ConsolePrompt::line(QStringLiteral("Code of the authenticator app: "), false).trimmed();
        reply = send("POST", QStringLiteral("sessions/verify"),
                     {{QStringLiteral("verification"), reply.json.value(QStringLiteral("verification"))},
                      {QStringLiteral("code"), code}});
    }
    if (reply.status != 201) {
        fail(reply.failure);
        return false;
    }
    m_endpoint.token = reply.json.value(QStringLiteral("token")).toString().toLatin1();
    return true;
}

int RemoteAdmin::run(QStringList arguments)
{
    if (!configure(arguments))
        return 1;
    QString email = AdminCommandLine::takeOption(arguments, QStringLiteral("--admin"));
    if (email.isNull())
        email = qEnvironmentVariable("VELURIA_ADMIN_EMAIL");
    if (arguments.isEmpty())
        return AdminTool::printUsage(m_err), 2;
    const QString command = arguments.takeFirst();
    if (command == QLatin1String("--help") || command == QLatin1String("help"))
        return AdminTool::printUsage(m_out), 0;
    if (!AdminCommandLine::knows(command)) {
        m_err << "veluria-admin: unknown command " << command << "\n";
        return AdminTool::printUsage(m_err), 2;
    }
    const auto parsed = AdminCommandLine::parse(command, arguments);
    if (!parsed)
        return AdminTool::printUsage(m_err), 2;
    if (email.trimmed().isEmpty())
        return fail(QStringLiteral("name the administrator with --admin EMAIL or VELURIA_ADMIN_EMAIL"));
    // Every file is looked at before anyone is asked for a password.
    for (const QString& path : parsed->files) {
        QFile readable(path);
        if (!QFileInfo(path).isDir() && !readable.open(QIODevice::ReadOnly))
            return fail(QStringLiteral("can't read %1: %2").arg(path, readable.errorString()));
    }
    if (!signIn(email.trimmed()))
        return 1;

    QJsonObject files;
    QJsonArray folders;
    int status = 0;
    for (auto each = parsed->files.cbegin(); each != parsed->files.cend() && status == 0; ++each) {
        // A folder goes as the tar stream of its files, as the client sends one.
        const bool folder = QFileInfo(each.value()).isDir();
        std::unique_ptr<QFile> file = folder ? archived(each.value()) : std::make_unique<QFile>(each.value());
        if (!file || !file->open(QIODevice::ReadOnly)) {
            status =
                fail(QStringLiteral("can't read %1: %2").arg(each.value(), file ? file->errorString() : m_failure));
            break;
        }
        const Reply stored = send("POST", QStringLiteral("admin/blobs"), file.get(), file->size());
        if (stored.status != 201)
            status = fail(stored.failure);
        files.insert(each.key(), stored.json.value(QStringLiteral("sha256")));
        if (folder)
            folders.append(each.key());
    }
    QJsonObject options = parsed->options;
    // As the local tool, installers tells this machine's installs apart.
    if (command == QLatin1String("installers"))
        options.insert(QStringLiteral("machine"), Applications::thisMachine());
    if (status == 0) {
        const Reply done = send("POST", QStringLiteral("admin/") + command,
                                {{QStringLiteral("arguments"), QJsonArray::fromStringList(parsed->arguments)},
                                 {QStringLiteral("options"), options},
                                 {QStringLiteral("files"), files},
                                 {QStringLiteral("folders"), folders}});
        if (done.status == 200)
            m_out << done.json.value(QStringLiteral("output")).toString();
        else if (done.status == 400)
            status = (AdminTool::printUsage(m_err), 2);
        else
            status = fail(done.failure);
    }
    // The administrator's session ends with the command.
    send("DELETE", QStringLiteral("sessions/current"), QJsonObject());
    return status;
}

std::unique_ptr<QFile> RemoteAdmin::archived(const QString& folder)
{
    auto file = std::make_unique<QTemporaryFile>();
    if (!file->open()) {
        m_failure = file->errorString();
        return nullptr;
    }
    FolderArchive archive(folder, [] { return false; });
    const FolderArchive::Outcome outcome =
        archive.write(0, [&](const char* data, qint64 size) { return file->write(data, size) == size; });
    if (outcome != FolderArchive::Outcome::Done) {
        m_failure = outcome == FolderArchive::Outcome::Refused ? file->errorString() : archive.failure();
        return nullptr;
    }
    file->close();
    return file;
}
