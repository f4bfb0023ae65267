#pragma once

#include <QTcpServer>

#include <functional>

// Accepts on the listening thread only and passes each descriptor on, so
// that no TLS handshake or request ever runs where connections are taken.
class Listener : public QTcpServer
{
    Q_OBJECT

public:
    explicit Listener(std::function<void(qintptr)> handOver, QObject* parent = nullptr);

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    std::function<void(qintptr)> m_handOver;
};
