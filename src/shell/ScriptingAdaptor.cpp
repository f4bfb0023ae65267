#include "shell/ScriptingAdaptor.h"

#include "shell/ClientInstance.h"

ScriptingAdaptor::ScriptingAdaptor(ClientInstance* instance)
    : QDBusAbstractAdaptor(instance)
    , m_instance(instance)
{ }

void ScriptingAdaptor::ToggleEnvironmentPopUp()
{
    m_instance->performScriptCommand(QStringLiteral("ToggleEnvironmentPopUp"));
}

void ScriptingAdaptor::ShowFileDrop()
{
    m_instance->performScriptCommand(QStringLiteral("ShowFileDrop"));
}

void ScriptingAdaptor::TogglePopover()
{
    m_instance->performScriptCommand(QStringLiteral("TogglePopover"));
}

void ScriptingAdaptor::SetDownloadLocation(const QString& folder)
{
    m_instance->performScriptCommand(QStringLiteral("SetDownloadLocation"), {folder});
}

void ScriptingAdaptor::SkipOpeningPopover()
{
    m_instance->performScriptCommand(QStringLiteral("SkipOpeningPopover"));
}

void ScriptingAdaptor::DragDrop(const QStringList& files)
{
    m_instance->performScriptCommand(QStringLiteral("DragDrop"), files);
}
