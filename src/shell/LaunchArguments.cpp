#include "shell/LaunchArguments.h"

LaunchArguments::LaunchArguments(const QStringList& arguments)
{
    for (qsizetype index = 1; index < arguments.size(); ++index) {
        const QString& argument = arguments.at(index);
        if (argument == AutostartOption)
            m_launchedAsLoginItem = true;
        else
            m_links.append(argument);
    }
}
