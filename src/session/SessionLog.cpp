#include "session/SessionLog.h"

Q_LOGGING_CATEGORY(lcSession, "veluria.session", QtInfoMsg)
