#include "sdk/base/StoreLog.h"

Q_LOGGING_CATEGORY(lcStore, "veluria.sdk.store", QtInfoMsg)
