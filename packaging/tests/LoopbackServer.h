#pragma once

#include <QByteArray>
#include <QHash>
#include <QTcpServer>
#include <QUrl>

// A tiny HTTP server on loopback: answers GET of each path it was given with
// its body, and 404 otherwise, one request a connection.
class LoopbackServer : public QTcpServer
{
public:
    LoopbackServer();

    void serve(const QString& path, const QByteArray& body) { m_bodies.insert(path, body); }
    QUrl url(const QString& path) const;

private:
    void answer(QTcpSocket* socket);

    QHash<QString, QByteArray> m_bodies;
};
