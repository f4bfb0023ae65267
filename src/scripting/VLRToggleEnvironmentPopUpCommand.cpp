#include "scripting/VLRToggleEnvironmentPopUpCommand.h"

#include "session/MainViewController.h"

void VLRToggleEnvironmentPopUpCommand::performDefaultImplementation()
{
    MainViewController* main = mainViewController();
    if (LoginPage* login = main ? main->loginViewController() : nullptr)
        login->toggleEnvironmentPopUp();
}
