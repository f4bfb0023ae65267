#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

// Environment variables set for as long as it lives, then put back.
class ScopedEnvironment
{
public:
    ScopedEnvironment() = default;
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment()
    {
        for (auto it = m_saved.crbegin(); it != m_saved.crend(); ++it)
            it->second.isNull() ? qunsetenv(it->first) : qputenv(it->first, it->second);
    }

    void set(const char* name, const QString& value)
    {
        m_saved.append({name, qgetenv(name)});
        qputenv(name, value.toUtf8());
    }

private:
    QList<QPair<const char*, QByteArray>> m_saved;
};
