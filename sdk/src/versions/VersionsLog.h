#pragma once

#include <QLoggingCategory>

// "veluria.sdk.versions": the library's version checks. Debug lines are off
// unless QT_LOGGING_RULES turns them on.
Q_DECLARE_LOGGING_CATEGORY(lcVersions)
