#pragma once

#include <QLoggingCategory>

// "veluria.marketplace": the marketplace's pages and rows.
Q_DECLARE_LOGGING_CATEGORY(lcMarketplace)
