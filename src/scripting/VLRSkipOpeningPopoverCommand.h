#pragma once

#include "scripting/VLRScriptCommand.h"

// Keeps the popover closed at the end of the launch; too late once it opened.
class VLRSkipOpeningPopoverCommand : public VLRScriptCommand
{
public:
    using VLRScriptCommand::VLRScriptCommand;
    void performDefaultImplementation() override;
};
