#pragma once

#include <QLoggingCategory>

// "veluria.sdk.remote": the sessions of a team server, their requests and
// push stream.
Q_DECLARE_LOGGING_CATEGORY(lcRemote)
