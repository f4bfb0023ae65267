#include "fakes/FakeObservationJournal.h"

QStringList FakeObservationJournal::withPrefix(const QString& prefix) const
{
    QStringList matching;
    for (const QString& entry : entries)
        if (entry.startsWith(prefix))
            matching.append(entry);
    return matching;
}
