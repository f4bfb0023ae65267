#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QWebSocket>

// One tab of a headless chromium driven over the DevTools protocol, for
// what a page does when a person uses it: fill in a form, send it, read
// what comes back.
class BrowserTab
{
public:
    explicit BrowserTab(const QString& program);
    ~BrowserTab();

    // Empty when the tab stands; otherwise why not.
    QString missing() const { return m_missing; }

    // Loads the URL and waits for the page (after redirects).
    bool open(const QString& url);
    // The value of a script run in the page, as the DevTools give it.
    QJsonValue evaluate(const QString& expression);
    // Runs a script that sends a form, and waits for the next page.
    bool submit(const QString& expression);
    QString text() { return evaluate(QStringLiteral("document.body.innerText")).toString(); }

private:
    QJsonObject call(const QString& method, const QJsonObject& params = {});
    bool waitForLoad(int ms = 15000);

    QTemporaryDir m_profile;
    QProcess m_chromium;
    QWebSocket m_socket;
    QString m_missing;
    int m_nextId = 0;
    QList<QJsonObject> m_messages;
};
