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
    EXPECT_EQ(SafeName::numbered(QStringLiteral("plan.v2.txt"), 3), QStringLiteral("plan.v2 (3).txt"));
    EXPECT_EQ(SafeName::numbered(QStringLiteral(".profile"), 2), QStringLiteral(".profile (2)"));
}

// A long name is cut, between characters and before its extension, so far
// that its partial and its numbered forms still fit in 255 bytes.
TEST(SafeNames, LongNamesAreCutSoThatEveryDerivedNameFits)
{
    const QString waves = QString(60, QChar(u'~')) + QString::fromUtf8("\xF0\x9F\x91\x8B\xF0\x9F\x8F\xBD").repeated(24);
    for (const QString& name : {waves + QStringLiteral(".pdf"), QString(250, QChar(u'a')),
                                QString(130, QChar(u'\u00e9')) + QStringLiteral(".txt")}) {
        ASSERT_GT(name.toUtf8().size(), 241);
        const QString safe = SafeName::component(name);
        EXPECT_EQ(QFileInfo(safe).suffix(), QFileInfo(name).suffix());
        for (const QString& derived : {safe, SafeName::numbered(safe, 2), SafeName::numbered(safe, 123456)}) {
            EXPECT_FALSE(derived.contains(QChar::ReplacementCharacter));
            EXPECT_LE(SafeName::hiddenPartial(derived).toUtf8().size(), 255) << derived.toStdString();
        }
    }
    // An emoji with its skin tone stays whole or goes whole.
    const QString cut = SafeName::component(waves + QStringLiteral(".pdf")).chopped(4);
    EXPECT_TRUE(cut.endsWith(QString::fromUtf8("\xF0\x9F\x91\x8B\xF0\x9F\x8F\xBD"))) << cut.toStdString();
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

    QStringList written;
    QDirIterator files(home(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = QDir(home()).relativeFilePath(files.next());
        if (!path.startsWith(QLatin1String(".local/share/Veluria/Logs/")))
            written.append(path);
    }
    written.sort();
    const QString in = QStringLiteral("Veluria/.._.._Outside_ (%1)/").arg(workspace.left(8));
    EXPECT_EQ(
        written,
        (QStringList{in + QStringLiteral(".._.._.._evil/Untitled/Untitled/escaped.txt"),
                     in + QStringLiteral(".._.._.._evil/fine.txt"), in + QStringLiteral(".._.._.._evil/ok/_bell.txt"),
                     in + QStringLiteral(".._.._.._evil/sub/Untitled/Untitled/up.txt"),
                     in + QStringLiteral(".._.._.._evil/tmp/absolute.txt"), in + QStringLiteral("_etc_cron.d_job")}));
    EXPECT_TRUE(QFileInfo(home() + QLatin1Char('/') + in).isDir());
}

// Workspaces whose names can't be folders each get a folder of their own,
// and files whose names fill the file system's limit come down, also when
// the two of them are one name once cut.
TEST_F(HostileNames, OddNamesStillDownloadEachIntoItsOwnPlace)
{
    const QString ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    const ContentStore store(databaseFolder());
    WorkspaceStore workspaces(database());
    const QString stem = QString(120, QChar(u'\u00e9'));
    QStringList links;
    QString first;
    for (const QString& name : {QStringLiteral("."), QStringLiteral(".."), QStringLiteral("Untitled")}) {
        const QString workspace = addWorkspace(name, ann);
        first = first.isNull() ? workspace : first;
        const QByteArray content = store.put(name.toUtf8(), nullptr);
        links.append(DownloadLink::make(workspace,
                                        workspaces.addRevision(workspace, ann, stem + QStringLiteral("a.pdf"),
                                                               QString::fromLatin1(content), false,
                                                               name.toUtf8().size(), QString())));
    }
    const QByteArray other = store.put("other", nullptr);
    links.append(DownloadLink::make(first,
                                    workspaces.addRevision(first, ann, stem + QStringLiteral("b.pdf"),
                                                           QString::fromLatin1(other), false, 5, QString())));

    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    QStringList folders;
    QStringList contents;
    QString last;
    for (const QString& link : links) {
        VLRTransferReportingPtr transfer;
        session->downloadUrl(link, [&](const VLRTransferReportingPtr& t, const vlr::OptionalError&) { transfer = t; });
        ASSERT_TRUE(waitUntil([&] { return transfer && transfer->isFinished(); }));
        ASSERT_FALSE(transfer->error().has_value()) << transfer->error()->localizedDescription.toStdString();
        const QString path = transfer->fileURL().toLocalFile();
        folders.append(QFileInfo(path).dir().dirName());
        contents.append(QString::fromUtf8(readFile(path)));
        last = QFileInfo(path).fileName();
    }
    EXPECT_EQ(
        contents,
        (QStringList{QStringLiteral("."), QStringLiteral(".."), QStringLiteral("Untitled"), QStringLiteral("other")}));
    EXPECT_EQ(QSet<QString>(folders.begin(), folders.end()).size(), 3) << folders.join(u'|').toStdString();
    EXPECT_EQ(folders.last(), folders.first());
    EXPECT_TRUE(last.endsWith(QStringLiteral(" (2).pdf"))) << last.toStdString();
}

} // namespace
