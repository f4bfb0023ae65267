#include "sdk/store/UserFolders.h"

#include "sdk/store/SafeName.h"

#include <QDir>

QString UserFolders::root()
{
    return QStringLiteral("%1/Veluria").arg(QDir::homePath());
}

QString UserFolders::workspaceFolder(const QString& workspaceName, const QString& workspaceId)
{
    const QString safe = SafeName::component(workspaceName);
    return root() + QLatin1Char('/') + (safe == workspaceName ? safe : SafeName::tagged(safe, workspaceId.left(8)));
}
