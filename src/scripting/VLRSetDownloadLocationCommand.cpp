#include "scripting/VLRSetDownloadLocationCommand.h"

#include "session/MainViewController.h"

#include <QUrl>

void VLRSetDownloadLocationCommand::performDefaultImplementation()
{
    MainViewController* main = mainViewController();
    if (!directParameter().isValid() || !main)
        return;
    vlr::OptionalError error;
    if (main->setWorkspaceDownloadLocation(directParameter().toUrl(), &error))
        return;
    if (error) {
        setScriptErrorNumber(int(error->code));
        setScriptErrorString(error->localizedDescription);
    }
}
