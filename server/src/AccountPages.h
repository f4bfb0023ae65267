#pragma once

#include "WebSessions.h"

#include <QString>

class Accounts;
class HttpConnection;
class Mailer;

// The account's pages for the browser: signing in (with the second factor
// when the account has one) and out, confirming the e-mail address and
// sending the confirmation again, and a new password for a forgotten one.
class AccountPages
{
public:
    static constexpr qint64 confirmLinkLifetime = 3 * 24 * 3600;
    static constexpr qint64 resetLinkLifetime = 3600;

    AccountPages(const Accounts& accounts, const WebSessions& sessions, const Mailer& mailer,
                 const QString& webAddress);

    // False when the path is none of these pages.
    bool handle(HttpConnection* c, const QString& path);

private:
    void signInForm(HttpConnection* c, const WebSessions::Session& session, const QString& next,
                    const QString& failure = {}, int status = 401);
    void signIn(HttpConnection* c);
    void codeForm(HttpConnection* c, const WebSessions::Session& session, const QString& next,
                  const QString& failure = {});
    void verifyCode(HttpConnection* c);
    void signOut(HttpConnection* c);
    void confirm(HttpConnection* c);
    void resendConfirmation(HttpConnection* c);
    void forgotPassword(HttpConnection* c);
    void newPassword(HttpConnection* c);
    static void setPassword(HttpConnection* c, const WebSessions::Session& session, const QByteArray& secret,
                            const QString& hash);

    const Accounts& m_accounts;
    const WebSessions& m_sessions;
    const Mailer& m_mailer;
    QString m_webAddress;
};
