#include "widgets/WidgetsLog.h"

Q_LOGGING_CATEGORY(lcWidgets, "veluria.widgets", QtInfoMsg)
