#pragma once

#include <QLoggingCategory>

// "veluria.session": the session (binding, dispatch, routing). Debug lines are off
// unless QT_LOGGING_RULES turns them on.
Q_DECLARE_LOGGING_CATEGORY(lcSession)
