#include "scripting/VLRSkipOpeningPopoverCommand.h"

#include "scripting/ScriptableApplication.h"

void VLRSkipOpeningPopoverCommand::performDefaultImplementation()
{
    if (application())
        application()->setSkipOpeningPop(true);
}
