#include "ServiceFixture.h"

#include "sdk/store/ContentStore.h"
#include "sdk/store/SafeName.h"
#include "sdk/transfers/DownloadLink.h"

#include "service/VLRTransferQueue.h"
#include "service/VLRTransferReporting.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

TEST(SafeNames, NamesFromOthersBecomeOneHarmlessComponent)
{
    EXPECT_EQ(SafeName::component(QStringLiteral("report.pdf")), QStringLiteral("report.pdf"));
    EXPECT_EQ(SafeName::component(QStringLiteral(".")), QStringLiteral("Untitled"));
    EXPECT_EQ(SafeName::component(QStringLiteral("")), QStringLiteral("Untitled"));
    EXPECT_EQ(SafeName::component(QStringLiteral("a\\b\nc\x7f")), QStringLiteral("a_b_c_"));
    // A right-to-left override hides a file's real extension.
    EXPECT_EQ(SafeName::component(QStringLiteral("invoice\u202Efdp.exe")), QStringLiteral("invoice_fdp.exe"));
    EXPECT_EQ(SafeName::component(QStringLiteral("  spaced  ")), QStringLiteral("spaced"));
    EXPECT_LE(SafeName::component(QString(300, QChar(u'é'))).toUtf8().size(), 255);
    EXPECT_EQ(SafeName::numbered(QStringLiteral("plan.v2.txt"), 3), QStringLiteral("plan.v2 (3).txt"));
    EXPECT_EQ(SafeName::numbered(QStringLiteral(".profile"), 2), QStringLiteral(".profile (2)"));
}

TEST(SafeNames, PathsStayUnderTheirRootThroughLinks)
{
    QTemporaryDir root;
    QTemporaryDir outside;
    ASSERT_TRUE(QDir(root.path()).mkdir(QStringLiteral("inner")));
    ASSERT_TRUE(QFile::link(outside.path(), root.path() + QStringLiteral("/jump")));
    EXPECT_TRUE(SafeName::staysUnder(root.path(), root.path() + QStringLiteral("/inner/new/file")));
    EXPECT_FALSE(SafeName::staysUnder(root.path(), root.path() + QStringLiteral("/jump/file")));
    EXPECT_FALSE(SafeName::staysUnder(root.path(), root.path() + QStringLiteral("/../file")));
    EXPECT_FALSE(SafeName::staysUnder(root.path(), root.path()));
}

TEST(DownloadLinks, OnlyWellFormedLinksAreTaken)
{
    const QString workspace = QStringLiteral("0b2d9d4c-a4cf-43c0-ae70-c2df40616431");
    const QString revision = QStringLiteral("85e9c3ce-4d36-4e4a-9510-1683d530df3a");
    const QString link = DownloadLink::make(workspace, revision);
    EXPECT_EQ(link, QStringLiteral("veluria://download?workspace=%1&revision=%2").arg(workspace, revision));
    const auto parsed = DownloadLink::parse(link);
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(parsed->workspaceId, workspace);
    EXPECT_EQ(parsed->revisionId, revision);
    for (const QString& bad : {QStringLiteral("veluria://upload?workspace=%1&revision=%2"),
                               QStringLiteral("velurio://download?workspace=%1&revision=%2"),
                               QStringLiteral("veluria://download/../x?workspace=%1&revision=%2"),
                               QStringLiteral("veluria://user@download?workspace=%1&revision=%2"),
                               QStringLiteral("veluria://download?workspace=%1"),
                               QStringLiteral("veluria://download?workspace=%1&revision=%2#x"),
                               QStringLiteral("veluria://download?workspace=..%2F..&revision=%2"),
                               QStringLiteral("veluria://download?workspace=%1&revision=%2&revision=%1")})
        EXPECT_FALSE(DownloadLink::parse(
                         QString(bad).replace(QStringLiteral("%1"), workspace).replace(QStringLiteral("%2"), revision))
                         .has_value())
            << bad.toStdString();
}

using HostileNames = ServiceFixture;

// Another member's client wrote names and a folder manifest meant to reach
// outside the download folder.
TEST_F(HostileNames, DownloadsOfHostileNamesStayInTheirFolder)
{
    const QString ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    const QString eve = addUser(QStringLiteral("eve@example.com"), QStringLiteral("pw"));
    const QString workspace = addWorkspace(QStringLiteral("../../Outside\x01"), eve);
    WorkspaceStore(database()).addMember(workspace, ann, WorkspaceStore::MemberRole);
    const ContentStore store(databaseFolder());
    const QByteArray payload = store.put("gotcha", nullptr);
    QJsonArray entries;
    for (const QString& path :
         {QStringLiteral("../../escaped.txt"), QStringLiteral("/tmp/absolute.txt"), QStringLiteral("sub/../../up.txt"),
          QStringLiteral("ok/\x07"
                         "bell.txt"),
          QStringLiteral("fine.txt")})
        entries.append(QJsonObject{{QStringLiteral("path"), path},
                                   {QStringLiteral("content"), QString::fromLatin1(payload)},
                                   {QStringLiteral("size"), 6}});
    const QByteArray manifest =
        store.put(QJsonDocument(QJsonObject{{QStringLiteral("entries"), entries}}).toJson(), nullptr);
    WorkspaceStore workspaces(database());
    const QString folderRevision = workspaces.addRevision(workspace, eve, QStringLiteral("../../../evil"),
                                                          QString::fromLatin1(manifest), true, 30, QString());
    const QString fileRevision = workspaces.addRevision(workspace, eve, QStringLiteral("/etc/cron.d/job"),
                                                        QString::fromLatin1(payload), false, 6, QString());

    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    for (const QString& revision : {folderRevision, fileRevision}) {
        VLRTransferReportingPtr transfer;
        session->downloadUrl(DownloadLink::make(workspace, revision),
                             [&](const VLRTransferReportingPtr& t, const vlr::OptionalError& error) {
                                 EXPECT_FALSE(error.has_value());
                                 transfer = t;
                             });
        ASSERT_TRUE(waitUntil([&] { return transfer && transfer->isFinished(); }));
        EXPECT_FALSE(transfer->error().has_value()) << transfer->error()->localizedDescription.toStdString();
    }

    const QString folder = home() + QStringLiteral("/Veluria/.._.._Outside_");
    QStringList written;
    QDirIterator files(home(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = QDir(home()).relativeFilePath(files.next());
        if (!path.startsWith(QLatin1String(".local/share/Veluria/Logs/")))
            written.append(path);
    }
    written.sort();
    EXPECT_EQ(written,
              (QStringList{QStringLiteral("Veluria/.._.._Outside_/.._.._.._evil/Untitled/Untitled/escaped.txt"),
                           QStringLiteral("Veluria/.._.._Outside_/.._.._.._evil/fine.txt"),
                           QStringLiteral("Veluria/.._.._Outside_/.._.._.._evil/ok/_bell.txt"),
                           QStringLiteral("Veluria/.._.._Outside_/.._.._.._evil/sub/Untitled/Untitled/up.txt"),
                           QStringLiteral("Veluria/.._.._Outside_/.._.._.._evil/tmp/absolute.txt"),
                           QStringLiteral("Veluria/.._.._Outside_/_etc_cron.d_job")}));
    EXPECT_TRUE(QFileInfo(folder).isDir());
}

} // namespace
