#pragma once

#include <QLoggingCategory>

// "veluria.sdk.transfers": the library's transfer engine. Debug lines are off
// unless QT_LOGGING_RULES turns them on.
Q_DECLARE_LOGGING_CATEGORY(lcTransfers)
