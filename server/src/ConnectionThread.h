#pragma once

#include <QObject>
#include <QSslConfiguration>
#include <QThread>

#include <functional>
#include <optional>

class HttpConnection;

// A thread of its own on which connections live: their socket (and its TLS),
// their parsing, the handlers of their requests and the thread's own
// database connection. The listener hands it accepted descriptors.
class ConnectionThread : public QObject
{
    Q_OBJECT

public:
    using Setup = std::function<void(HttpConnection*)>;

    // tls null: plain TCP (behind a TLS-terminating proxy). setup runs on
    // this thread for each new connection.
    ConnectionThread(const QSslConfiguration* tls, Setup setup, int number);
    ~ConnectionThread() override;

    // From any thread: the connection is made and served on this one.
    void take(qintptr descriptor);

private:
    void open(qintptr descriptor);

    QThread m_thread;
    std::optional<QSslConfiguration> m_tls;
    Setup m_setup;
};
