#pragma once

#include "scripting/VLRScriptCommand.h"

// Answers the open question for a download's folder with the folder URL that is its
// parameter. No question open, or a folder the question refuses, is the
// script's error.
class VLRSetDownloadLocationCommand : public VLRScriptCommand
{
public:
    using VLRScriptCommand::VLRScriptCommand;
    void performDefaultImplementation() override;
};
