#pragma once

#include "AdminCall.h"
#include "AdminOutcome.h"

#include <QHash>

#include <functional>

// The administrative commands that the server knows, by the name that
// veluria-admin gives them. Filled once while the server is made and only
// read afterwards, so handlers may be looked up from any thread. A handler
// runs on the pool for slow work (it may hash a password or read a large
// file) and takes its thread's database connection from
// Database::connection() itself.
class AdminCommands
{
public:
    using Handler = std::function<AdminOutcome(const AdminCall& call)>;

    void add(const QString& name, Handler handler);
    // Null for a command nobody added.
    const Handler* find(const QString& name) const;

private:
    QHash<QString, Handler> m_handlers;
};
