#include "shell/XdgAutostart.h"
#include "fakes/FakeClientServices.h"
#include "platform/VLRUserDefaults.h"
#include "service/VLRLogFormat.h"
#include "service/VLRLogHandler.h"
#include "shell/AppDelegate.h"
#include "support/CapturedLog.h"
#include "support/ScopedEnvironment.h"
#include "support/TestFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// The login items of a user whose configuration lives in a temporary folder.
class AutostartTest : public ::testing::Test
{
protected:
    void SetUp() override { environment.set("XDG_CONFIG_HOME", config.path()); }

    QString folder() const { return config.filePath("autostart"); }
    QString entry() const { return config.filePath("autostart/veluria.desktop"); }
    static QString program() { return QCoreApplication::applicationFilePath(); }

    QTemporaryDir config;
    ScopedEnvironment environment;
    FakeClientServices fakes{config.filePath("Veluria")};
    AppDelegate delegate{fakes.services(), AppDelegate::PartsFactory()};
    CapturedLog log;
};

} // namespace

TEST_F(AutostartTest, TheEntryComesAndGoesAndTheFolderIsTheOnlyTruth)
{
    EXPECT_FALSE(delegate.willLaunchAppAtStartup());
    EXPECT_FALSE(delegate.launchAppAtStartup(false));

    EXPECT_TRUE(delegate.launchAppAtStartup(true));
    EXPECT_TRUE(delegate.willLaunchAppAtStartup());
    const QString written = readFile(entry());
    EXPECT_TRUE(written.startsWith("[Desktop Entry]\n"));
    EXPECT_TRUE(written.contains(QStringLiteral("\nExec=%1 --autostart\n").arg(program())));
    EXPECT_TRUE(written.contains("\nX-KDE-autostart-after=panel\n"));
    const QString validator = QStandardPaths::findExecutable("desktop-file-validate");
    if (!validator.isEmpty()) {
        QProcess validate;
        validate.start(validator, {entry()});
        ASSERT_TRUE(validate.waitForFinished());
        EXPECT_EQ(validate.exitCode(), 0) << validate.readAllStandardOutput().toStdString();
    }

    // Adding twice keeps one entry and answers yes both times.
    EXPECT_TRUE(delegate.launchAppAtStartup(true));
    EXPECT_EQ(QDir(folder()).entryList(QDir::Files), QStringList{"veluria.desktop"});

    EXPECT_TRUE(delegate.launchAppAtStartup(false));
    EXPECT_FALSE(QFile::exists(entry()));
    EXPECT_FALSE(delegate.willLaunchAppAtStartup());
    EXPECT_FALSE(delegate.launchAppAtStartup(false));

    // Whoever removes the file by hand turns the start at login off.
    ASSERT_TRUE(delegate.launchAppAtStartup(true));
    QFile::remove(entry());
    EXPECT_FALSE(delegate.willLaunchAppAtStartup());
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(AutostartTest, OnlyLiveEntriesOfThisProgramCountAndRemovalTakesTheFirst)
{
    writeFile(config.filePath("autostart/0-broken.desktop"), "no group here\nExec=whatever\n");
    writeFile(config.filePath("autostart/1-other.desktop"), "[Desktop Entry]\nExec=/bin/true\n");
    writeFile(config.filePath("autostart/2-hidden.desktop"),
              QStringLiteral("[Desktop Entry]\nExec=%1\nHidden=true\n").arg(program()).toUtf8());
    writeFile(config.filePath("autostart/3-off.desktop"),
              QStringLiteral("[Desktop Entry]\nExec=%1 --autostart\nX-GNOME-Autostart-enabled=false\n")
                  .arg(program())
                  .toUtf8());
    writeFile(config.filePath("autostart/4-noexec.desktop"), "[Desktop Entry]\nName=Nothing to run\n");
    EXPECT_FALSE(delegate.willLaunchAppAtStartup());

    // A second entry of this program, found by its path in a group after
    // another one, comes before ours in name order.
    writeFile(config.filePath("autostart/a-copy.desktop"),
              QStringLiteral("[Other Group]\nExec=/bin/false\n[Desktop Entry]\nExec=%1\n").arg(program()).toUtf8());
    ASSERT_TRUE(delegate.launchAppAtStartup(true));
    EXPECT_TRUE(delegate.launchAppAtStartup(false));
    EXPECT_FALSE(QFile::exists(config.filePath("autostart/a-copy.desktop")));
    EXPECT_TRUE(QFile::exists(entry()));
    EXPECT_TRUE(delegate.willLaunchAppAtStartup());
    EXPECT_TRUE(QFile::exists(config.filePath("autostart/2-hidden.desktop")));

    // Adding over the hidden entry of our own name brings it back to life.
    writeFile(entry(), QStringLiteral("[Desktop Entry]\nExec=%1\nHidden=true\n").arg(program()).toUtf8());
    EXPECT_FALSE(delegate.willLaunchAppAtStartup());
    EXPECT_TRUE(delegate.launchAppAtStartup(true));
    EXPECT_TRUE(delegate.willLaunchAppAtStartup());
}

TEST_F(AutostartTest, AFolderThatCannotBeWrittenAnswersYesAndIsLogged)
{
    writeFile(folder(), "a file where the folder should be");
    EXPECT_TRUE(delegate.launchAppAtStartup(true));
    EXPECT_FALSE(delegate.willLaunchAppAtStartup());
    ASSERT_EQ(log.size(), 1);
    EXPECT_TRUE(log.first().startsWith(
        QStringLiteral("5 SDKClient Error: the autostart entry %1 could not be written: ").arg(entry())))
        << log.first().toStdString();

    // Without a folder or a program there is no list at all.
    XdgAutostart nowhere{QString(), program()};
    EXPECT_FALSE(nowhere.isAvailable());
    EXPECT_FALSE(nowhere.insertProgram());
    EXPECT_FALSE(nowhere.containsProgram());
    EXPECT_FALSE(nowhere.removeProgram());
}

TEST_F(AutostartTest, AProgramPathWithQuotesSpacesAndPercentSignsIsFoundAgain)
{
    QTemporaryDir bin;
    const QString odd = bin.filePath(QStringLiteral("my \"odd\" $dir %u/ve\\luria"));
    QDir().mkpath(QFileInfo(odd).absolutePath());
    ASSERT_TRUE(QFile::copy("/bin/true", odd));
    XdgAutostart autostart(folder(), odd);
    ASSERT_TRUE(autostart.insertProgram());
    EXPECT_TRUE(autostart.containsProgram());
    const QString written = readFile(autostart.entryPath());
    EXPECT_TRUE(written.contains("Exec=\"")) << written.toStdString();
    EXPECT_TRUE(written.contains("%%u"));
    // Another program's entry of the same name is not this one.
    EXPECT_FALSE(XdgAutostart(folder(), "/bin/true").containsProgram());
    EXPECT_TRUE(autostart.removeProgram());
    EXPECT_FALSE(autostart.containsProgram());
}
