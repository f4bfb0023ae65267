#include "sdk/versions/VersionsLog.h"

Q_LOGGING_CATEGORY(lcVersions, "veluria.sdk.versions", QtInfoMsg)
