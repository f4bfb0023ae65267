#pragma once

#include "HttpRequest.h"

#include <QByteArray>
#include <QString>
#include <QUrlQuery>

// Browser sessions of the web pages, held in a cookie (HttpOnly, Secure,
// SameSite=Strict) and kept in the database as the SHA-256 of its value.
// Each session has its own form token: a form that comes back without it
// was not made by the server for this browser. One-time links (a client's
// way into the browser, confirmation and reset mails) are kept the same way.
class WebSessions
{
public:
    static constexpr const char* cookieName = "__Host-veluria";
    // A visitor who has not signed in, or waits for the second factor.
    static constexpr qint64 anonymousLifetime = 3600;
    static constexpr qint64 pendingLifetime = 300;

    struct Session
    {
        QByteArray token;
        QString userId;
        QString pendingUserId;
        QString csrf;
        qint64 lifetime = 0;
        // Made for this answer: the browser must be given its cookie.
        bool isNew = false;

        bool isValid() const { return !token.isEmpty(); }
        bool isSignedIn() const { return !userId.isEmpty(); }
    };

    explicit WebSessions(qint64 signedInLifetime);

    // The live session of the request's cookie, or an invalid one.
    Session find(const HttpRequest& request) const;
    // The request's session, or a new anonymous one.
    Session findOrStart(const HttpRequest& request) const;
    // Replaces the request's session (if any) by a new one: a sign-in never
    // goes on under a cookie that someone may have planted before it.
    Session replace(const Session& old, const QString& userId, const QString& pendingUserId) const;
    void end(const Session& session) const;

    static QByteArray cookieOf(const Session& session);
    static QByteArray expiredCookie();
    // True when the form carries the session's token.
    static bool acceptsForm(const Session& session, const QUrlQuery& form);

    // A one-time link's secret; the link works once, within lifetime seconds.
    static QByteArray makeLink(const QString& userId, const QString& purpose, const QString& path, qint64 lifetime);
    // True while the link is unused and in time; it stays usable.
    static bool linkIsLive(const QByteArray& secret, const QString& purpose);
    // Takes a link (it is gone afterwards): false when unknown, used or late.
    static bool takeLink(const QByteArray& secret, const QString& purpose, QString* userId, QString* path);

private:
    Session open(const QString& userId, const QString& pendingUserId, qint64 lifetime) const;

    qint64 m_lifetime;
};
