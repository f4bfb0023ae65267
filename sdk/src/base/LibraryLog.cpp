#include "base/LibraryLog.h"

Q_LOGGING_CATEGORY(lcLibrary, "veluria.sdk.library", QtInfoMsg)
