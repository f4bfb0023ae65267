#pragma once

#include <QLoggingCategory>

// "veluria.shell": the shell (start, stop, one client a session). Debug lines are off
// unless QT_LOGGING_RULES turns them on.
Q_DECLARE_LOGGING_CATEGORY(lcShell)
