#pragma once

#include "WebSessions.h"

#include <QString>
#include <QUrlQuery>

class HttpConnection;

// The answers that every web page shares: a page in the common layout,
// a redirect, the page for what isn't there. Each carries headers that let
// the browser run no script, load nothing from elsewhere and keep nothing,
// and the session's cookie when the session is new.
namespace WebReply {

void page(HttpConnection* c, int status, const WebSessions::Session& session, const QString& title,
          const QString& content);
// A page with a heading, one paragraph of text and an optional link.
void message(HttpConnection* c, int status, const WebSessions::Session& session, const QString& title,
             const QString& text, const QString& linkText = {}, const QString& link = {});
void notFound(HttpConnection* c, const WebSessions::Session& session);
void formRefused(HttpConnection* c, const WebSessions::Session& session);
void redirect(HttpConnection* c, const QString& location, const QByteArray& cookie = {});
// To the sign-in page, which leads back to the path.
void signInFirst(HttpConnection* c, const QString& path);

// A form's fields (application/x-www-form-urlencoded).
QUrlQuery form(const QByteArray& body);
QString field(const QUrlQuery& form, const QString& name);
// A path on this site to go on to after a sign-in; "/" for anything else,
// so that a link can't send the browser to another site.
QString localPath(const QString& path);

} // namespace WebReply
