#include "sdk/transfers/TransfersLog.h"

Q_LOGGING_CATEGORY(lcTransfers, "veluria.sdk.transfers", QtInfoMsg)
