#pragma once

#include "scripting/VLRScriptCommand.h"

// Gives the files, a list of file URLs, to the file drop panel, in place of what
// it held. The popover stays as it is: a script that wants the panel shown
// sends VLRShowFileDropCommand as well.
class VLRDragDropCommand : public VLRScriptCommand
{
public:
    using VLRScriptCommand::VLRScriptCommand;
    void performDefaultImplementation() override;
};
