#pragma once

#include "scripting/VLRScriptCommand.h"

// Shows the sign-in page's hidden environment selector, or hides it.
class VLRToggleEnvironmentPopUpCommand : public VLRScriptCommand
{
public:
    using VLRScriptCommand::VLRScriptCommand;
    void performDefaultImplementation() override;
};
