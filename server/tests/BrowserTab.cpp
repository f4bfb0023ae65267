#include "BrowserTab.h"

#include "TestCluster.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QRegularExpression>

BrowserTab::BrowserTab(const QString& program)
{
    m_chromium.start(program,
                     {QStringLiteral("--headless"), QStringLiteral("--no-sandbox"), QStringLiteral("--disable-gpu"),
                      QStringLiteral("--no-first-run"), QStringLiteral("--ignore-certificate-errors"),
                      QStringLiteral("--remote-debugging-port=0"), QStringLiteral("--remote-allow-origins=*"),
                      QStringLiteral("--user-data-dir=") + m_profile.path(), QStringLiteral("about:blank")});
    // Chromium says on standard error where its DevTools listen.
    QByteArray said;
    const QRegularExpression listening(QStringLiteral("ws://127\\.0\\.0\\.1:(\\d+)/"));
    QRegularExpressionMatch match;
    TestCluster::waitFor(
        [&] {
            said += m_chromium.readAllStandardError();
            match = listening.match(QString::fromLatin1(said));
            return match.hasMatch() || m_chromium.state() == QProcess::NotRunning;
        },
        20000);
    if (!match.hasMatch()) {
        m_missing = QStringLiteral("chromium's DevTools did not start: ") + QString::fromLocal8Bit(said.right(500));
        return;
    }
    QNetworkAccessManager network;
    QNetworkReply* list =
        network.get(QNetworkRequest(QUrl(QStringLiteral("http://127.0.0.1:%1/json/list").arg(match.captured(1)))));
    TestCluster::waitFor([list] { return list->isFinished(); });
    QString page;
    for (const QJsonValue& target : QJsonDocument::fromJson(list->readAll()).array())
        if (target[QStringLiteral("type")] == QLatin1String("page"))
            page = target[QStringLiteral("webSocketDebuggerUrl")].toString();
    delete list;
    QObject::connect(&m_socket, &QWebSocket::textMessageReceived, [this](const QString& message) {
        m_messages.append(QJsonDocument::fromJson(message.toUtf8()).object());
    });
    m_socket.open(QUrl(page));
    if (page.isEmpty() || !TestCluster::waitFor([this] { return m_socket.state() == QAbstractSocket::ConnectedState; })
        || call(QStringLiteral("Page.enable")).contains(QStringLiteral("error")))
        m_missing = QStringLiteral("chromium's page can't be driven over the DevTools protocol.");
}

BrowserTab::~BrowserTab()
{
    m_socket.close();
    m_chromium.kill();
    m_chromium.waitForFinished();
}

QJsonObject BrowserTab::call(const QString& method, const QJsonObject& params)
{
    const int id = ++m_nextId;
    m_socket.sendTextMessage(QString::fromUtf8(QJsonDocument(QJsonObject{{QStringLiteral("id"), id},
                                                                         {QStringLiteral("method"), method},
                                                                         {QStringLiteral("params"), params}})
                                                   .toJson(QJsonDocument::Compact)));
    QJsonObject answer;
    TestCluster::waitFor(
        [&] {
            for (qsizetype i = 0; i < m_messages.size(); ++i)
                if (m_messages[i][QStringLiteral("id")].toInt() == id) {
                    answer = m_messages.takeAt(i);
                    return true;
                }
            return false;
        },
        15000);
    return answer;
}

bool BrowserTab::waitForLoad(int ms)
{
    return TestCluster::waitFor(
        [this] {
            for (qsizetype i = 0; i < m_messages.size(); ++i)
                if (m_messages[i][QStringLiteral("method")] == QLatin1String("Page.loadEventFired")) {
                    m_messages.remove(0, i + 1);
                    return true;
                }
            return false;
        },
        ms);
}

bool BrowserTab::open(const QString& url)
{
    m_messages.clear();
    return !call(QStringLiteral("Page.navigate"), {{QStringLiteral("url"), url}}).contains(QStringLiteral("error"))
        && waitForLoad();
}

QJsonValue BrowserTab::evaluate(const QString& expression)
{
    return call(QStringLiteral("Runtime.evaluate"),
                {{QStringLiteral("expression"), expression}, {QStringLiteral("returnByValue"), true}})
        .value(QStringLiteral("result"))[QStringLiteral("result")][QStringLiteral("value")];
}

bool BrowserTab::submit(const QString& expression)
{
    m_messages.clear();
    evaluate(expression);
    return waitForLoad();
}
