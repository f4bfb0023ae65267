#include "ConnectionThread.h"

#include "HttpConnection.h"

#include <QSslSocket>

#include <unistd.h>

ConnectionThread::ConnectionThread(const QSslConfiguration* tls, Setup setup, int number)
    : m_setup(std::move(setup))
{
    if (tls)
        m_tls = *tls;
    m_thread.setObjectName(QStringLiteral("connections-%1").arg(number));
    moveToThread(&m_thread);
    m_thread.start();
}

ConnectionThread::~ConnectionThread()
{
    // The connections die with the thread's event loop, on their own thread.
    QMetaObject::invokeMethod(
        this,
        [this] {
            qDeleteAll(findChildren<HttpConnection*>(Qt::FindDirectChildrenOnly));
            m_thread.quit();
        },
        Qt::QueuedConnection);
    m_thread.wait();
}

void ConnectionThread::take(qintptr descriptor)
{
    QMetaObject::invokeMethod(
        this, [this, descriptor] { open(descriptor); }, Qt::QueuedConnection);
}

void ConnectionThread::open(qintptr descriptor)
{
    QTcpSocket* socket = m_tls ? new QSslSocket : new QTcpSocket;
    if (!socket->setSocketDescriptor(descriptor)) {
        ::close(int(descriptor));
        delete socket;
        return;
    }
    if (auto* tlsSocket = qobject_cast<QSslSocket*>(socket)) {
        tlsSocket->setSslConfiguration(*m_tls);
        tlsSocket->startServerEncryption();
    }
    auto* connection = new HttpConnection(socket, this);
    m_setup(connection);
}
