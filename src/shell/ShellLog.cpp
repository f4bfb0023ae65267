#include "shell/ShellLog.h"

Q_LOGGING_CATEGORY(lcShell, "veluria.shell", QtInfoMsg)
