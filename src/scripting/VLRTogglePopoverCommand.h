#pragma once

#include "scripting/VLRScriptCommand.h"

// The same as a click on the tray icon: opens or closes the popover.
class VLRTogglePopoverCommand : public VLRScriptCommand
{
public:
    using VLRScriptCommand::VLRScriptCommand;
    void performDefaultImplementation() override;
};
