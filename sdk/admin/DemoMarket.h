#pragma once

#include <QString>

class Database;

// The demo account's marketplace: two purchases, one paid by a card that
// expires within 30 days, and four installers that show every state on
// this machine: one new, one with an update, one installed, and one
// installed only on another machine. The installed ones are really
// installed, in the user's applications folder.
class DemoMarket
{
public:
    static bool seed(Database& database, const QString& userId, QString* failure);
};
