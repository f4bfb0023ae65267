#include "BrowserTab.h"
#include "HeadlessChromium.h"
#include "TestCluster.h"

#include "sdk/accounts/Base32.h"
#include "sdk/accounts/Totp.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

QByteArray json(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

// What a browser would get, without following redirects or keeping cookies.
struct Answer
{
    int status = 0;
    QString body;
    QByteArray location;
    QByteArray setCookie;
    QByteArray disposition;
    // "name=value" of Set-Cookie, to send back.
    QByteArray cookie() const { return setCookie.left(setCookie.indexOf(';')); }
};

class WebPagesTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        cluster = new TestCluster;
        chromium = new HeadlessChromium;
        if (!cluster->missing().isEmpty())
            return;
        port = cluster->startServer();
        QDir().mkpath(QStringLiteral(VELURIA_SCREENSHOT_DIR));
    }
    static void TearDownTestSuite()
    {
        delete chromium;
        delete cluster;
    }
    void SetUp() override
    {
        if (!cluster->missing().isEmpty())
            GTEST_SKIP() << cluster->missing().toStdString();
    }

    static QString site() { return QStringLiteral("https://localhost:%1").arg(port); }

    static QByteArray newUser(const QString& email, bool secondFactor = false, QString* secret = nullptr)
    {
        const QString made = cluster->addUser(email, QStringLiteral("password of ") + email, secondFactor);
        if (secret)
            *secret = made;
        return secondFactor ? QByteArray() : cluster->signIn(port, email, QStringLiteral("password of ") + email);
    }

    static QString newWorkspace(const QByteArray& owner, const QString& name, const QStringList& members)
    {
        const QString id =
            cluster->call(port, "POST", "/v1/workspaces", owner, json({{"name", name}})).json["id"].toString();
        for (const QString& email : members)
            cluster->call(port, "POST", "/v1/workspaces/" + id + "/members", owner, json({{"email", email}}));
        return id;
    }

    static QString enterUrl(const QByteArray& token, const QString& path)
    {
        return cluster->call(port, "POST", "/v1/web-sessions", token, json({{"path", path}})).json["url"].toString();
    }

    static Answer send(const QByteArray& method, const QString& pathOrUrl, const QByteArray& cookie,
                       const QByteArray& form = {})
    {
        const QUrl url = pathOrUrl.startsWith(QLatin1String("https:")) ? QUrl(pathOrUrl) : QUrl(site() + pathOrUrl);
        QNetworkRequest request(url);
        request.setSslConfiguration(cluster->tls());
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        if (!cookie.isEmpty())
            request.setRawHeader("Cookie", cookie);
        if (method == "POST")
            request.setHeader(QNetworkRequest::ContentTypeHeader,
                              QByteArrayLiteral("application/x-www-form-urlencoded"));
        QNetworkReply* reply = cluster->network().sendCustomRequest(request, method, form);
        QEventLoop loop;
        QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        Answer answer;
        answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        answer.body = QString::fromUtf8(reply->readAll());
        answer.location = reply->rawHeader("Location");
        answer.setCookie = reply->rawHeader("Set-Cookie");
        answer.disposition = reply->rawHeader("Content-Disposition");
        reply->deleteLater();
        return answer;
    }
    static Answer get(const QString& path, const QByteArray& cookie = {}) { return send("GET", path, cookie); }
    static Answer post(const QString& path, const QByteArray& cookie, const QList<std::pair<QString, QString>>& fields)
    {
        QByteArray form;
        for (const auto& [name, value] : fields)
            form += (form.isEmpty() ? "" : "&") + name.toUtf8() + '=' + QUrl::toPercentEncoding(value);
        return send("POST", path, cookie, form);
    }

    // The cookie of a browser that entered through a client's one-time link.
    static QByteArray signedInCookie(const QByteArray& token, const QString& path = QStringLiteral("/"))
    {
        return get(enterUrl(token, path)).cookie();
    }

    static QString csrfOf(const QString& html)
    {
        return QRegularExpression(QStringLiteral("name=\"csrf\" value=\"([^\"]+)\"")).match(html).captured(1);
    }

    // A picture of the page in build/screenshots/, to look at.
    static void shoot(const QString& url, const QString& name)
    {
        const QString png = QStringLiteral(VELURIA_SCREENSHOT_DIR "/web-%1.png").arg(name);
        QFile::remove(png);
        EXPECT_TRUE(chromium->screenshot(url, png) && QFile(png).size() > 0) << name.toStdString();
    }

    static QString mailIn(const QString& folder, const QString& to)
    {
        const QStringList files = QDir(folder).entryList({QStringLiteral("*.eml")}, QDir::Files, QDir::Time);
        for (const QString& name : files) {
            QFile file(folder + QLatin1Char('/') + name);
            EXPECT_EQ(file.permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
            file.open(QIODevice::ReadOnly);
            const QString text = QString::fromUtf8(file.readAll());
            if (text.contains(QStringLiteral("To: ") + to))
                return text;
        }
        return {};
    }

    static inline TestCluster* cluster = nullptr;
    static inline HeadlessChromium* chromium = nullptr;
    static inline quint16 port = 0;
};

#define REQUIRE_BROWSER()                                                                                              \
    if (!chromium->missing().isEmpty())                                                                                \
    GTEST_SKIP() << chromium->missing().toStdString()

TEST_F(WebPagesTest, WorkspacePagesShowMembersAndFilesToMembersOnly)
{
    REQUIRE_BROWSER();
    const QByteArray ann = newUser(QStringLiteral("ann@kiln.example"));
    const QByteArray ben = newUser(QStringLiteral("ben@kiln.example"));
    const QByteArray carol = newUser(QStringLiteral("carol@elsewhere.example"));
    const QString workspace = newWorkspace(ann, QStringLiteral("Kiln & <Co>"), {QStringLiteral("ben@kiln.example")});
    ASSERT_FALSE(workspace.isEmpty());
    cluster->call(port, "POST", "/v1/workspaces/" + workspace + "/publications", ben,
                  json({{"text", "<script>document.title='owned'</script> \"{{title}}\" & bye"}}));
    const QByteArray content = "glaze recipe\n";
    const QString hostile = QStringLiteral("<img src=x onerror=alert(1)>\"ünï\".txt");
    const auto upload = cluster->call(
        port, "POST", "/v1/uploads", ben,
        json({{"workspace", workspace},
              {"fileName", hostile},
              {"size", content.size()},
              {"sha256", QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex())},
              {"text", "the recipe"}}));
    const auto stored = cluster->call(port, "PATCH", "/v1/uploads/" + upload.json["id"].toString(), ben, content,
                                      {{"Upload-Offset", "0"}});
    ASSERT_EQ(stored.status, 201);
    const QString revision = stored.json["revision"].toString();

    const QString page = chromium->dumpDom(enterUrl(ann, "/workspaces/" + workspace));
    EXPECT_TRUE(page.contains("<h1>Kiln &amp; &lt;Co&gt;</h1>")) << page.toStdString();
    EXPECT_TRUE(page.contains("&lt;script&gt;document.title='owned'&lt;/script&gt; \"{{title}}\" &amp; bye"));
    EXPECT_FALSE(page.contains("<script"));
    EXPECT_FALSE(page.contains("<img src=\"x\""));
    EXPECT_TRUE(page.contains("ben@kiln.example"));
    EXPECT_TRUE(page.contains("Owner"));
    EXPECT_TRUE(page.contains("/workspaces/" + workspace + "/files/" + revision));
    EXPECT_FALSE(page.contains("owned · Veluria"));

    const QString assets = chromium->dumpDom(enterUrl(ben, "/workspaces/" + workspace + "/assets"));
    EXPECT_TRUE(assets.contains("&lt;img src=x onerror=alert(1)&gt;\"ünï\".txt")) << assets.toStdString();
    shoot(enterUrl(ann, "/workspaces/" + workspace), QStringLiteral("workspace"));
    shoot(enterUrl(ben, "/workspaces/" + workspace + "/assets"), QStringLiteral("assets"));

    // The file itself, for a member's browser; under its own name, as data.
    const QString filePath = "/workspaces/" + workspace + "/files/" + revision;
    const Answer file = get(filePath, signedInCookie(ben));
    EXPECT_EQ(file.status, 200);
    EXPECT_EQ(file.body.toUtf8(), content);
    EXPECT_TRUE(file.disposition.startsWith("attachment;"));
    EXPECT_TRUE(file.disposition.contains("filename*=UTF-8''%3Cimg%20src%3Dx"));

    // Someone else sees what a missing workspace shows.
    const QString outside = chromium->dumpDom(enterUrl(carol, "/workspaces/" + workspace));
    EXPECT_TRUE(outside.contains("Not found"));
    EXPECT_FALSE(outside.contains("Kiln"));
    EXPECT_EQ(get(filePath, signedInCookie(carol)).status, 404);
    EXPECT_EQ(get(filePath).status, 303);
}

TEST_F(WebPagesTest, APersonSignsInWithTheFormsAndNoMembersScriptRuns)
{
    REQUIRE_BROWSER();
    QString secret;
    newUser(QStringLiteral("kim@kiln.example"), true, &secret);
    const QByteArray lou = newUser(QStringLiteral("lou@kiln.example"));
    const QString workspace = newWorkspace(lou, QStringLiteral("Tiles"), {QStringLiteral("kim@kiln.example")});
    cluster->call(
        port, "POST", "/v1/workspaces/" + workspace + "/publications", lou,
        json({{"text", "<img src=x onerror=\"document.title='owned'\"><script>document.title='owned'</script>"}}));
    BrowserTab tab(chromium->program());
    ASSERT_TRUE(tab.missing().isEmpty()) << tab.missing().toStdString();

    ASSERT_TRUE(tab.open(site() + "/workspaces/" + workspace));
    EXPECT_TRUE(tab.text().contains("Sign in to Veluria"));
    ASSERT_TRUE(tab.submit("document.querySelector('[name=email]').value = 'kim@kiln.example';"
                           "document.querySelector('[name=password]').value = 'password of kim@kiln.example';"
                           "document.querySelector('main form').submit()"));
    EXPECT_TRUE(tab.text().contains("authenticator app"));
    const QString code = Totp::code(Base32::decode(secret), Totp::stepAt(QDateTime::currentSecsSinceEpoch()));
    ASSERT_TRUE(tab.submit(QStringLiteral("document.querySelector('[name=code]').value = '%1';"
                                          "document.querySelector('main form').submit()")
                               .arg(code)));
    EXPECT_TRUE(tab.text().contains("<script>document.title='owned'</script>")) << tab.text().toStdString();
    EXPECT_EQ(tab.evaluate("document.title").toString(), "Tiles · Veluria");
    // The session's cookie is out of reach of anything in the page.
    EXPECT_EQ(tab.evaluate("document.cookie").toString(), "");

    ASSERT_TRUE(tab.submit("document.querySelector('form.account').submit()"));
    EXPECT_TRUE(tab.text().contains("Sign in to Veluria"));
    ASSERT_TRUE(tab.open(site() + "/workspaces/" + workspace));
    EXPECT_FALSE(tab.text().contains("Tiles"));
}

TEST_F(WebPagesTest, OneTimeLinksWorkOnceInTimeAndStayOnTheSite)
{
    const QByteArray dora = newUser(QStringLiteral("dora@kiln.example"));
    const QString url = enterUrl(dora, QStringLiteral("/help-center"));
    ASSERT_TRUE(url.startsWith(site() + "/web/enter?code="));
    const Answer first = get(url);
    EXPECT_EQ(first.status, 303);
    EXPECT_EQ(first.location, "/help-center");
    EXPECT_TRUE(first.setCookie.contains("; HttpOnly; Secure; SameSite=Strict"));
    EXPECT_EQ(get("/", first.cookie()).status, 200);
    EXPECT_EQ(get(url).status, 404);

    const QString late = enterUrl(dora, QStringLiteral("/"));
    ASSERT_TRUE(cluster->sql("UPDATE web_links SET expires_at = now() - interval '1 second'"));
    EXPECT_EQ(get(late).status, 404);

    for (const char* away : {"//evil.example/", "https://evil.example/", "/\\evil.example", "relative"})
        EXPECT_EQ(cluster->call(port, "POST", "/v1/web-sessions", dora, json({{"path", away}})).status, 422) << away;
    EXPECT_EQ(cluster->call(port, "POST", "/v1/web-sessions", {}, json({{"path", "/"}})).status, 401);
}

TEST_F(WebPagesTest, FormsRefuseRequestsWithoutTheSessionsToken)
{
    const QByteArray eve = newUser(QStringLiteral("eve@kiln.example"));
    ASSERT_TRUE(cluster->sql("UPDATE users SET needs_confirmation = true WHERE email = 'eve@kiln.example'"));
    const QByteArray cookie = signedInCookie(eve);
    const QString token = csrfOf(get("/users/resend_email_confirm", cookie).body);
    ASSERT_FALSE(token.isEmpty());
    const Answer other = get("/users/password/new");
    const QString othersToken = csrfOf(other.body);
    const QString outbox = cluster->folder() + "/outbox";

    for (const QString& action : {QStringLiteral("/users/sign_out"), QStringLiteral("/users/resend_email_confirm"),
                                  QStringLiteral("/users/sign_in"), QStringLiteral("/users/password/new")}) {
        EXPECT_EQ(post(action, cookie, {{"email", "eve@kiln.example"}}).status, 403) << action.toStdString();
        EXPECT_EQ(post(action, cookie, {{"csrf", othersToken}, {"email", "eve@kiln.example"}}).status, 403);
        EXPECT_EQ(post(action, {}, {{"csrf", token}, {"email", "eve@kiln.example"}}).status, 403);
    }
    EXPECT_TRUE(mailIn(outbox, "eve@kiln.example").isEmpty());
    EXPECT_EQ(get("/", cookie).status, 200);

    const Answer out = post("/users/sign_out", cookie, {{"csrf", token}});
    EXPECT_EQ(out.status, 303);
    EXPECT_TRUE(out.setCookie.contains("Max-Age=0"));
    EXPECT_EQ(get("/", cookie).status, 303);
}

TEST_F(WebPagesTest, SignInThroughTheFormsWithSecondFactor)
{
    QString secret;
    newUser(QStringLiteral("fay@kiln.example"), true, &secret);
    ASSERT_FALSE(secret.isEmpty());
    const Answer form = get("/users/sign_in?next=/users/resend_email_confirm");
    const QByteArray anonymous = form.cookie();
    const QString token = csrfOf(form.body);
    ASSERT_FALSE(anonymous.isEmpty());

    const Answer wrong = post("/users/sign_in", anonymous,
                              {{"csrf", token},
                               {"email", "fay@kiln.example"},
                               {"password", "guess"},
                               {"next", "/users/resend_email_confirm"}});
    EXPECT_EQ(wrong.status, 401);
    EXPECT_TRUE(wrong.body.contains("The e-mail address or the password is wrong."));

    const Answer password = post("/users/sign_in", anonymous,
                                 {{"csrf", token},
                                  {"email", "FAY@kiln.example"},
                                  {"password", "password of fay@kiln.example"},
                                  {"next", "/users/resend_email_confirm"}});
    ASSERT_EQ(password.status, 303);
    EXPECT_TRUE(password.location.startsWith("/users/sign_in/code"));
    const QByteArray pending = password.cookie();
    EXPECT_NE(pending, anonymous);
    // The password alone opens no page.
    EXPECT_EQ(get("/", pending).status, 303);
    EXPECT_EQ(get("/users/resend_email_confirm", anonymous).status, 303);

    const Answer codeForm = get(QString::fromLatin1(password.location), pending);
    const QString code = Totp::code(Base32::decode(secret), Totp::stepAt(QDateTime::currentSecsSinceEpoch()));
    const QString badCode = code == QLatin1String("000000") ? QStringLiteral("111111") : QStringLiteral("000000");
    const QString next = QStringLiteral("/users/resend_email_confirm");
    EXPECT_EQ(post("/users/sign_in/code", pending, {{"csrf", csrfOf(codeForm.body)}, {"code", badCode}, {"next", next}})
                  .status,
              401);
    const Answer verified =
        post("/users/sign_in/code", pending, {{"csrf", csrfOf(codeForm.body)}, {"code", code}, {"next", next}});
    ASSERT_EQ(verified.status, 303);
    EXPECT_EQ(verified.location, next.toLatin1());
    const Answer page = get(next, verified.cookie());
    EXPECT_EQ(page.status, 200);
    EXPECT_TRUE(page.body.contains("fay@kiln.example is confirmed already"));

    // Guessing codes ends the pending sign-in, however right the next one is.
    const Answer guesser = get("/users/sign_in");
    const Answer guessing = post(
        "/users/sign_in", guesser.cookie(),
        {{"csrf", csrfOf(guesser.body)}, {"email", "fay@kiln.example"}, {"password", "password of fay@kiln.example"}});
    const QString guessToken = csrfOf(get("/users/sign_in/code", guessing.cookie()).body);
    for (int i = 0; i < 5; ++i)
        post("/users/sign_in/code", guessing.cookie(), {{"csrf", guessToken}, {"code", badCode}});
    const QString fresh = Totp::code(Base32::decode(secret), Totp::stepAt(QDateTime::currentSecsSinceEpoch()) + 1);
    EXPECT_EQ(post("/users/sign_in/code", guessing.cookie(), {{"csrf", guessToken}, {"code", fresh}}).location,
              "/users/sign_in?next=/");

    // After a sign-in the browser goes on to this site only.
    const Answer again = get("/users/sign_in");
    cluster->addUser(QStringLiteral("gus@kiln.example"), QStringLiteral("password of gus"));
    EXPECT_EQ(post("/users/sign_in", again.cookie(),
                   {{"csrf", csrfOf(again.body)},
                    {"email", "gus@kiln.example"},
                    {"password", "password of gus"},
                    {"next", "//evil.example/"}})
                  .location,
              "/");
}

TEST_F(WebPagesTest, ConfirmationAndNewPasswordByMail)
{
    REQUIRE_BROWSER();
    const QByteArray hal = newUser(QStringLiteral("hal@kiln.example"));
    ASSERT_TRUE(cluster->sql("UPDATE users SET needs_confirmation = true WHERE email = 'hal@kiln.example'"));
    const QString outbox = cluster->folder() + "/outbox";
    const QRegularExpression link(QStringLiteral("https://localhost:\\d+(/users/\\S+token=\\S+)"));

    const QByteArray cookie = signedInCookie(hal);
    const Answer resend = get("/users/resend_email_confirm", cookie);
    EXPECT_TRUE(resend.body.contains("hal@kiln.example"));
    shoot(enterUrl(hal, QStringLiteral("/users/resend_email_confirm")), QStringLiteral("resend"));
    EXPECT_EQ(post("/users/resend_email_confirm", cookie, {{"csrf", csrfOf(resend.body)}}).status, 200);
    const QString confirmPath = link.match(mailIn(outbox, "hal@kiln.example")).captured(1);
    ASSERT_TRUE(confirmPath.startsWith("/users/confirm?token=")) << mailIn(outbox, "hal@kiln.example").toStdString();
    EXPECT_TRUE(chromium->dumpDom(site() + confirmPath).contains("hal@kiln.example is confirmed"));
    EXPECT_FALSE(cluster->call(port, "GET", "/v1/user", hal).json["needsConfirmation"].toBool(true));
    EXPECT_EQ(get(confirmPath).status, 404);

    // A forgotten password: the same answer for an unknown address, a mail for a known one.
    shoot(site() + "/users/password/new", QStringLiteral("password-new"));
    const Answer ask = get("/users/password/new");
    const Answer unknown =
        post("/users/password/new", ask.cookie(), {{"csrf", csrfOf(ask.body)}, {"email", "nobody@kiln.example"}});
    const Answer known =
        post("/users/password/new", ask.cookie(), {{"csrf", csrfOf(ask.body)}, {"email", "hal@kiln.example"}});
    EXPECT_EQ(QString(unknown.body).replace("nobody", "hal"), known.body);
    const QString resetPath = link.match(mailIn(outbox, "hal@kiln.example")).captured(1);
    ASSERT_TRUE(resetPath.startsWith("/users/password/edit?token="));
    const QString resetToken = resetPath.section('=', 1);
    QNetworkReply* stream = cluster->openEvents(port, hal);
    QByteArray streamed;
    QObject::connect(stream, &QNetworkReply::readyRead, [&] { streamed += stream->readAll(); });
    ASSERT_TRUE(TestCluster::waitFor([&] { return streamed.contains(": connected"); }));
    const Answer form = get(resetPath, ask.cookie());
    const QString csrf = csrfOf(form.body);
    shoot(site() + resetPath, QStringLiteral("password-edit"));
    EXPECT_EQ(
        post("/users/password/edit", ask.cookie(),
             {{"csrf", csrf}, {"token", resetToken}, {"password", "new secret 1"}, {"confirmation", "new secret 2"}})
            .status,
        422);
    const Answer set =
        post("/users/password/edit", ask.cookie(),
             {{"csrf", csrf}, {"token", resetToken}, {"password", "new secret 1"}, {"confirmation", "new secret 1"}});
    EXPECT_EQ(set.status, 200);
    // Veluria, signed in with the old password, hears of it.
    EXPECT_TRUE(TestCluster::waitFor([&] { return streamed.contains("event: password"); }));
    delete stream;
    EXPECT_EQ(cluster->call(port, "GET", "/v1/user", hal).status, 401);
    EXPECT_EQ(get("/", cookie).status, 303);
    EXPECT_FALSE(cluster->signIn(port, "hal@kiln.example", "new secret 1").isEmpty());
    EXPECT_EQ(
        post("/users/password/edit", ask.cookie(),
             {{"csrf", csrf}, {"token", resetToken}, {"password", "third one 3"}, {"confirmation", "third one 3"}})
            .status,
        404);
}

TEST_F(WebPagesTest, PurchasePageCancelsRenewsAndTakesANewCard)
{
    REQUIRE_BROWSER();
    const QByteArray ida = newUser(QStringLiteral("ida@kiln.example"));
    const QByteArray jon = newUser(QStringLiteral("jon@kiln.example"));
    // The marketplace's tables as the page reads them, where its migration hasn't made them.
    cluster->sql("CREATE TABLE IF NOT EXISTS products (id uuid PRIMARY KEY DEFAULT gen_random_uuid(), name text NOT "
                 "NULL)");
    cluster->sql("CREATE TABLE IF NOT EXISTS purchases (id uuid PRIMARY KEY DEFAULT gen_random_uuid(), user_id uuid "
                 "NOT NULL REFERENCES users(id), product_id uuid NOT NULL REFERENCES products(id), renews_at "
                 "timestamptz NOT NULL, canceled boolean NOT NULL DEFAULT false, cc_expires_on date)");
    ASSERT_TRUE(cluster->sql("INSERT INTO products(id, name) VALUES ('6d1f3a52-8f7e-4a53-9d2e-0b1c2d3e4f50', "
                             "'Glaze <Pro>')"));
    ASSERT_TRUE(cluster->sql("INSERT INTO purchases(id, user_id, product_id, renews_at, cc_expires_on) SELECT "
                             "'0e5c7b9a-1d2f-4e3a-8b4c-5d6e7f8a9b01', id, '6d1f3a52-8f7e-4a53-9d2e-0b1c2d3e4f50', "
                             "'2027-03-01T00:00:00Z', '2026-12-31' FROM users WHERE email = 'ida@kiln.example'"));
    const QString path = QStringLiteral("/purchases/0e5c7b9a-1d2f-4e3a-8b4c-5d6e7f8a9b01");

    const QString shown = chromium->dumpDom(enterUrl(ida, path));
    EXPECT_TRUE(shown.contains("Your purchase of Glaze &lt;Pro&gt;")) << shown.toStdString();
    EXPECT_TRUE(shown.contains("It renews on 1 March 2027."));
    EXPECT_TRUE(shown.contains("The card on file expires on 31 December 2026."));
    shoot(enterUrl(ida, path), QStringLiteral("purchase"));
    EXPECT_TRUE(chromium->dumpDom(enterUrl(jon, path)).contains("Not found"));

    const QByteArray cookie = signedInCookie(ida);
    const QString csrf = csrfOf(get(path, cookie).body);
    EXPECT_EQ(post(path + "/cancel", signedInCookie(jon), {{"csrf", csrf}}).status, 403);
    EXPECT_EQ(post(path + "/cancel", cookie, {{"csrf", csrf}}).status, 303);
    EXPECT_TRUE(get(path, cookie).body.contains("It ends on 1 March 2027 and is not renewed."));
    EXPECT_EQ(post(path + "/card", cookie, {{"csrf", csrf}, {"expiry", "2001-01"}}).status, 422);
    EXPECT_EQ(post(path + "/card", cookie, {{"csrf", csrf}, {"expiry", "2029-02"}}).status, 303);
    EXPECT_TRUE(get(path, cookie).body.contains("expires on 28 February 2029."));
    EXPECT_EQ(post(path + "/renew", cookie, {{"csrf", csrf}}).status, 303);
    EXPECT_TRUE(get(path, cookie).body.contains("It renews on 1 March 2027."));
}

TEST_F(WebPagesTest, PublicPagesInTheBrowser)
{
    REQUIRE_BROWSER();
    const QString help = chromium->dumpDom(site() + "/help-center");
    EXPECT_TRUE(help.contains("<h1>Veluria help</h1>"));
    const QString signIn = chromium->dumpDom(site() + "/workspaces/6d1f3a52-8f7e-4a53-9d2e-0b1c2d3e4f50");
    EXPECT_TRUE(signIn.contains("Sign in to Veluria"));
    EXPECT_TRUE(signIn.contains("value=\"/workspaces/6d1f3a52-8f7e-4a53-9d2e-0b1c2d3e4f50\""));
    shoot(site() + "/help-center", QStringLiteral("help"));
    shoot(site() + "/users/sign_in", QStringLiteral("sign-in"));
    shoot(site() + "/nowhere", QStringLiteral("not-found"));
}

} // namespace
