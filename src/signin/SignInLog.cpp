#include "signin/SignInLog.h"

Q_LOGGING_CATEGORY(lcSignIn, "veluria.signin", QtInfoMsg)
