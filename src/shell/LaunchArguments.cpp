#include "shell/LaunchArguments.h"

#include <QDir>

namespace {

// A file: URL stays as it is; a path is taken from where this start was made.
QString absolute(const QString& path)
{
    if (path.startsWith(QLatin1String("file:")))
        return path;
    return QDir::cleanPath(QDir::current().absoluteFilePath(path));
}

} // namespace

LaunchArguments::LaunchArguments(const QStringList& arguments)
{
    for (qsizetype index = 1; index < arguments.size(); ++index) {
        const QString& argument = arguments.at(index);
        if (argument == AutostartOption) {
            m_launchedAsLoginItem = true;
        } else if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            m_helpRequested = true;
        } else if (argument == QLatin1String("--toggle-popover")) {
            m_scriptCommands.append({QStringLiteral("TogglePopover"), {}});
        } else if (argument == QLatin1String("--toggle-environment-popup")) {
            m_scriptCommands.append({QStringLiteral("ToggleEnvironmentPopUp"), {}});
        } else if (argument == QLatin1String("--skip-opening-popover")) {
            m_scriptCommands.append({QStringLiteral("SkipOpeningPopover"), {}});
        } else if (argument == QLatin1String("--set-download-location")) {
            if (++index == arguments.size()) {
                m_usageError = QStringLiteral("--set-download-location needs a folder");
                return;
            }
            m_scriptCommands.append({QStringLiteral("SetDownloadLocation"), {absolute(arguments.at(index))}});
        } else if (argument == QLatin1String("--show-transfers")) {
            m_actions.append(QStringLiteral("show-transfers"));
        } else if (argument == QLatin1String("--show-file-drop")) {
            // Every argument after it is a file, whatever it looks like.
            QStringList files;
            while (++index < arguments.size())
                files.append(absolute(arguments.at(index)));
            if (!files.isEmpty())
                m_scriptCommands.append({QStringLiteral("DragDrop"), files});
            m_scriptCommands.append({QStringLiteral("ShowFileDrop"), {}});
        } else {
            m_links.append(argument);
        }
    }
}

QString LaunchArguments::usage()
{
    return QStringLiteral(
        "Usage: veluria [OPTION...] [LINK...]\n"
        "The Veluria tray client. A start while the client runs hands everything to it.\n"
        "\n"
        "  LINK                          a veluria: download link to follow\n"
        "  --autostart                   started at login: the popover stays closed\n"
        "  --toggle-popover              open or close the popover, as a click on the tray icon\n"
        "  --skip-opening-popover        keep the popover closed at the end of the launch\n"
        "  --toggle-environment-popup    show or hide the sign-in page's service selector\n"
        "  --set-download-location DIR   answer the open question for a download's folder\n"
        "  --show-file-drop [FILE...]    give the files to the file drop panel and show it;\n"
        "                                every argument after it is a file\n"
        "  --show-transfers              open the popover on the transfers tab\n"
        "  -h, --help                    print this help\n"
        "\n"
        "The same commands are methods of com.veluria.Veluria.Scripting at /com/veluria/Veluria\n"
        "on the session bus: TogglePopover, SkipOpeningPopover, ToggleEnvironmentPopUp,\n"
        "SetDownloadLocation(s folder), ShowFileDrop, DragDrop(as files); and\n"
        "org.freedesktop.Application.ActivateAction(\"show-transfers\", [], {}) on the same object.\n");
}
