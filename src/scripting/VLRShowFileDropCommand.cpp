#include "scripting/VLRShowFileDropCommand.h"

#include "session/MainViewController.h"

void VLRShowFileDropCommand::performDefaultImplementation()
{
    if (MainViewController* main = mainViewController())
        main->showFileDropView();
}
