#include "sdk/base/LibraryLog.h"

Q_LOGGING_CATEGORY(lcLibrary, "veluria.sdk.library", QtInfoMsg)
