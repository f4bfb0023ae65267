#include "DemoSeeder.h"

#include "DemoMarket.h"

#include "sdk/accounts/AccountStore.h"
#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/base/SqlStatement.h"
#include "sdk/transfers/TransferJob.h"
#include "sdk/transfers/TransferLeftovers.h"
#include "sdk/transfers/UploadRun.h"
#include "sdk/workspaces/WorkspaceStore.h"

#include <QFile>
#include <QTemporaryDir>

DemoSeeder::DemoSeeder(Database& database)
    : m_database(database)
{ }

QString DemoSeeder::publishFile(Database& database, const QString& workspaceId, const QString& userId,
                                const QString& path, const QString& text, QString* failure)
{
    TransferJob job;
    job.id = Clock::newIdentifier();
    job.userId = userId;
    job.type = TransferJob::Upload;
    job.filePath = path;
    job.workspaceId = workspaceId;
    job.text = text.isNull() ? QStringLiteral("") : text;
    const TransferResult result =
        UploadRun(
            job, database.folder(), database, [] { return false; }, [](qint64) {}, [](qint64) {})
            .run();
    if (result.outcome != TransferResult::Outcome::Completed) {
        TransferLeftovers::discard(job, database.folder());
        if (failure)
            *failure = result.error ? result.error->localizedDescription : QStringLiteral("the upload stopped");
        return {};
    }
    return result.revisionId;
}

QString DemoSeeder::person(const QString& address, const QString& first, const QString& last, QString* failure)
{
    AccountStore accounts(m_database);
    if (const auto existing = accounts.findByEmail(address))
        return existing->id;
    return accounts.add(address, first, last, QString::fromLatin1(password), false, failure);
}

bool DemoSeeder::workspace(const QString& name, int daysAgo, const QString& ownerId, const QStringList& memberIds,
                           const QList<QPair<QString, QString>>& files, const QString& authorId, QString* failure)
{
    WorkspaceStore workspaces(m_database);
    const QString id = workspaces.create(name, ownerId, Clock::nowMs());
    if (id.isNull())
        return false;
    for (const QString& member : memberIds)
        if (!workspaces.addMember(id, member, WorkspaceStore::MemberRole))
            return false;
    QTemporaryDir folder;
    for (const auto& [fileName, comment] : files) {
        const QString path = folder.path() + QLatin1Char('/') + fileName;
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly)
            || file.write(QStringLiteral("%1\n\nA demo file of the workspace \"%2\".\n").arg(fileName, name).toUtf8())
                < 0)
            return false;
        file.close();
        if (publishFile(m_database, id, authorId, path, comment, failure).isNull())
            return false;
    }
    // The workspace's date is set last, as the publications moved it to now.
    const qint64 when = Clock::nowMs() - qint64(daysAgo) * 24 * 3600 * 1000;
    SqlStatement date(m_database.handle(),
                      "UPDATE workspaces SET updated_at = ?2, created_at = min(created_at, ?2) WHERE id = ?1");
    return date.bind(1, id).bind(2, when).run();
}

bool DemoSeeder::seed(QString* failure)
{
    if (AccountStore(m_database).findByEmail(QString::fromLatin1(email))) {
        m_seededNow = false;
        return true;
    }
    const bool seeded = m_database.transaction([&] {
        const QString demo =
            person(QString::fromLatin1(email), QStringLiteral("Dana"), QStringLiteral("Demo"), failure);
        const QString rafael =
            person(QStringLiteral("rafael@veluria.local"), QStringLiteral("Rafael"), QStringLiteral("Ortiz"), failure);
        const QString mei =
            person(QStringLiteral("mei@veluria.local"), QStringLiteral("Mei"), QStringLiteral("Tanaka"), failure);
        if (demo.isNull() || rafael.isNull() || mei.isNull())
            return false;
        return workspace(QStringLiteral("Brand refresh"), 0, demo, {rafael, mei},
                         {{QStringLiteral("logo-sketches.txt"), QStringLiteral("First round of logo ideas")},
                          {QStringLiteral("palette.txt"), QString()}},
                         rafael, failure)
            && workspace(QStringLiteral("Spring campaign"), 1, rafael, {demo},
                         {{QStringLiteral("storyboard.txt"), QStringLiteral("Draft for Monday's review")}}, rafael,
                         failure)
            && workspace(QStringLiteral("Product shots"), 4, demo, {mei},
                         {{QStringLiteral("shot-list.txt"), QStringLiteral("Shot list for the studio day")}}, demo,
                         failure)
            && workspace(QStringLiteral("Website copy"), 12, mei, {demo, rafael}, {}, mei, failure)
            && workspace(QStringLiteral("Archive 2023"), 45, demo, {},
                         {{QStringLiteral("annual-report.txt"), QString()}}, demo, failure)
            && DemoMarket::seed(m_database, demo, failure);
    });
    if (!seeded && failure && failure->isEmpty())
        *failure = m_database.errorMessage();
    m_seededNow = seeded;
    return seeded;
}
