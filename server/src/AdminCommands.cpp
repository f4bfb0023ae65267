#include "AdminCommands.h"

void AdminCommands::add(const QString& name, Handler handler)
{
    Q_ASSERT(!m_handlers.contains(name));
    m_handlers.insert(name, std::move(handler));
}

const AdminCommands::Handler* AdminCommands::find(const QString& name) const
{
    const auto found = m_handlers.constFind(name);
    return found == m_handlers.cend() ? nullptr : &found.value();
}
