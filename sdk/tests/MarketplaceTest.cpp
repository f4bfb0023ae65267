#include "ServiceFixture.h"
#include "support/TestPictures.h"

#include "sdk/installs/Applications.h"
#include "sdk/installs/Installation.h"
#include "sdk/installs/PackageBuilder.h"
#include "sdk/market/MarketStore.h"
#include "sdk/store/ContentStore.h"

#include "service/VLRInstaller.h"
#include "service/VLRInstallerOperation.h"
#include "service/VLRInstallerUpdater.h"
#include "service/VLRProduct.h"
#include "service/VLRPurchase.h"
#include "service/VLRRESTProvider.h"
#include "service/VLRRevision.h"
#include "service/VLRVendor.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>

#include <csignal>
#include <sys/resource.h>

namespace {

// Installs into the fixture's home.
class Marketplace : public ServiceFixture
{
protected:
    QString package(const QString& fileName, const QList<PackageBuilder::Entry>& entries)
    {
        const QString path = home() + QLatin1Char('/') + fileName;
        QString failure;
        EXPECT_TRUE(PackageBuilder::write(path, entries, &failure)) << qPrintable(failure);
        return path;
    }
    QString app(const QString& version)
    {
        return package(QStringLiteral("tool-%1.tar.gz").arg(version),
                       PackageBuilder::demoApplication(QStringLiteral("tool"), QStringLiteral("Tool"), version));
    }
    static Installation install(const QString& id, const QString& path, const QString& version)
    {
        return Installation(
            {id, QStringLiteral("Tool"), version, path, QFileInfo(path).fileName(), {}}, [] { return false; },
            [](double) {});
    }
    static QString installedReadMe(const QString& id)
    {
        return QString::fromUtf8(readFile(Applications::folderOf(id) + QStringLiteral("/README.txt")));
    }
    // Nothing but the applications' own folders: no staging leftovers.
    static QStringList applicationsFolder()
    {
        return QDir(Applications::root()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
};

} // namespace

TEST_F(Marketplace, ArchivesAndAppImagesInstallAndUpdateWithAMenuEntry)
{
    const QString id = QStringLiteral("tool-id");
    Installation first = install(id, app(QStringLiteral("1.0")), QStringLiteral("1.0"));
    ASSERT_TRUE(first.run()) << qPrintable(first.failure());
    EXPECT_EQ(first.launcher(), Applications::folderOf(id) + QStringLiteral("/bin/tool"));
    EXPECT_EQ(modeOf(first.launcher()), 0700u);
    EXPECT_TRUE(installedReadMe(id).startsWith(QStringLiteral("Tool 1.0")));
    const QString entry = QString::fromUtf8(readFile(Applications::desktopEntryOf(id)));
    EXPECT_TRUE(entry.contains(QStringLiteral("Exec=\"%1\"\n").arg(first.launcher()))) << qPrintable(entry);
    EXPECT_TRUE(entry.contains(QStringLiteral("X-Veluria-Version=1.0\n")));

    Installation second = install(id, app(QStringLiteral("1.1")), QStringLiteral("1.1"));
    ASSERT_TRUE(second.run()) << qPrintable(second.failure());
    EXPECT_TRUE(installedReadMe(id).startsWith(QStringLiteral("Tool 1.1")));
    EXPECT_TRUE(readFile(Applications::desktopEntryOf(id)).contains("X-Veluria-Version=1.1\n"));
    EXPECT_EQ(applicationsFolder(), QStringList{id});

    // An AppImage is kept whole and started as it is; a name with quotes
    // and a field code can't break the entry's Exec line.
    const QString image = home() + QStringLiteral("/Odd.AppImage");
    ASSERT_TRUE(QFile::copy(QStringLiteral("/bin/true"), image));
    Installation appImage(
        {QStringLiteral("odd-id"),
         QStringLiteral("Say \"hi\" %u"),
         QStringLiteral("2"),
         image,
         QStringLiteral("Odd.AppImage"),
         {}},
        [] { return false; }, [](double) {});
    ASSERT_TRUE(appImage.run()) << qPrintable(appImage.failure());
    EXPECT_EQ(QProcess::execute(appImage.launcher(), {}), 0);
    const QByteArray oddEntry = readFile(Applications::desktopEntryOf(QStringLiteral("odd-id")));
    EXPECT_TRUE(oddEntry.contains("Name=Say \"hi\" %u\n")) << oddEntry.constData();
    QByteArray exec = QFile::encodeName(appImage.launcher());
    exec.replace("\"", "\\\\\"").replace("%", "%%");
    EXPECT_TRUE(oddEntry.contains("\nExec=\"" + exec + "\"\n")) << oddEntry.constData();

    EXPECT_TRUE(Installation::remove(id));
    EXPECT_FALSE(QFileInfo::exists(Applications::folderOf(id)));
    EXPECT_FALSE(QFileInfo::exists(Applications::desktopEntryOf(id)));
}

TEST_F(Marketplace, FailedInstallsLeaveThePreviousVersionIntact)
{
    const QString id = QStringLiteral("tool-id");
    const QString sleeper = package(
        QStringLiteral("sleeper.tar.gz"),
        {{QStringLiteral("bin/tool"), "#!/bin/sh\nsleep 30\n", 0755}, {QStringLiteral("README.txt"), "Tool 1.0\n"}});
    ASSERT_TRUE(install(id, sleeper, QStringLiteral("1.0")).run());
    const QByteArray entryBefore = readFile(Applications::desktopEntryOf(id));
    auto refused = [&](const QString& path, const QString& expected) {
        Installation attempt = install(id, path, QStringLiteral("2.0"));
        EXPECT_FALSE(attempt.run()) << qPrintable(path);
        EXPECT_TRUE(attempt.failure().contains(expected)) << qPrintable(attempt.failure());
        EXPECT_TRUE(installedReadMe(id).startsWith(QStringLiteral("Tool 1.0")));
        EXPECT_EQ(readFile(Applications::desktopEntryOf(id)), entryBefore);
        EXPECT_EQ(applicationsFolder(), QStringList{id});
    };
    const QString corrupt = writeFile(home() + QStringLiteral("/corrupt.tar.gz"), randomBytes(50000));
    refused(corrupt, QStringLiteral("damaged"));
    QByteArray truncated = readFile(app(QStringLiteral("2.0")));
    truncated.chop(truncated.size() / 3);
    refused(writeFile(home() + QStringLiteral("/short.tar.gz"), truncated), QStringLiteral("damaged"));
    auto tool = PackageBuilder::demoApplication(QStringLiteral("tool"), QStringLiteral("Tool"), QStringLiteral("2.0"));
    refused(package(QStringLiteral("climb.tar.gz"),
                    tool + QList<PackageBuilder::Entry>{{QStringLiteral("../../evil"), "x"}}),
            QStringLiteral("outside its folder"));
    refused(package(QStringLiteral("link.tar.gz"),
                    tool + QList<PackageBuilder::Entry>{{QStringLiteral("etc"), {}, 0777, QStringLiteral("/etc")}}),
            QStringLiteral("outside its folder"));
    refused(package(QStringLiteral("through.tar.gz"),
                    tool
                        + QList<PackageBuilder::Entry>{{QStringLiteral("up"), {}, 0777, QStringLiteral(".")},
                                                       {QStringLiteral("bin/up"), {}, 0777, QStringLiteral("../..")},
                                                       {QStringLiteral("bin/up/evil"), "x"}}),
            QStringLiteral("outside its folder"));
    EXPECT_FALSE(QFileInfo::exists(home() + QStringLiteral("/.local/share/Veluria/evil")));
    EXPECT_FALSE(QFileInfo::exists(Applications::root() + QStringLiteral("/evil")));

    // A full disk, as a file size limit stands for it.
    const QString large =
        package(QStringLiteral("large.tar.gz"),
                tool + QList<PackageBuilder::Entry>{{QStringLiteral("data"), randomBytes(512 * 1024)}});
    struct rlimit limit = {};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const auto previousSignal = ::signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = {256 * 1024, limit.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    refused(large, QStringLiteral("not enough room"));
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::signal(SIGXFSZ, previousSignal);

    // The installed program is running: it is not replaced under it.
    QProcess running;
    running.start(Applications::folderOf(id) + QStringLiteral("/bin/tool"), {});
    ASSERT_TRUE(running.waitForStarted());
    refused(app(QStringLiteral("2.0")), QStringLiteral("is running"));
    running.kill();
    running.waitForFinished();
}

TEST_F(Marketplace, SessionInstallsUpdatesAndPublishesThroughTheCatalogue)
{
    const QString ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    MarketStore market(database());
    const QString product = market.addProduct(QStringLiteral("Suite"), market.addVendor(QStringLiteral("Lumen")), {});
    QString failure;
    MarketStore::InstallerFields fields;
    fields.name = QStringLiteral("Tool");
    fields.productIds = {product};
    const QString toolId = market.addInstaller(fields, &failure);
    ASSERT_FALSE(market
                     .publishRevision(toolId, app(QStringLiteral("1.0")), QStringLiteral("1.0"),
                                      QStringLiteral("tool-1.0.tar.gz"), &failure)
                     .isNull())
        << qPrintable(failure);
    ASSERT_FALSE(market
                     .grantPurchase({ann,
                                     product,
                                     QDateTime::currentMSecsSinceEpoch() + 86400000,
                                     false,
                                     QStringLiteral("credit_card"),
                                     0,
                                     {}})
                     .isNull());

    auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_TRUE(session);
    ASSERT_EQ(session->installers().size(), 1);
    ASSERT_TRUE(session->hasPurchases());
    const auto purchase = std::static_pointer_cast<VLRPurchase>(session->purchases().value(0));
    EXPECT_EQ(purchase->product()->vendor()->name(), QStringLiteral("Lumen"));
    EXPECT_TRUE(purchase->manageURL().isLocalFile());
    EXPECT_TRUE(readFile(purchase->manageURL().toLocalFile()).contains("Suite"));
    const auto tool = std::static_pointer_cast<VLRInstaller>(session->installers().first());
    EXPECT_EQ(session->updater()->neverInstalled(), session->installers());
    EXPECT_TRUE(tool->installedVersionString().isNull());

    ChangeRecorder recorder;
    recorder.watch(*tool, {QStringLiteral("installedVersionString")});
    recorder.watch(*session->updater(), {QStringLiteral("neverInstalled"), QStringLiteral("installerUpdates")});
    auto installed = [&](const QString& version) {
        const VLRInstallerOperationPtr operation = tool->downloadAndInstallLatestRevision();
        EXPECT_TRUE(operation && !operation->error());
        EXPECT_EQ(tool->overallOperation(), operation);
        EXPECT_TRUE(waitUntil([&] { return operation->isFinished() || operation->error(); }));
        EXPECT_FALSE(operation->error()) << qPrintable(operation->error()->localizedDescription);
        EXPECT_FALSE(tool->overallOperation());
        return tool->installedVersionString() == version && installedReadMe(toolId).startsWith("Tool " + version);
    };
    EXPECT_TRUE(installed(QStringLiteral("1.0")));
    EXPECT_TRUE(session->updater()->neverInstalled().isEmpty());
    EXPECT_TRUE(session->updater()->installerUpdates().isEmpty());

    // Another process publishes a revision: the session hears of it, and the
    // same record now offers the update.
    {
        auto other = Database::open(databaseFolder(), nullptr);
        ASSERT_FALSE(MarketStore(*other)
                         .publishRevision(toolId, app(QStringLiteral("1.1")), QStringLiteral("1.1"),
                                          QStringLiteral("tool-1.1.tar.gz"), &failure)
                         .isNull());
    }
    ASSERT_TRUE(waitUntil([&] { return !session->updater()->installerUpdates().isEmpty(); }, 2500));
    EXPECT_EQ(session->updater()->installerUpdates().first(), session->installers().first());
    EXPECT_EQ(tool->currentRevision()->versionDisplay(), QStringLiteral("1.1"));
    EXPECT_TRUE(installed(QStringLiteral("1.1")));
    EXPECT_TRUE(session->updater()->installerUpdates().isEmpty());
    EXPECT_TRUE(recorder.allOnGuiThread());
    EXPECT_EQ(recorder.count(QStringLiteral("installedVersionString")), 2);

    // The publishing path: a malformed description publishes nothing; a good
    // one makes an installer whose package becomes its revision.
    vlr::OptionalError answer;
    VLRInstallerPtr created;
    bool answered = false;
    auto create = [&](const QString& name, const QVariant& products) {
        answered = false;
        session->createNewInstallerWithName(name, {}, QStringLiteral("A tool"), QStringLiteral("linux"),
                                            QVariantList{QStringLiteral("org.example.tool")}, {}, false, products, {},
                                            [&](const VLRInstallerPtr& installer, const vlr::OptionalError& e) {
                                                created = installer;
                                                answer = e;
                                                answered = true;
                                            });
        return waitUntil([&] { return answered; });
    };
    ASSERT_TRUE(create(QStringLiteral("Second"), QVariantList{QStringLiteral("No such product")}));
    EXPECT_TRUE(answer && answer->localizedDescription.contains(QStringLiteral("No such product")));
    EXPECT_TRUE(market.installerId(QStringLiteral("Second")).isNull());
    ASSERT_TRUE(create(QStringLiteral("Second"), QVariantList{QStringLiteral("https://shop.example/products/Suite")}));
    ASSERT_FALSE(answer) << qPrintable(answer->localizedDescription);
    vlr::OptionalError queued;
    session->uploadAndPublishNewInstaller(QUrl::fromLocalFile(app(QStringLiteral("5.0"))), created->identifier(),
                                          {{QStringLiteral("version"), QStringLiteral("5.0")}}, &queued);
    EXPECT_FALSE(queued);
    ASSERT_TRUE(waitUntil([&] {
        const auto list = session->installers();
        return list.size() == 2 && std::static_pointer_cast<VLRInstaller>(list.at(0))->currentRevision()
            && std::static_pointer_cast<VLRInstaller>(list.at(0))->currentRevision()->versionDisplay() == "5.0";
    }));

    // A new session on this machine knows what is installed here.
    session->logoutWithCompletionHandler({});
    auto again = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_TRUE(again);
    EXPECT_EQ(std::static_pointer_cast<VLRInstaller>(again->installers().at(1))->installedVersionString(),
              QStringLiteral("1.1"));
}

TEST_F(Marketplace, GroupsTellHereFromElsewhereAndPurchasesFollowEveryChange)
{
    const QString ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    MarketStore market(database());
    const QString product = market.addProduct(QStringLiteral("Suite <b>"), {}, {});
    QString failure;
    QStringList ids;
    for (const QString& name : {QStringLiteral("Elsewhere"), QStringLiteral("Removed"), QStringLiteral("Fresh")}) {
        MarketStore::InstallerFields fields;
        fields.name = name;
        fields.productIds = {product};
        ids.append(market.addInstaller(fields, &failure));
        market.publishRevision(ids.last(), app(QStringLiteral("1.0")), QStringLiteral("1.0"), name, &failure);
    }
    MarketStore::Purchase purchase{
        ann, product, QDateTime::currentMSecsSinceEpoch() + 86400000, false, QStringLiteral("credit_card"), 0, {}};
    market.grantPurchase(purchase);
    market.recordInstall(ann, ids.at(0), QStringLiteral("another machine"), {}, QStringLiteral("1.0"));
    // Recorded here, but the user took its folder away.
    market.recordInstall(ann, ids.at(1), Applications::thisMachine(), {}, QStringLiteral("1.0"));

    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_TRUE(session);
    const VLRInstallerList& all = session->installers();
    ASSERT_EQ(all.size(), 3);
    EXPECT_EQ(session->updater()->neverInstalled(), VLRInstallerList{all.at(1)});
    EXPECT_EQ(session->updater()->notInstalled(), (VLRInstallerList{all.at(0), all.at(2)}));
    EXPECT_TRUE(session->updater()->installerUpdates().isEmpty());
    EXPECT_TRUE(all.at(2)->installedVersionString().isNull());

    // Names from the catalogue are text in the manage page, never markup.
    const auto shown = std::static_pointer_cast<VLRPurchase>(session->purchases().first());
    const QByteArray page = readFile(shown->manageURL().toLocalFile());
    EXPECT_TRUE(page.contains("Suite &lt;b&gt;"));
    EXPECT_FALSE(page.contains("<b>"));

    // Binding tells the groups again, for a client that read them before its
    // installers.
    ChangeRecorder groups;
    groups.watch(*session->updater(), {QStringLiteral("neverInstalled"), QStringLiteral("notInstalled")});
    library().restProvider().sessionDidChange(session);
    ASSERT_TRUE(waitUntil([&] { return groups.count(QStringLiteral("notInstalled")) == 1; }));
    EXPECT_EQ(groups.count(QStringLiteral("neverInstalled")), 1);
    EXPECT_EQ(session->updater()->neverInstalled(), VLRInstallerList{all.at(1)});
    library().restProvider().sessionDidChange(nullptr);

    // A new card date from another process: the list is handed over again,
    // so that the pages read the date that is not observed.
    ChangeRecorder recorder;
    recorder.watch(*session, {QStringLiteral("purchases"), QStringLiteral("installers")});
    purchase.ccExpiresOn = QDateTime::currentMSecsSinceEpoch() + 5 * 86400000LL;
    MarketStore(*Database::open(databaseFolder(), nullptr)).grantPurchase(purchase);
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("purchases")) == 1; }, 2500));
    EXPECT_EQ(shown->ccExpiresOn().toMSecsSinceEpoch(), purchase.ccExpiresOn);

    // The publisher changes an installer: the same record takes the new name.
    const auto fresh = std::static_pointer_cast<VLRInstaller>(all.at(1));
    bool answered = false;
    fresh->setInstallerFields(QStringLiteral("Fresh 2"), {}, {}, {}, {}, {}, QVariant(1), QStringList{"Suite <b>"}, {},
                              [&](const VLRInstallerPtr& installer, const vlr::OptionalError& error) {
                                  EXPECT_EQ(installer, fresh);
                                  EXPECT_FALSE(error);
                                  answered = true;
                              });
    ASSERT_TRUE(waitUntil([&] { return answered; }));
    EXPECT_EQ(fresh->name(), QStringLiteral("Fresh 2"));
    EXPECT_EQ(session->installers().size(), 3);
    EXPECT_TRUE(recorder.allOnGuiThread());
}

TEST_F(Marketplace, FailedAndCancelledInstallsChangeNothingAndCanBeTriedAgain)
{
    const QString ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    MarketStore market(database());
    const QString product = market.addProduct(QStringLiteral("Suite"), {}, {});
    QString failure;
    QStringList ids;
    for (const QString& name : {QStringLiteral("Big"), QStringLiteral("Damaged"), QStringLiteral("Empty")}) {
        MarketStore::InstallerFields fields;
        fields.name = name;
        fields.productIds = {product};
        ids.append(market.addInstaller(fields, &failure));
    }
    auto tool = PackageBuilder::demoApplication(QStringLiteral("big"), QStringLiteral("Big"), QStringLiteral("1"));
    tool.append({QStringLiteral("data"), randomBytes(24 * 1024 * 1024)});
    market.publishRevision(ids.at(0), package(QStringLiteral("big.tar.gz"), tool), QStringLiteral("1"), "big.tar.gz",
                           &failure);
    const QString damaged = market.publishRevision(ids.at(1), app(QStringLiteral("1.0")), QStringLiteral("1.0"),
                                                   QStringLiteral("tool.tar.gz"), &failure);
    const QString content = market.revision(damaged)->content;
    QFile stored(ContentStore(databaseFolder()).pathOf(content.toLatin1()));
    ASSERT_TRUE(stored.open(QIODevice::ReadWrite));
    stored.write("tampered");
    stored.close();
    market.grantPurchase({ann, product, QDateTime::currentMSecsSinceEpoch() + 86400000, false, {}, 0, {}});

    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_TRUE(session);
    ASSERT_EQ(session->installers().size(), 3);
    auto run = [&](int index, bool cancel) {
        const auto installer = std::static_pointer_cast<VLRInstaller>(session->installers().at(index));
        const VLRInstallerOperationPtr operation = installer->downloadAndInstallLatestRevision();
        if (cancel)
            operation->cancel();
        EXPECT_TRUE(waitUntil([&] { return operation->isFinished() || operation->error(); }));
        EXPECT_FALSE(installer->overallOperation());
        EXPECT_TRUE(session->updater()->downloadOperations().isEmpty());
        EXPECT_FALSE(session->updater()->currentInstall());
        return operation->error();
    };
    const auto cancelled = run(0, true);
    EXPECT_TRUE(cancelled && cancelled->isCancellation());
    const auto tampered = run(1, false);
    ASSERT_TRUE(tampered);
    EXPECT_EQ(tampered->localizedDescription,
              QStringLiteral("The package of Damaged is damaged. Please try again later."));
    const auto empty = run(2, false);
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->localizedDescription, QStringLiteral("Empty has no version to install yet."));
    for (const VLRInstallerPtr& installer : session->installers()) {
        EXPECT_TRUE(installer->installedVersionString().isNull());
        EXPECT_FALSE(QFileInfo::exists(Applications::desktopEntryOf(installer->identifier())));
    }
    EXPECT_EQ(session->updater()->neverInstalled().size(), 3);

    // Tried again, the cancelled one installs.
    EXPECT_FALSE(run(0, false));
    EXPECT_EQ(session->installers().at(0)->installedVersionString(), QStringLiteral("1"));
    EXPECT_EQ(applicationsFolder(), (QStringList{QStringLiteral(".downloads"), ids.at(0)}));
}

TEST_F(Marketplace, ZipAndXzPackagesUnpackWithTheirInnerLinks)
{
    const QList<PackageBuilder::Entry> entries{
        {QStringLiteral("Tool/bin/tool"), "#!/bin/sh\n", 0755},
        {QStringLiteral("Tool/lib/libtool.so.1"), "library"},
        {QStringLiteral("Tool/lib/libtool.so"), {}, 0777, QStringLiteral("libtool.so.1")},
        {QStringLiteral("Tool/share/doc/readme"), "read me"}};
    for (const QString& name : {QStringLiteral("tool.zip"), QStringLiteral("tool.tar.xz")}) {
        const QString id = QFileInfo(name).completeSuffix().replace(QLatin1Char('.'), QLatin1Char('-'));
        Installation installation = install(id, package(name, entries), QStringLiteral("1"));
        ASSERT_TRUE(installation.run()) << qPrintable(name) << qPrintable(installation.failure());
        const QString folder = Applications::folderOf(id);
        EXPECT_EQ(installation.launcher(), folder + QStringLiteral("/Tool/bin/tool"));
        EXPECT_EQ(QFileInfo(folder + QStringLiteral("/Tool/lib/libtool.so")).symLinkTarget(),
                  folder + QStringLiteral("/Tool/lib/libtool.so.1"));
        EXPECT_EQ(readFile(folder + QStringLiteral("/Tool/share/doc/readme")), "read me");
        EXPECT_EQ(modeOf(folder + QStringLiteral("/Tool/share/doc/readme")), 0600u);
        EXPECT_EQ(modeOf(folder + QStringLiteral("/Tool/share")), 0700u);
    }
}

TEST_F(Marketplace, PublishingRefusesWhatItCantUseAndSigningOutStopsAnInstall)
{
    const QString ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    MarketStore market(database());
    const QString product = market.addProduct(QStringLiteral("Suite"), {}, {});
    market.grantPurchase({ann, product, QDateTime::currentMSecsSinceEpoch() + 86400000, false, {}, 0, {}});
    QString failure;
    MarketStore::InstallerFields fields;
    fields.name = QStringLiteral("Big");
    fields.productIds = {product};
    const QString bigId = market.addInstaller(fields, &failure);
    auto big = PackageBuilder::demoApplication(QStringLiteral("big"), QStringLiteral("Big"), QStringLiteral("1"));
    big.append({QStringLiteral("data"), randomBytes(24 * 1024 * 1024)});
    market.publishRevision(bigId, package(QStringLiteral("big.tar.gz"), big), QStringLiteral("1"), "big.tar.gz",
                           &failure);
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_TRUE(session);

    auto queued = [&](const QUrl& file, const QString& installerId, const QVariantMap& info) {
        vlr::OptionalError error;
        session->uploadAndPublishNewInstaller(file, installerId, info, &error);
        return error ? error->localizedDescription : QString();
    };
    const QUrl tool = QUrl::fromLocalFile(app(QStringLiteral("1.0")));
    EXPECT_EQ(queued(QUrl::fromLocalFile(home() + QStringLiteral("/gone.tar.gz")), bigId, {}),
              QStringLiteral("The installer's description can't be used: the package \"gone.tar.gz\" can't be "
                             "found."));
    EXPECT_EQ(queued(tool, bigId, {{QStringLiteral("version"), 2}}),
              QStringLiteral("The installer's description can't be used: \"version\" must be a text."));
    vlr::OptionalError answer;
    VLRInstallerPtr answered;
    auto created = [&](const QString& name, const QList<QUrl>& files) {
        bool done = false;
        session->createNewInstallerWithName(name, {}, {}, {}, {}, files, true, QStringLiteral("Suite"), {},
                                            [&](const VLRInstallerPtr& installer, const vlr::OptionalError& error) {
                                                answered = installer;
                                                answer = error;
                                                done = true;
                                            });
        return waitUntil([&] { return done; });
    };
    ASSERT_TRUE(created(QStringLiteral("Big"), {}));
    EXPECT_EQ(answer->localizedDescription,
              QStringLiteral("Big could not be published: an installer is called Big "
                             "already"));
    ASSERT_TRUE(created(QStringLiteral("Lost"), {QUrl::fromLocalFile(home() + QStringLiteral("/lost.png"))}));
    EXPECT_TRUE(answer && answer->localizedDescription.contains(QStringLiteral("lost.png")));
    EXPECT_TRUE(market.installerId(QStringLiteral("Lost")).isNull());
    // A picture among the files becomes the installer's icon.
    QImage picture(16, 16, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(home() + QStringLiteral("/icon.png")));
    ASSERT_TRUE(created(QStringLiteral("Pictured"), {QUrl::fromLocalFile(home() + QStringLiteral("/icon.png"))}));
    ASSERT_FALSE(answer);
    EXPECT_EQ(answered->image().pixelColor(0, 0), QColor(Qt::red));

    // Signing out in the middle of an install stops it and leaves nothing.
    const VLRInstallerPtr first = session->installers().first();
    ASSERT_EQ(first->identifier(), bigId);
    const VLRInstallerOperationPtr operation = first->downloadAndInstallLatestRevision();
    session->logoutWithCompletionHandler({});
    ASSERT_TRUE(waitUntil([&] { return operation->error().has_value(); }));
    EXPECT_TRUE(operation->error()->isCancellation());
    EXPECT_TRUE(first->installedVersionString().isNull());
    EXPECT_FALSE(QFileInfo::exists(Applications::folderOf(bigId)));
    EXPECT_EQ(queued(tool, bigId, {}), QStringLiteral("You are signed out. Please sign in again."));
}

// An installer's picture named by a web address is fetched from there; an
// address whose answer is no picture leaves the installer without one.
TEST_F(Marketplace, AnInstallersPictureComesFromItsWebAddress)
{
    const QByteArray png = pngOf(Qt::red);
    QTcpServer web;
    ASSERT_TRUE(web.listen(QHostAddress::LocalHost));
    QObject::connect(&web, &QTcpServer::newConnection, [&] {
        QTcpSocket* peer = web.nextPendingConnection();
        QObject::connect(peer, &QTcpSocket::readyRead, peer, [peer, png] {
            const QByteArray request = peer->readAll();
            const QByteArray body = request.startsWith("GET /icon.png ") ? png : QByteArray("no picture");
            peer->write("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size())
                        + "\r\n\r\n" + body);
            peer->disconnectFromHost();
        });
    });
    const QString at = QStringLiteral("http://127.0.0.1:%1/").arg(web.serverPort());

    const QString ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    MarketStore market(database());
    const QString product = market.addProduct(QStringLiteral("Suite"), {}, {});
    market.grantPurchase({ann, product, QDateTime::currentMSecsSinceEpoch() + 86400000, false, {}, 0, {}});
    QString failure;
    for (const QString& name : {QStringLiteral("icon.png"), QStringLiteral("page.html")}) {
        MarketStore::InstallerFields fields;
        fields.name = name;
        fields.productIds = {product};
        fields.imageUrl = at + name;
        ASSERT_FALSE(market.addInstaller(fields, &failure).isNull()) << qPrintable(failure);
    }
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_TRUE(session);
    const auto pictureOf = [&](const QString& name) {
        for (const VLRInstallerPtr& installer : session->installers())
            if (installer->name() == name)
                return installer->image();
        return QImage();
    };
    ASSERT_TRUE(waitUntil([&] { return !pictureOf(QStringLiteral("icon.png")).isNull(); }));
    EXPECT_EQ(pictureOf(QStringLiteral("icon.png")).pixelColor(0, 0), QColor(Qt::red));
    EXPECT_TRUE(pictureOf(QStringLiteral("page.html")).isNull());
}
