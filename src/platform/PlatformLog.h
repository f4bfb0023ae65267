#pragma once

#include <QLoggingCategory>

// "veluria.platform": the platform's services. Debug lines are off
// unless QT_LOGGING_RULES turns them on.
Q_DECLARE_LOGGING_CATEGORY(lcPlatform)
