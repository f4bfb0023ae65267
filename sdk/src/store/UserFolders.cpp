#include "sdk/store/UserFolders.h"

#include "sdk/store/SafeName.h"

#include <QDir>

QString UserFolders::root()
{
    return QStringLiteral("%1/Veluria").arg(QDir::homePath());
}

QString UserFolders::workspaceFolder(const QString& workspaceName)
{
    return root() + QLatin1Char('/') + SafeName::component(workspaceName);
}
