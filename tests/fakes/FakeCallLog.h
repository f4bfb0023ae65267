#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

// Every call a fake receives, in order, with its arguments.
struct FakeCall
{
    QString name;
    QVariantList arguments;
};

class FakeCallLog
{
public:
    void record(const QString& name, const QVariantList& arguments = {}) { m_calls.append({name, arguments}); }
    const QList<FakeCall>& calls() const { return m_calls; }
    QStringList names() const;
    int count(const QString& name) const;
    // The arguments of the most recent call of that name; empty if none.
    QVariantList lastArguments(const QString& name) const;
    void clear() { m_calls.clear(); }

private:
    QList<FakeCall> m_calls;
};
