#include "WebPages.h"

#include "HttpConnection.h"
#include "RequestContext.h"
#include "ServerConfig.h"
#include "WebReply.h"
#include "WebTemplate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>

using namespace WebReply;

namespace {
QString outboxBeside(const QString& storePath)
{
    return QFileInfo(QDir::cleanPath(storePath)).dir().filePath(QStringLiteral("outbox"));
}
} // namespace

WebPages::WebPages(const ServerConfig& config, const Accounts& accounts, const BlobStore& store)
    : m_accounts(accounts)
    , m_webAddress(config.webAddress)
    , m_sessions(config.sessionLifetimeSeconds)
    , m_mailer(config.mailCommand, config.mailFrom, outboxBeside(config.storePath))
    , m_accountPages(accounts, m_sessions, m_mailer, config.webAddress)
    , m_workspacePages(m_sessions, store)
    , m_purchasePages(m_sessions)
{ }

bool WebPages::handle(HttpConnection* c)
{
    const QString path = c->request().path;
    if (path == QLatin1String("/v1/web-sessions")) {
        c->request().method == "POST" ? makeEnterLink(c) : RequestContext::methodNotAllowed(c);
        return true;
    }
    if (path.startsWith(QLatin1String("/v1/")) || path == QLatin1String("/v1"))
        return false;
    const QByteArray method = c->request().method;
    if (method != "GET" && method != "POST") {
        c->respond(405, {}, {{"Allow", "GET, POST"}});
        return true;
    }
    if (path.startsWith(QLatin1String("/web/")) && path != QLatin1String("/web/enter"))
        asset(c, path);
    else if (path == QLatin1String("/web/enter"))
        enter(c);
    else if (path == QLatin1String("/help-center") || path == QLatin1String("/help-center/"))
        help(c);
    else if (path == QLatin1String("/learn-workspaces") || path == QLatin1String("/learn-workspaces/"))
        redirect(c, QStringLiteral("/help-center#workspaces"));
    else if (!m_accountPages.handle(c, path) && !m_workspacePages.handle(c, path) && !m_purchasePages.handle(c, path))
        notFound(c, m_sessions.find(c->request()));
    return true;
}

void WebPages::asset(HttpConnection* c, const QString& path)
{
    // Only names under :/web/assets are served; a path never reaches the disk.
    const QString name = path.mid(5);
    QFile file(QStringLiteral(":/web/assets/") + name);
    if (name.contains(QLatin1String("..")) || !file.open(QIODevice::ReadOnly))
        return notFound(c, m_sessions.find(c->request()));
    const QByteArray type = name.endsWith(QLatin1String(".css")) ? "text/css; charset=utf-8"
        : name.endsWith(QLatin1String(".ttf"))                   ? "font/ttf"
        : name.endsWith(QLatin1String(".svg"))                   ? "image/svg+xml"
                                                                 : "application/octet-stream";
    c->respond(200, file.readAll(), {{"Cache-Control", "public, max-age=86400"}, {"X-Content-Type-Options", "nosniff"}},
               type);
}

void WebPages::help(HttpConnection* c)
{
    page(c, 200, m_sessions.find(c->request()), QStringLiteral("Veluria help"),
         WebTemplate(QStringLiteral("help")).render());
}

void WebPages::enter(HttpConnection* c)
{
    QString userId;
    QString path;
    if (!WebSessions::takeLink(field(c->request().query, QStringLiteral("code")).toLatin1(), QStringLiteral("enter"),
                               &userId, &path))
        return message(c, 404, m_sessions.find(c->request()), QStringLiteral("This link has expired"),
                       QStringLiteral("Links from Veluria work once, within a minute. Open the page from Veluria "
                                      "again, or sign in here."),
                       QStringLiteral("Sign in"), QStringLiteral("/users/sign_in"));
    const WebSessions::Session session = m_sessions.replace(m_sessions.find(c->request()), userId, {});
    if (!session.isValid())
        return message(c, 500, {}, QStringLiteral("Not signed in"),
                       QStringLiteral("The server's database failed. Please try again later."));
    redirect(c, localPath(path), WebSessions::cookieOf(session));
}

void WebPages::makeEnterLink(HttpConnection* c)
{
    QString userId;
    if (!RequestContext::authenticate(m_accounts, c, &userId))
        return;
    QJsonObject body;
    if (!RequestContext::jsonBody(c, &body))
        return;
    const QString path = body.value(QStringLiteral("path")).toString(QStringLiteral("/"));
    if (localPath(path) != path)
        return c->respondError(422, 422,
                               QStringLiteral("The path must be a path on this server, such as /workspaces/<id>."));
    const QByteArray code = WebSessions::makeLink(userId, QStringLiteral("enter"), path, enterLinkLifetime);
    if (code.isEmpty())
        return RequestContext::databaseFailed(c);
    // The browser reaches the server by the name that the client used.
    const QByteArray host = c->request().header("host");
    const QString origin = host.isEmpty() ? m_webAddress : QStringLiteral("https://") + QString::fromLatin1(host);
    c->respondJson(201,
                   {{QStringLiteral("url"), origin + QStringLiteral("/web/enter?code=") + QString::fromLatin1(code)}});
}
