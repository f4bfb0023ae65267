#include "marketplace/MarketplaceLog.h"

Q_LOGGING_CATEGORY(lcMarketplace, "veluria.marketplace", QtInfoMsg)
