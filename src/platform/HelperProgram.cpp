#include "platform/HelperProgram.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

QString HelperProgram::executablePath(const QString& name)
{
    if (name.isEmpty())
        return QString();
    const QString beside = QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
    const QFileInfo besideInfo(beside);
    if (besideInfo.isFile() && besideInfo.isExecutable())
        return beside;
    const QString onPath = QStandardPaths::findExecutable(name);
    return onPath.isEmpty() ? QString() : onPath;
}
