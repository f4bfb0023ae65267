#include "Listener.h"

Listener::Listener(std::function<void(qintptr)> handOver, QObject* parent)
    : QTcpServer(parent)
    , m_handOver(std::move(handOver))
{ }

void Listener::incomingConnection(qintptr descriptor)
{
    m_handOver(descriptor);
}
