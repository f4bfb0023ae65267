#pragma once

#include <QDateTime>

// Times as the database keeps them: milliseconds since the epoch.
class Clock
{
public:
    static qint64 nowMs() { return QDateTime::currentMSecsSinceEpoch(); }
    static QDateTime toDateTime(qint64 ms) { return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC); }
    static QString newIdentifier();
};
