#include "scripting/VLRScriptCommand.h"

#include "scripting/ScriptableApplication.h"

VLRScriptCommand::VLRScriptCommand(ScriptableApplication* application, const QVariant& directParameter)
    : m_application(application)
    , m_directParameter(directParameter)
{ }

MainViewController* VLRScriptCommand::mainViewController() const
{
    return m_application ? m_application->mainViewController() : nullptr;
}
