#include "fakes/FakeCallLog.h"

QStringList FakeCallLog::names() const
{
    QStringList names;
    for (const FakeCall& call : m_calls)
        names.append(call.name);
    return names;
}

int FakeCallLog::count(const QString& name) const
{
    int n = 0;
    for (const FakeCall& call : m_calls)
        n += call.name == name;
    return n;
}

QVariantList FakeCallLog::lastArguments(const QString& name) const
{
    for (auto it = m_calls.crbegin(); it != m_calls.crend(); ++it)
        if (it->name == name)
            return it->arguments;
    return {};
}
