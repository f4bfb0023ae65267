#pragma once

#include <QLoggingCategory>

// "veluria.widgets": the view kit (fonts, images). Debug lines are off
// unless QT_LOGGING_RULES turns them on.
Q_DECLARE_LOGGING_CATEGORY(lcWidgets)
