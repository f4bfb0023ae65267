#include "DemoCommand.h"

#include "AdminCommands.h"
#include "BlobStore.h"
#include "Database.h"
#include "Publications.h"

#include "sdk/accounts/PasswordHasher.h"
#include "sdk/store/Sha256.h"

#include <QFile>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

namespace {

const QString demoEmail = QStringLiteral("demo@veluria.local");
const QString demoPassword = QStringLiteral("veluria-demo");

class Seeder
{
public:
    explicit Seeder(const BlobStore& store)
        : m_store(store)
    { }

    QString person(const QString& email, const QString& first, const QString& last, const QString& hash)
    {
        QSqlQuery insert(Database::connection());
        insert.prepare(QStringLiteral("INSERT INTO users(email, first_name, last_name, password_hash) VALUES (?, ?, ?, "
                                      "?) ON CONFLICT (email) DO UPDATE SET email = excluded.email RETURNING id"));
        insert.addBindValue(email);
        insert.addBindValue(first);
        insert.addBindValue(last);
        insert.addBindValue(hash);
        return insert.exec() && insert.next() ? insert.value(0).toString() : QString();
    }

    bool workspace(const QString& name, int daysAgo, const QString& ownerId, const QStringList& memberIds,
                   const QList<QPair<QString, QString>>& files, const QString& authorId)
    {
        QSqlQuery insert(Database::connection());
        insert.prepare(QStringLiteral("INSERT INTO workspaces(name) VALUES (?) RETURNING id"));
        insert.addBindValue(name);
        if (!insert.exec() || !insert.next())
            return false;
        const QString id = insert.value(0).toString();
        for (const QString& member : QStringList{ownerId} + memberIds) {
            QSqlQuery add(Database::connection());
            add.prepare(QStringLiteral("INSERT INTO members(workspace_id, user_id, role) VALUES (?, ?, ?)"));
            add.addBindValue(id);
            add.addBindValue(member);
            add.addBindValue(member == ownerId ? 1 : 2);
            if (!add.exec())
                return false;
        }
        for (const auto& [fileName, comment] : files) {
            const QByteArray content =
                QStringLiteral("%1\n\nA demo file of the workspace \"%2\".\n").arg(fileName, name).toUtf8();
            const QString sha256 = store(content);
            if (sha256.isEmpty()
                || Publications::addRevision(id, authorId, {fileName, content.size(), sha256}, true, comment).isEmpty())
                return false;
        }
        // The date is set last, as the publications moved it to now.
        QSqlQuery date(Database::connection());
        date.prepare(QStringLiteral("UPDATE workspaces SET updated_at = now() - make_interval(days => ?), created_at "
                                    "= least(created_at, now() - make_interval(days => ?)) WHERE id = ?"));
        date.addBindValue(daysAgo);
        date.addBindValue(daysAgo);
        date.addBindValue(id);
        return date.exec();
    }

private:
    QString store(const QByteArray& content)
    {
        const QString uploadId = QUuid::createUuid().toString(QUuid::WithoutBraces);
        QFile file(m_store.uploadPath(uploadId));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return {};
        file.close();
        Sha256 hash;
        hash.add(content.constData(), content.size());
        const QString sha256 = QString::fromLatin1(hash.hexDigest());
        QString failure;
        return m_store.commit(uploadId, sha256, &failure) == BlobStore::Commit::Stored ? sha256 : QString();
    }

    const BlobStore& m_store;
};

AdminOutcome demo(const AdminCall& call)
{
    if (!call.arguments.isEmpty())
        return AdminOutcome::usage();
    const QString signIn =
        QStringLiteral("Sign in with %1 and the password %2 (service: %3).\n").arg(demoEmail, demoPassword, call.host);
    QSqlQuery existing(Database::connection());
    existing.prepare(QStringLiteral("SELECT 1 FROM users WHERE email = ?"));
    existing.addBindValue(demoEmail);
    if (!existing.exec())
        return AdminOutcome::databaseFailed();
    if (existing.next())
        return AdminOutcome::printed(QStringLiteral("The demo account exists already.\n") + signIn);

    const QString hash = PasswordHasher::hash(demoPassword);
    Seeder seeder(*call.store);
    const QString demo = seeder.person(demoEmail, QStringLiteral("Dana"), QStringLiteral("Demo"), hash);
    const QString rafael =
        seeder.person(QStringLiteral("rafael@veluria.local"), QStringLiteral("Rafael"), QStringLiteral("Ortiz"), hash);
    const QString mei =
        seeder.person(QStringLiteral("mei@veluria.local"), QStringLiteral("Mei"), QStringLiteral("Tanaka"), hash);
    const bool seeded = !hash.isNull() && !demo.isEmpty() && !rafael.isEmpty() && !mei.isEmpty()
        && seeder.workspace(QStringLiteral("Brand refresh"), 0, demo, {rafael, mei},
                            {{QStringLiteral("logo-sketches.txt"), QStringLiteral("First round of logo ideas")},
                             {QStringLiteral("palette.txt"), QString()}},
                            rafael)
        && seeder.workspace(QStringLiteral("Spring campaign"), 1, rafael, {demo},
                            {{QStringLiteral("storyboard.txt"), QStringLiteral("Draft for Monday's review")}}, rafael)
        && seeder.workspace(QStringLiteral("Product shots"), 4, demo, {mei},
                            {{QStringLiteral("shot-list.txt"), QStringLiteral("Shot list for the studio day")}}, demo)
        && seeder.workspace(QStringLiteral("Website copy"), 12, mei, {demo, rafael}, {}, mei)
        && seeder.workspace(QStringLiteral("Archive 2023"), 45, demo, {},
                            {{QStringLiteral("annual-report.txt"), QString()}}, demo);
    if (!seeded)
        return AdminOutcome::databaseFailed();
    return AdminOutcome::printed(QStringLiteral("The demo account is ready.\n") + signIn);
}

} // namespace

void DemoCommand::addTo(AdminCommands& commands)
{
    commands.add(QStringLiteral("demo"), demo);
}
