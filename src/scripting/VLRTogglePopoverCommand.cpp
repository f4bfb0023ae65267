#include "scripting/VLRTogglePopoverCommand.h"

#include "session/MainViewController.h"
#include "widgets/StatusItemImageView.h"

void VLRTogglePopoverCommand::performDefaultImplementation()
{
    MainViewController* main = mainViewController();
    if (StatusItemImageView* view = main ? main->statusItemImageView() : nullptr)
        view->simulateClick();
}
