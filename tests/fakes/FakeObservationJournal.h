#pragma once

#include "service/VLRObject.h"

#include <QStringList>

// A shared record of observer registrations and removals across fakes, so
// that a test can assert their order: entries read "add <object> <keyPath>"
// and "remove <object> <keyPath>".
class FakeObservationJournal
{
public:
    QStringList entries;

    QStringList withPrefix(const QString& prefix) const;
};

// Gives a fake record a name and a journal of its observers.
template <typename Base> class Journaled : public Base
{
public:
    QString journalName;
    FakeObservationJournal* journal = nullptr;

    void addObserver(VLRKeyValueObserver* observer, const QString& keyPath, unsigned options, void* context) override
    {
        if (journal)
            journal->entries.append(QStringLiteral("add %1 %2").arg(journalName, keyPath));
        Base::addObserver(observer, keyPath, options, context);
    }

    void removeObserver(VLRKeyValueObserver* observer, const QString& keyPath, void* context) override
    {
        if (journal)
            journal->entries.append(QStringLiteral("remove %1 %2").arg(journalName, keyPath));
        Base::removeObserver(observer, keyPath, context);
    }
};
