#pragma once

class Database;

// The tables of the local service. Times are milliseconds since the epoch,
// identifiers UUID texts.
class DatabaseSchema
{
public:
    static bool create(Database& database);
    // The software catalogue: vendors, products, installers with their
    // revisions, purchases, and which machine installed what.
    static bool createMarket(Database& database);

private:
    static bool addUploadIds(Database& database);
};
