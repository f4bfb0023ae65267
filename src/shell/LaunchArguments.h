#pragma once

#include <QStringList>

// What one start of the program was given on its command line: whether the
// desktop started it at login, and the links to download, each as the string
// it is. Judging a link is the service library's job, so nothing here looks
// into them: an empty argument is an empty link.
class LaunchArguments
{
public:
    // Given by the autostart entry.
    static inline const QString AutostartOption = QStringLiteral("--autostart");

    // The program's arguments, its own name first.
    explicit LaunchArguments(const QStringList& arguments);

    bool launchedAsLoginItem() const { return m_launchedAsLoginItem; }
    const QStringList& links() const { return m_links; }

private:
    bool m_launchedAsLoginItem = false;
    QStringList m_links;
};
