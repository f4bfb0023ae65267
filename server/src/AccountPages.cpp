#include "AccountPages.h"

#include "Accounts.h"
#include "Database.h"
#include "HttpConnection.h"
#include "Mailer.h"
#include "SignInLimit.h"
#include "SlowWork.h"
#include "WebReply.h"
#include "WebTemplate.h"
#include "sdk/accounts/PasswordHasher.h"
#include "sdk/accounts/Totp.h"

#include <QDateTime>
#include <QJsonObject>
#include <QSqlQuery>
#include <QUrl>
#include <QVariant>

using namespace WebReply;

namespace {
constexpr int minimumPasswordLength = 8;

QString failureHtml(const QString& failure)
{
    return failure.isEmpty() ? QString()
                             : WebTemplate(QStringLiteral("failure")).set(QStringLiteral("text"), failure).render();
}

QString nextOf(const QUrlQuery& query)
{
    return localPath(field(query, QStringLiteral("next")));
}

struct Account
{
    QString id;
    QString email;
    bool needsConfirmation = false;
};

Account accountOf(const QString& userId)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT email, needs_confirmation FROM users WHERE id = ?"));
    query.addBindValue(userId);
    if (!query.exec() || !query.next())
        return {};
    return {userId, query.value(0).toString(), query.value(1).toBool()};
}

// Takes the account's next TOTP code; each code is good once, across
// processes too (the row is locked while it is compared).
bool takeCode(const QString& userId, const QString& code)
{
    QSqlDatabase db = Database::connection();
    db.transaction();
    QSqlQuery query(db);
    query.prepare(QStringLiteral("SELECT totp_secret, totp_last_step FROM users WHERE id = ? FOR UPDATE"));
    query.addBindValue(userId);
    if (!query.exec() || !query.next()) {
        db.rollback();
        return false;
    }
    const qint64 step = Totp::verify(query.value(0).toByteArray(), code.trimmed(), QDateTime::currentSecsSinceEpoch(),
                                     query.value(1).toLongLong());
    QSqlQuery used(db);
    used.prepare(QStringLiteral("UPDATE users SET totp_last_step = ? WHERE id = ?"));
    used.addBindValue(step);
    used.addBindValue(userId);
    if (step < 0 || !used.exec()) {
        db.rollback();
        return false;
    }
    return db.commit();
}
} // namespace

AccountPages::AccountPages(const Accounts& accounts, const WebSessions& sessions, const Mailer& mailer,
                           const QString& webAddress)
    : m_accounts(accounts)
    , m_sessions(sessions)
    , m_mailer(mailer)
    , m_webAddress(webAddress)
{ }

bool AccountPages::handle(HttpConnection* c, const QString& path)
{
    const bool post = c->request().method == "POST";
    if (path == QLatin1String("/users/sign_in"))
        post ? signIn(c) : signInForm(c, m_sessions.findOrStart(c->request()), nextOf(c->request().query));
    else if (path == QLatin1String("/users/sign_in/code"))
        post ? verifyCode(c) : codeForm(c, m_sessions.find(c->request()), nextOf(c->request().query));
    else if (path == QLatin1String("/users/sign_out") && post)
        signOut(c);
    else if (path == QLatin1String("/users/confirm"))
        confirm(c);
    else if (path == QLatin1String("/users/resend_email_confirm"))
        resendConfirmation(c);
    else if (path == QLatin1String("/users/password/new"))
        forgotPassword(c);
    else if (path == QLatin1String("/users/password/edit"))
        newPassword(c);
    else
        return false;
    return true;
}

void AccountPages::signInForm(HttpConnection* c, const WebSessions::Session& session, const QString& next,
                              const QString& failure, int status)
{
    page(c, failure.isEmpty() ? 200 : status, session, QStringLiteral("Sign in"),
         WebTemplate(QStringLiteral("sign_in"))
             .set(QStringLiteral("csrf"), session.csrf)
             .set(QStringLiteral("next"), next)
             .setHtml(QStringLiteral("failure"), failureHtml(failure))
             .render());
}

void AccountPages::signIn(HttpConnection* c)
{
    const WebSessions::Session session = m_sessions.find(c->request());
    const QUrlQuery form = WebReply::form(c->request().body);
    if (!WebSessions::acceptsForm(session, form))
        return formRefused(c, session);
    const QString email = field(form, QStringLiteral("email")).trimmed();
    const QString password = field(form, QStringLiteral("password"));
    const QString next = nextOf(form);
    const QString address = c->clientAddress();
    if (const int wait = SignInLimit::retryAfter(address, email))
        return signInForm(c, session, next,
                          QStringLiteral("Too many failed sign-ins for this account or from this address. Please try "
                                         "again in %1 minutes.")
                              .arg((wait + 59) / 60),
                          429);
    Accounts::Candidate account;
    const bool known = m_accounts.candidate(email, &account);
    // The hash takes a processor for a while: not this connection thread's.
    SlowWork::run<bool>(
        c, [known, password, hash = account.passwordHash] { return Accounts::passwordMatches(known, password, hash); },
        [this, c, session, account, email, address, next](const bool& right) {
            if (!right) {
                SignInLimit::failed(address, email);
                return signInForm(c, session, next, QStringLiteral("The e-mail address or the password is wrong."));
            }
            SignInLimit::succeeded(email);
            if (account.secondFactor)
                return redirect(c,
                                QStringLiteral("/users/sign_in/code?next=")
                                    + QString::fromLatin1(QUrl::toPercentEncoding(next, "/")),
                                WebSessions::cookieOf(m_sessions.replace(session, {}, account.userId)));
            redirect(c, next, WebSessions::cookieOf(m_sessions.replace(session, account.userId, {})));
        });
}

void AccountPages::codeForm(HttpConnection* c, const WebSessions::Session& session, const QString& next,
                            const QString& failure)
{
    if (session.pendingUserId.isEmpty())
        return signInFirst(c, next);
    page(c, failure.isEmpty() ? 200 : 401, session, QStringLiteral("Second factor"),
         WebTemplate(QStringLiteral("code"))
             .set(QStringLiteral("csrf"), session.csrf)
             .set(QStringLiteral("next"), next)
             .setHtml(QStringLiteral("failure"), failureHtml(failure))
             .render());
}

void AccountPages::verifyCode(HttpConnection* c)
{
    const WebSessions::Session session = m_sessions.find(c->request());
    const QUrlQuery form = WebReply::form(c->request().body);
    if (!WebSessions::acceptsForm(session, form))
        return formRefused(c, session);
    if (session.pendingUserId.isEmpty())
        return signInFirst(c, nextOf(form));
    // Wrong codes count like wrong passwords: six digits are quickly guessed otherwise.
    const QString email = accountOf(session.pendingUserId).email;
    const QString address = c->clientAddress();
    if (SignInLimit::retryAfter(address, email) > 0) {
        m_sessions.end(session);
        return signInFirst(c, nextOf(form));
    }
    if (!takeCode(session.pendingUserId, field(form, QStringLiteral("code")))) {
        SignInLimit::failed(address, email);
        return codeForm(c, session, nextOf(form), QStringLiteral("The code is wrong or has expired."));
    }
    SignInLimit::succeeded(email);
    redirect(c, nextOf(form), WebSessions::cookieOf(m_sessions.replace(session, session.pendingUserId, {})));
}

void AccountPages::signOut(HttpConnection* c)
{
    const WebSessions::Session session = m_sessions.find(c->request());
    if (!WebSessions::acceptsForm(session, WebReply::form(c->request().body)))
        return formRefused(c, session);
    m_sessions.end(session);
    redirect(c, QStringLiteral("/users/sign_in"), WebSessions::expiredCookie());
}

void AccountPages::confirm(HttpConnection* c)
{
    const WebSessions::Session session = m_sessions.find(c->request());
    QString userId;
    QString ignored;
    if (!WebSessions::takeLink(field(c->request().query, QStringLiteral("token")).toLatin1(), QStringLiteral("confirm"),
                               &userId, &ignored))
        return message(c, 404, session, QStringLiteral("This link has expired"),
                       QStringLiteral("The confirmation link is used or too old. Sign in and have a new one sent."),
                       QStringLiteral("Send a new link"), QStringLiteral("/users/resend_email_confirm"));
    QSqlQuery update(Database::connection());
    update.prepare(QStringLiteral("UPDATE users SET needs_confirmation = false WHERE id = ? RETURNING email"));
    update.addBindValue(userId);
    if (!update.exec() || !update.next())
        return message(c, 500, session, QStringLiteral("Not confirmed"),
                       QStringLiteral("The server's database failed. Please try the link again later."));
    message(c, 200, session, QStringLiteral("Address confirmed"),
            QStringLiteral("Thank you: %1 is confirmed. Veluria lets you publish and download with it now.")
                .arg(update.value(0).toString()));
}

void AccountPages::resendConfirmation(HttpConnection* c)
{
    const WebSessions::Session session = m_sessions.find(c->request());
    const bool post = c->request().method == "POST";
    if (post && !WebSessions::acceptsForm(session, WebReply::form(c->request().body)))
        return formRefused(c, session);
    if (!session.isSignedIn())
        return signInFirst(c, QStringLiteral("/users/resend_email_confirm"));
    const Account account = accountOf(session.userId);
    if (!account.needsConfirmation)
        return message(c, 200, session, QStringLiteral("Address confirmed"),
                       QStringLiteral("%1 is confirmed already; there is nothing to do.").arg(account.email));
    if (!post)
        return page(c, 200, session, QStringLiteral("Confirm your e-mail address"),
                    WebTemplate(QStringLiteral("resend"))
                        .set(QStringLiteral("csrf"), session.csrf)
                        .set(QStringLiteral("email"), account.email)
                        .render());
    const QByteArray secret = WebSessions::makeLink(account.id, QStringLiteral("confirm"), {}, confirmLinkLifetime);
    const bool sent = !secret.isEmpty()
        && m_mailer.send(account.email, QStringLiteral("Confirm your e-mail address for Veluria"),
                         QStringLiteral("Hello,\n\nplease confirm that this address is yours by opening this link "
                                        "within three days:\n\n%1/users/confirm?token=%2\n\nIf you did not ask "
                                        "for it, you can ignore this mail.\n")
                             .arg(m_webAddress, QString::fromLatin1(secret)));
    if (!sent)
        return message(c, 500, session, QStringLiteral("Not sent"),
                       QStringLiteral("The server could not send the mail. Please try again later."));
    message(c, 200, session, QStringLiteral("Link sent"),
            QStringLiteral("A new confirmation link is on its way to %1. It works for three days.").arg(account.email));
}

void AccountPages::forgotPassword(HttpConnection* c)
{
    const WebSessions::Session session = m_sessions.findOrStart(c->request());
    if (c->request().method != "POST")
        return page(c, 200, session, QStringLiteral("Forgotten password"),
                    WebTemplate(QStringLiteral("password_new")).set(QStringLiteral("csrf"), session.csrf).render());
    const QUrlQuery form = WebReply::form(c->request().body);
    if (!WebSessions::acceptsForm(session, form))
        return formRefused(c, session);
    const QString email = field(form, QStringLiteral("email")).trimmed();
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT id, email FROM users WHERE lower(email) = lower(?)"));
    query.addBindValue(email);
    if (query.exec() && query.next()) {
        const QByteArray secret =
            WebSessions::makeLink(query.value(0).toString(), QStringLiteral("reset"), {}, resetLinkLifetime);
        if (!secret.isEmpty())
            m_mailer.send(query.value(1).toString(), QStringLiteral("A new password for Veluria"),
                          QStringLiteral("Hello,\n\nsomeone, hopefully you, asked for a new Veluria password. Open "
                                         "this link within an hour to choose one:\n\n%1/users/password/edit?token=%2"
                                         "\n\nIf it was not you, ignore this mail: your password stays as it is.\n")
                              .arg(m_webAddress, QString::fromLatin1(secret)));
    }
    // The same answer for any address: the page doesn't tell who has an account.
    message(c, 200, session, QStringLiteral("Check your mail"),
            QStringLiteral("If %1 belongs to an account, a link to choose a new password is on its way to it. It "
                           "works for an hour.")
                .arg(email));
}

void AccountPages::newPassword(HttpConnection* c)
{
    const WebSessions::Session session = m_sessions.findOrStart(c->request());
    const bool post = c->request().method == "POST";
    const QUrlQuery form = post ? WebReply::form(c->request().body) : c->request().query;
    if (post && !WebSessions::acceptsForm(session, form))
        return formRefused(c, session);
    const QByteArray secret = field(form, QStringLiteral("token")).toLatin1();
    if (!WebSessions::linkIsLive(secret, QStringLiteral("reset")))
        return message(c, 404, session, QStringLiteral("This link has expired"),
                       QStringLiteral("The link is used or older than an hour. Ask for a new one."),
                       QStringLiteral("Ask for a new link"), QStringLiteral("/users/password/new"));
    const QString password = field(form, QStringLiteral("password"));
    QString failure;
    if (post && password.size() < minimumPasswordLength)
        failure = QStringLiteral("The password needs at least %1 characters.").arg(minimumPasswordLength);
    else if (post && password != field(form, QStringLiteral("confirmation")))
        failure = QStringLiteral("The two passwords are not the same.");
    if (!post || !failure.isEmpty())
        return page(c, failure.isEmpty() ? 200 : 422, session, QStringLiteral("Choose a new password"),
                    WebTemplate(QStringLiteral("password_edit"))
                        .set(QStringLiteral("csrf"), session.csrf)
                        .set(QStringLiteral("token"), QString::fromLatin1(secret))
                        .setHtml(QStringLiteral("failure"), failureHtml(failure))
                        .render());
    SlowWork::run<QString>(
        c, [password] { return PasswordHasher::hash(password); },
        [c, session, secret](const QString& hash) { setPassword(c, session, secret, hash); });
}

void AccountPages::setPassword(HttpConnection* c, const WebSessions::Session& session, const QByteArray& secret,
                               const QString& hash)
{
    QSqlDatabase db = Database::connection();
    db.transaction();
    QString userId;
    QString ignored;
    if (hash.isEmpty() || !WebSessions::takeLink(secret, QStringLiteral("reset"), &userId, &ignored)) {
        db.rollback();
        return message(c, 404, session, QStringLiteral("This link has expired"),
                       QStringLiteral("The link was used in the meantime. Ask for a new one."),
                       QStringLiteral("Ask for a new link"), QStringLiteral("/users/password/new"));
    }
    if (!Accounts::replacePassword(userId, hash) || !db.commit()) {
        db.rollback();
        return message(c, 500, session, QStringLiteral("Password not changed"),
                       QStringLiteral("The server's database failed. Please ask for a new link later."));
    }
    WebSessions::Session shown = session;
    if (shown.userId == userId)
        shown.userId.clear();
    message(c, 200, shown, QStringLiteral("Password changed"),
            QStringLiteral("Your new password is set and every earlier sign-in has ended. Sign in again with it, "
                           "in Veluria too."),
            QStringLiteral("Sign in"), QStringLiteral("/users/sign_in"));
}
