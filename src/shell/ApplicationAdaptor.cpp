#include "shell/ApplicationAdaptor.h"

#include "shell/ClientInstance.h"

ApplicationAdaptor::ApplicationAdaptor(ClientInstance* instance)
    : QDBusAbstractAdaptor(instance)
    , m_instance(instance)
{ }

// What the desktop adds about the start (a startup notification id, the
// display) changes nothing for a tray client.
void ApplicationAdaptor::Activate(const QVariantMap&)
{
    m_instance->activate();
}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap&)
{
    m_instance->open(uris);
}

// The actions take no parameter.
void ApplicationAdaptor::ActivateAction(const QString& actionName, const QVariantList&, const QVariantMap&)
{
    m_instance->activateAction(actionName);
}
