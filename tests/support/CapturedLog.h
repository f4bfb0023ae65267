#pragma once

#include "service/VLRLogHandler.h"

#include <QStringList>

// The lines logged while it lives, each as "level tag message"; none go to a file.
struct CapturedLog : QStringList
{
    CapturedLog()
    {
        vlr::setLogFilePath(QString());
        vlr::setLogObserver([this](int level, const QString& tag, const QString& message) {
            append(QStringLiteral("%1 %2 %3").arg(level).arg(tag, message));
        });
    }
    ~CapturedLog() { vlr::setLogObserver(nullptr); }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;
};
