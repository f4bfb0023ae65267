#pragma once

#include <QLoggingCategory>

// "veluria.signin": the sign-in pages. Debug lines are off
// unless QT_LOGGING_RULES turns them on.
Q_DECLARE_LOGGING_CATEGORY(lcSignIn)
