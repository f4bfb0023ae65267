#pragma once

#include <QLoggingCategory>

// "veluria.sdk.store": the library's database and content store. Debug lines are off
// unless QT_LOGGING_RULES turns them on.
Q_DECLARE_LOGGING_CATEGORY(lcStore)
