#include "sdk/remote/RemoteLog.h"

Q_LOGGING_CATEGORY(lcRemote, "veluria.sdk.remote", QtInfoMsg)
