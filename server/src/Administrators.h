#pragma once

#include <QString>

// veluria-server --administrator EMAIL and --no-administrator EMAIL, run on
// the server's machine: an existing account comes to administer the server,
// or no longer does, from its next request on. The last administrator
// stays one: without any, the server could not be administered from afar.
class Administrators
{
public:
    static bool grant(const QString& email, QString* failure);
    static bool revoke(const QString& email, QString* failure);
};
