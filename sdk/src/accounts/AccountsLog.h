#pragma once

#include <QLoggingCategory>

// "veluria.sdk.accounts": the library's accounts (sign-in, sessions, keychain). Debug lines are off
// unless QT_LOGGING_RULES turns them on.
Q_DECLARE_LOGGING_CATEGORY(lcAccounts)
