#include "AdminTool.h"

#include "AdminCommandLine.h"
#include "DemoSeeder.h"
#include "sdk/accounts/Base32.h"
#include "sdk/accounts/Totp.h"
#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/base/DatabaseLocation.h"
#include "sdk/base/SqlStatement.h"
#include "sdk/transfers/DownloadLink.h"
#include "sdk/transfers/TransferLeftovers.h"
#include "sdk/transfers/UploadRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QStandardPaths>

AdminTool::AdminTool(QTextStream& out, QTextStream& err)
    : m_out(out)
    , m_err(err)
{ }

AdminTool::~AdminTool() = default;

QString AdminTool::defaultDatabaseFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Veluria");
}

int AdminTool::usage(int status)
{
    printUsage(status == 0 ? m_out : m_err);
    return status;
}

void AdminTool::printUsage(QTextStream& stream)
{
    stream << "Usage: veluria-admin [--database FOLDER] COMMAND [ARGUMENTS]\n"
              "       veluria-admin --server https://HOST:PORT [--admin EMAIL] [--trust CERT.pem] COMMAND [ARGUMENTS]\n"
              "Manages the local Veluria service (default database folder: "
           << defaultDatabaseFolder()
           << "), or, with --server, a\n"
              "team server as one of its administrators (the password is read from the terminal or standard\n"
              "input; EMAIL may also come from VELURIA_ADMIN_EMAIL).\n\n"
              "  add-user EMAIL PASSWORD [--first NAME] [--last NAME] [--unconfirmed]\n"
              "  confirm EMAIL                     confirms the account's e-mail address\n"
              "  avatar EMAIL IMAGE                sets the account's picture (PNG or JPEG)\n"
              "  passwd EMAIL PASSWORD             sets a new password\n"
              "  enable-2fa EMAIL                  turns on a second factor; prints its secret and URI\n"
              "  add-workspace NAME OWNER_EMAIL    prints the new workspace's identifier\n"
              "  add-member WORKSPACE EMAIL [--owner]\n"
              "  publish WORKSPACE EMAIL PATH [--text TEXT]   publishes a file or folder; prints its link\n"
              "  comment WORKSPACE EMAIL TEXT      publishes a comment\n"
              "  link WORKSPACE FILE_NAME [--revision NUMBER] prints a download link\n"
              "  workspaces EMAIL                  lists the account's workspaces\n"
              "  add-vendor NAME                   prints the vendor's identifier\n"
              "  add-product NAME [--vendor VENDOR] [--image IMAGE]\n"
              "  add-installer NAME --product PRODUCT [--product PRODUCT...] [--description TEXT]\n"
              "                [--platform TEXT] [--image IMAGE]\n"
              "  publish-installer INSTALLER PACKAGE [--version TEXT]\n"
              "                                    a .tar.gz, .tar.xz, .zip or AppImage becomes the newest revision\n"
              "  grant-purchase EMAIL PRODUCT --renews DATE [--canceled] [--payment TYPE]\n"
              "                [--card-expires DATE] [--manage-url URL]\n"
              "  installers EMAIL                  lists the installers the account's purchases cover\n"
              "  demo                              makes the demo account, once, and tells how to sign in\n\n"
              "WORKSPACE is a workspace's identifier, or its name when no other workspace has it; VENDOR,\n"
              "PRODUCT and INSTALLER are identifiers or names. DATE is YYYY-MM-DD, or +N or -N days from today.\n";
}

int AdminTool::fail(const QString& reason)
{
    m_err << "veluria-admin: " << reason << "\n";
    return 1;
}

bool AdminTool::open(bool folderGiven)
{
    // A folder given by hand that isn't there is more likely a typing
    // mistake than a wish for a new, empty service.
    if (folderGiven && !QFileInfo(m_folder).isDir()) {
        fail(QStringLiteral("the database folder %1 doesn't exist").arg(m_folder));
        return false;
    }
    const bool existed = QFileInfo::exists(m_folder + QLatin1Char('/') + DatabaseLocation::databaseFileName());
    QString failure;
    m_database = Database::open(m_folder, &failure);
    // A disk filled by what killed uploads left may have room again once
    // that is gone.
    if (!m_database && TransferLeftovers::sweepAll(m_folder) > 0)
        m_database = Database::open(m_folder, &failure);
    if (!m_database) {
        fail(QStringLiteral("can't open the database in %1: %2").arg(m_folder, failure));
        return false;
    }
    if (!m_database->notice().isEmpty())
        m_err << "veluria-admin: " << m_database->notice() << "\n";
    else if (!existed)
        m_err << "veluria-admin: a new database was made in " << m_folder << "\n";
    TransferLeftovers::sweep(*m_database);
    return true;
}

bool AdminTool::flag(QStringList& arguments, const QString& name)
{
    return arguments.removeAll(name) > 0;
}

std::optional<AccountStore::Account> AdminTool::account(const QString& email)
{
    auto found = AccountStore(*m_database).findByEmail(email);
    if (!found)
        fail(QStringLiteral("no account has the address %1").arg(email));
    return found;
}

std::optional<WorkspaceStore::Workspace> AdminTool::workspace(const QString& idOrName)
{
    WorkspaceStore workspaces(*m_database);
    if (auto byId = workspaces.workspace(idOrName))
        return byId;
    SqlStatement named(m_database->handle(), "SELECT id FROM workspaces WHERE name = ?1");
    named.bind(1, idOrName);
    QStringList ids;
    while (named.next())
        ids.append(named.text(0));
    if (ids.size() == 1)
        return workspaces.workspace(ids.first());
    fail(ids.isEmpty()
             ? QStringLiteral("no workspace is called %1").arg(idOrName)
             : QStringLiteral("%1 workspaces are called %2; give the identifier").arg(ids.size()).arg(idOrName));
    return std::nullopt;
}

int AdminTool::run(QStringList arguments)
{
    m_folder = AdminCommandLine::takeOption(arguments, QStringLiteral("--database"));
    const bool folderGiven = !m_folder.isEmpty();
    if (!folderGiven)
        m_folder = defaultDatabaseFolder();
    if (arguments.isEmpty())
        return usage(2);
    const QString command = arguments.takeFirst();
    if (command == QLatin1String("--help") || command == QLatin1String("help"))
        return usage(0);
    if (!open(folderGiven))
        return 1;
    if (command == QLatin1String("add-user"))
        return addUser(arguments);
    if (command == QLatin1String("confirm"))
        return confirm(arguments);
    if (command == QLatin1String("avatar"))
        return setAvatar(arguments);
    if (command == QLatin1String("passwd"))
        return changePassword(arguments);
    if (command == QLatin1String("enable-2fa"))
        return enableSecondFactor(arguments);
    if (command == QLatin1String("add-workspace"))
        return addWorkspace(arguments);
    if (command == QLatin1String("add-member"))
        return addMember(arguments);
    if (command == QLatin1String("publish"))
        return publish(arguments);
    if (command == QLatin1String("comment"))
        return comment(arguments);
    if (command == QLatin1String("link"))
        return link(arguments);
    if (command == QLatin1String("workspaces"))
        return listWorkspaces(arguments);
    if (command == QLatin1String("demo"))
        return demo();
    if (const int status = runMarket(command, arguments); status >= 0)
        return status;
    m_err << "veluria-admin: unknown command " << command << "\n";
    return usage(2);
}

int AdminTool::addUser(QStringList arguments)
{
    const QString first = AdminCommandLine::takeOption(arguments, QStringLiteral("--first"));
    const QString last = AdminCommandLine::takeOption(arguments, QStringLiteral("--last"));
    const bool unconfirmed = flag(arguments, QStringLiteral("--unconfirmed"));
    if (arguments.size() != 2)
        return usage(2);
    QString failure;
    const QString id =
        AccountStore(*m_database).add(arguments.at(0), first, last, arguments.at(1), unconfirmed, &failure);
    if (id.isNull())
        return fail(failure);
    m_out << id << "\n";
    return 0;
}

int AdminTool::confirm(const QStringList& arguments)
{
    if (arguments.size() != 1)
        return usage(2);
    const auto found = account(arguments.at(0));
    if (!found)
        return 1;
    return AccountStore(*m_database).confirm(found->id) ? 0 : fail(m_database->errorMessage());
}

int AdminTool::setAvatar(const QStringList& arguments)
{
    if (arguments.size() != 2)
        return usage(2);
    const auto found = account(arguments.at(0));
    if (!found)
        return 1;
    QFile file(arguments.at(1));
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("can't read %1: %2").arg(arguments.at(1), file.errorString()));
    const QByteArray image = file.readAll();
    if (QImage::fromData(image).isNull())
        return fail(QStringLiteral("%1 is not a picture").arg(arguments.at(1)));
    return AccountStore(*m_database).setAvatar(found->id, image) ? 0 : fail(m_database->errorMessage());
}

int AdminTool::changePassword(const QStringList& arguments)
{
    if (arguments.size() != 2)
        return usage(2);
    const auto found = account(arguments.at(0));
    if (!found)
        return 1;
    if (arguments.at(1).isEmpty())
        return fail(QStringLiteral("the password is empty"));
    return AccountStore(*m_database).setPassword(found->id, arguments.at(1)) ? 0 : fail(m_database->errorMessage());
}

int AdminTool::enableSecondFactor(const QStringList& arguments)
{
    if (arguments.size() != 1)
        return usage(2);
    const auto found = account(arguments.at(0));
    if (!found)
        return 1;
    const QByteArray secret = Totp::newSecret();
    if (!AccountStore(*m_database).setSecondFactor(found->id, secret))
        return fail(m_database->errorMessage());
    m_out << "secret: " << Base32::encode(secret) << "\n"
          << "uri: " << Totp::provisioningURI(secret, found->email) << "\n";
    return 0;
}

int AdminTool::addWorkspace(const QStringList& arguments)
{
    if (arguments.size() != 2)
        return usage(2);
    const auto owner = account(arguments.at(1));
    if (!owner)
        return 1;
    if (arguments.at(0).trimmed().isEmpty())
        return fail(QStringLiteral("the workspace's name is empty"));
    const QString id = WorkspaceStore(*m_database).create(arguments.at(0).trimmed(), owner->id, Clock::nowMs());
    if (id.isNull())
        return fail(m_database->errorMessage());
    m_out << id << "\n";
    return 0;
}

int AdminTool::addMember(QStringList arguments)
{
    const bool owner = flag(arguments, QStringLiteral("--owner"));
    if (arguments.size() != 2)
        return usage(2);
    const auto target = workspace(arguments.at(0));
    const auto member = target ? account(arguments.at(1)) : std::nullopt;
    if (!member)
        return 1;
    return WorkspaceStore(*m_database)
               .addMember(target->id, member->id, owner ? WorkspaceStore::OwnerRole : WorkspaceStore::MemberRole)
        ? 0
        : fail(m_database->errorMessage());
}

int AdminTool::publish(QStringList arguments)
{
    const QString text = AdminCommandLine::takeOption(arguments, QStringLiteral("--text"));
    if (arguments.size() != 3)
        return usage(2);
    const auto target = workspace(arguments.at(0));
    const auto author = target ? account(arguments.at(1)) : std::nullopt;
    if (!author)
        return 1;
    QString failure;
    const QString revisionId = DemoSeeder::publishFile(*m_database, target->id, author->id,
                                                       QFileInfo(arguments.at(2)).absoluteFilePath(), text, &failure);
    if (revisionId.isNull())
        return fail(failure);
    m_out << DownloadLink::make(target->id, revisionId) << "\n";
    return 0;
}

int AdminTool::comment(const QStringList& arguments)
{
    if (arguments.size() != 3)
        return usage(2);
    const auto target = workspace(arguments.at(0));
    const auto author = target ? account(arguments.at(1)) : std::nullopt;
    if (!author)
        return 1;
    WorkspaceStore workspaces(*m_database);
    if (!workspaces.isMember(target->id, author->id))
        return fail(QStringLiteral("%1 is not a member of %2").arg(author->email, target->name));
    return workspaces.publishText(target->id, author->id, arguments.at(2)) > 0 ? 0 : fail(m_database->errorMessage());
}

int AdminTool::link(QStringList arguments)
{
    const QString number = AdminCommandLine::takeOption(arguments, QStringLiteral("--revision"));
    if (arguments.size() != 2)
        return usage(2);
    bool isNumber = false;
    if (!number.isEmpty() && (number.toLongLong(&isNumber) < 1 || !isNumber))
        return fail(QStringLiteral("the revision must be a number from 1 up, not %1").arg(number));
    const auto target = workspace(arguments.at(0));
    if (!target)
        return 1;
    SqlStatement revision(m_database->handle(),
                          "SELECT r.id FROM revisions r JOIN assets a ON a.id = r.asset_id "
                          "WHERE a.workspace_id = ?1 AND a.name = ?2 AND (?3 = 0 OR r.number = ?3) "
                          "ORDER BY r.number DESC LIMIT 1");
    revision.bind(1, target->id).bind(2, arguments.at(1)).bind(3, number.toLongLong());
    if (!revision.next())
        return fail(QStringLiteral("%1 has no file %2%3")
                        .arg(target->name, arguments.at(1),
                             number.isEmpty() ? QString() : QStringLiteral(" in revision %1").arg(number)));
    m_out << DownloadLink::make(target->id, revision.text(0)) << "\n";
    return 0;
}

int AdminTool::listWorkspaces(const QStringList& arguments)
{
    if (arguments.size() != 1)
        return usage(2);
    const auto member = account(arguments.at(0));
    if (!member)
        return 1;
    const auto workspaces = WorkspaceStore(*m_database).workspacesOf(member->id);
    if (!workspaces)
        return fail(m_database->errorMessage());
    for (const WorkspaceStore::Workspace& workspace : *workspaces)
        m_out << workspace.id << "  " << Clock::toDateTime(workspace.updatedAt).toLocalTime().toString(Qt::ISODate)
              << "  " << workspace.name << "\n";
    return 0;
}

int AdminTool::demo()
{
    DemoSeeder seeder(*m_database);
    QString failure;
    if (!seeder.seed(&failure))
        return fail(failure);
    m_out << (seeder.seededNow() ? "The demo account is ready.\n" : "The demo account exists already.\n")
          << "Sign in with " << DemoSeeder::email << " and the password " << DemoSeeder::password
          << " (service: localhost).\n";
    return 0;
}
