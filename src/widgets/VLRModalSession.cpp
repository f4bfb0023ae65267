#include "widgets/VLRModalSession.h"

#include <QDialog>

VLRModalSession::VLRModalSession(QDialog* window)
    : m_window(window)
{ }

VLRModalSession VLRModalSession::beginModalSessionForWindow(QDialog* window)
{
    if (window) {
        window->setWindowModality(Qt::ApplicationModal);
        window->show();
    }
    return VLRModalSession(window);
}

qint64 VLRModalSession::run() const
{
    if (!m_window)
        return VLRModalResponseAbort;
    return m_window->isVisible() ? VLRModalResponseContinue : m_window->result();
}
