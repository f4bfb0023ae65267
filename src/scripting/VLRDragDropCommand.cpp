#include "scripting/VLRDragDropCommand.h"

#include "session/MainViewController.h"

#include <QStringList>
#include <QUrl>

void VLRDragDropCommand::performDefaultImplementation()
{
    if (!directParameter().isValid())
        return;
    const QList<QUrl> urls = directParameter().value<QList<QUrl>>();
    QStringList paths;
    paths.reserve(urls.size());
    for (const QUrl& url : urls)
        paths.append(url.path(QUrl::FullyDecoded));
    MainViewController* main = mainViewController();
    if (FileDropPage* fileDrop = main ? main->fileDropViewController() : nullptr)
        fileDrop->updateFiles(paths);
}
