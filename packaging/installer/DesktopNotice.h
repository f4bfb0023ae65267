#pragma once

#include <QString>

// A notification on the desktop's notification server, for a helper that
// has no window: sent and forgotten. Without a server the text goes to
// standard error alone.
class DesktopNotice
{
public:
    static void show(const QString& title, const QString& text);
};
