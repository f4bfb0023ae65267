#include "sdk/transfers/TransferStore.h"

#include "sdk/base/Database.h"
#include "sdk/base/SqlStatement.h"

TransferStore::TransferStore(Database& database)
    : m_database(database)
{ }

bool TransferStore::save(const TransferJob& job)
{
    SqlStatement statement(m_database.handle(),
                           "INSERT OR REPLACE INTO transfers(id, user_id, type, sub_type, position, finished, paused, "
                           "file_path, total_size, workspace_id, revision_id, text, error_domain, error_code, "
                           "error_text, created_at, finished_at, upload_id) "
                           "VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16, ?17, ?18)");
    statement.bind(1, job.id).bind(2, job.userId).bind(3, job.type).bind(4, job.subType).bind(5, job.position);
    statement.bind(6, job.finished).bind(7, job.paused).bind(8, job.filePath).bind(9, job.totalSize);
    statement.bind(10, job.workspaceId).bind(11, job.revisionId).bind(12, job.text);
    if (job.error)
        statement.bind(13, job.error->domain).bind(14, job.error->code).bind(15, job.error->localizedDescription);
    statement.bind(16, job.createdAt).bind(17, job.finishedAt);
    if (!job.uploadId.isEmpty())
        statement.bind(18, job.uploadId);
    return statement.run();
}

bool TransferStore::remove(const QString& id)
{
    SqlStatement statement(m_database.handle(), "DELETE FROM transfers WHERE id = ?1");
    return statement.bind(1, id).run();
}

bool TransferStore::removeFinished(const QString& userId)
{
    SqlStatement statement(m_database.handle(), "DELETE FROM transfers WHERE user_id = ?1 AND finished = 1");
    return statement.bind(1, userId).run();
}

std::optional<QStringList> TransferStore::unfinishedUploads()
{
    SqlStatement statement(m_database.handle(), "SELECT id FROM transfers WHERE finished = 0 AND type = ?1");
    statement.bind(1, TransferJob::Upload);
    QStringList ids;
    while (statement.next())
        ids.append(statement.text(0));
    if (statement.failed())
        return std::nullopt;
    return ids;
}

std::optional<QList<TransferJob>> TransferStore::load(const QString& userId, bool finished)
{
    SqlStatement statement(m_database.handle(),
                           finished ? "SELECT id, user_id, type, sub_type, position, finished, paused, file_path, "
                                      "total_size, workspace_id, revision_id, text, error_domain, error_code, "
                                      "error_text, created_at, finished_at, upload_id FROM transfers "
                                      "WHERE user_id = ?1 AND finished = 1 ORDER BY finished_at, position"
                                    : "SELECT id, user_id, type, sub_type, position, finished, paused, file_path, "
                                      "total_size, workspace_id, revision_id, text, error_domain, error_code, "
                                      "error_text, created_at, finished_at, upload_id FROM transfers "
                                      "WHERE user_id = ?1 AND finished = 0 ORDER BY position");
    statement.bind(1, userId);
    QList<TransferJob> jobs;
    while (statement.next()) {
        TransferJob job;
        job.id = statement.text(0);
        job.userId = statement.text(1);
        job.type = statement.integer(2);
        job.subType = statement.integer(3);
        job.position = statement.real(4);
        job.finished = statement.integer(5) != 0;
        job.paused = statement.integer(6) != 0;
        job.filePath = statement.text(7);
        job.totalSize = statement.integer(8);
        job.workspaceId = statement.text(9);
        job.revisionId = statement.text(10);
        job.text = statement.text(11);
        if (!statement.isNull(12))
            job.error = vlr::makeError(statement.text(12), statement.integer(13), statement.text(14));
        job.createdAt = statement.integer(15);
        job.finishedAt = statement.integer(16);
        job.uploadId = statement.text(17);
        jobs.append(job);
    }
    if (statement.failed())
        return std::nullopt;
    return jobs;
}
