#include "WebReply.h"

#include "Database.h"
#include "HttpConnection.h"
#include "WebTemplate.h"

#include <QSqlQuery>
#include <QUrl>
#include <QVariant>

#include <algorithm>

namespace {
QList<std::pair<QByteArray, QByteArray>> pageHeaders(const WebSessions::Session& session)
{
    QList<std::pair<QByteArray, QByteArray>> headers{
        {"Content-Security-Policy",
         "default-src 'none'; style-src 'self'; font-src 'self'; img-src 'self'; form-action 'self'; "
         "frame-ancestors 'none'; base-uri 'none'"},
        {"X-Content-Type-Options", "nosniff"},
        {"Referrer-Policy", "no-referrer"},
        {"Cache-Control", "no-store"}};
    if (session.isNew)
        headers.append({"Set-Cookie", WebSessions::cookieOf(session)});
    return headers;
}

QString emailOf(const QString& userId)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT email FROM users WHERE id = ?"));
    query.addBindValue(userId);
    return query.exec() && query.next() ? query.value(0).toString() : QString();
}
} // namespace

void WebReply::page(HttpConnection* c, int status, const WebSessions::Session& session, const QString& title,
                    const QString& content)
{
    QString account;
    if (session.isSignedIn())
        account = WebTemplate(QStringLiteral("account"))
                      .set(QStringLiteral("email"), emailOf(session.userId))
                      .set(QStringLiteral("csrf"), session.csrf)
                      .render();
    const QString html = WebTemplate(QStringLiteral("layout"))
                             .set(QStringLiteral("title"), title)
                             .setHtml(QStringLiteral("account"), account)
                             .setHtml(QStringLiteral("content"), content)
                             .render();
    c->respond(status, html.toUtf8(), pageHeaders(session), "text/html; charset=utf-8");
}

void WebReply::message(HttpConnection* c, int status, const WebSessions::Session& session, const QString& title,
                       const QString& text, const QString& linkText, const QString& link)
{
    QString action;
    if (!link.isEmpty())
        action = WebTemplate(QStringLiteral("link"))
                     .set(QStringLiteral("href"), link)
                     .set(QStringLiteral("text"), linkText)
                     .render();
    page(c, status, session, title,
         WebTemplate(QStringLiteral("message"))
             .set(QStringLiteral("title"), title)
             .set(QStringLiteral("text"), text)
             .setHtml(QStringLiteral("action"), action)
             .render());
}

void WebReply::notFound(HttpConnection* c, const WebSessions::Session& session)
{
    message(c, 404, session, QStringLiteral("Not found"),
            QStringLiteral("There is nothing at this address, or it is not yours to see."),
            QStringLiteral("Your workspaces"), QStringLiteral("/"));
}

void WebReply::formRefused(HttpConnection* c, const WebSessions::Session& session)
{
    message(c, 403, session, QStringLiteral("The form has expired"),
            QStringLiteral("This form was not sent from this browser's current page, so nothing was changed. Go back, "
                           "reload the page and try again."));
}

void WebReply::redirect(HttpConnection* c, const QString& location, const QByteArray& cookie)
{
    QList<std::pair<QByteArray, QByteArray>> headers{
        {"Location", QUrl(location).toEncoded()}, {"Cache-Control", "no-store"}, {"Referrer-Policy", "no-referrer"}};
    if (!cookie.isEmpty())
        headers.append({"Set-Cookie", cookie});
    c->respond(303, {}, headers);
}

void WebReply::signInFirst(HttpConnection* c, const QString& path)
{
    redirect(c, QStringLiteral("/users/sign_in?next=") + QString::fromLatin1(QUrl::toPercentEncoding(path, "/")));
}

QUrlQuery WebReply::form(const QByteArray& body)
{
    // In forms a space is sent as '+', which QUrlQuery leaves as it is.
    QByteArray spaced = body;
    spaced.replace('+', "%20");
    return QUrlQuery(QString::fromLatin1(spaced));
}

QString WebReply::field(const QUrlQuery& form, const QString& name)
{
    return form.queryItemValue(name, QUrl::FullyDecoded);
}

QString WebReply::localPath(const QString& path)
{
    // Browsers read a backslash as a slash and drop tabs and line breaks:
    // "/\\evil.example" or "/\t/evil.example" would leave the site.
    const bool local = path.startsWith(QLatin1Char('/')) && !path.startsWith(QLatin1String("//"))
        && std::none_of(path.cbegin(), path.cend(),
                        [](QChar ch) { return ch == QLatin1Char('\\') || ch < QLatin1Char(' '); });
    return local ? path : QStringLiteral("/");
}
