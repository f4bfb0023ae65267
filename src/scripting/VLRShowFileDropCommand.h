#pragma once

#include "scripting/VLRScriptCommand.h"

// Opens the popover if it is closed and shows the file drop tab.
class VLRShowFileDropCommand : public VLRScriptCommand
{
public:
    using VLRScriptCommand::VLRScriptCommand;
    void performDefaultImplementation() override;
};
