#pragma once

#include "sdk/transfers/TransferJob.h"

class Database;

// What an unfinished transfer leaves on disk: an upload's partial files in
// the content store's tmp folder, a download's hidden partial beside its
// target. A queued transfer resumes from them; anything else is removed, so
// that killed or failed transfers never fill the disk.
class TransferLeftovers
{
public:
    // The partial files of a transfer that will not go on: failed or
    // cancelled. A retry starts afresh.
    static void discard(const TransferJob& job, const QString& databaseFolder);
    // At a start: removes every partial upload that no queued upload, of
    // any user, will resume and that nobody is writing; how many went.
    static int sweep(Database& database);
    // When the database itself can't be opened, the disk may be full of
    // them: every partial upload that nobody is writing goes.
    static int sweepAll(const QString& databaseFolder);
};
