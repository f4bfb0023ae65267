#include "sdk/accounts/AccountsLog.h"

Q_LOGGING_CATEGORY(lcAccounts, "veluria.sdk.accounts", QtInfoMsg)
