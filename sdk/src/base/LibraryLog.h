#pragma once

#include <QLoggingCategory>

// "veluria.sdk.library": the library's start, stop and environment. Debug lines are off
// unless QT_LOGGING_RULES turns them on.
Q_DECLARE_LOGGING_CATEGORY(lcLibrary)
