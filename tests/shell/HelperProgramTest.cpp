#include "fakes/FakeService.h"
#include "platform/VLRUserDefaults.h"
#include "service/VLRLogFormat.h"
#include "service/VLRLogHandler.h"
#include "shell/AppDelegate.h"
#include "platform/HelperProgram.h"
#include "app/VLRUserDefaultsKeys.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

void writeProgram(const QString& path, const QByteArray& contents)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(contents);
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

class HelperProgramTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        savedPath = qgetenv("PATH");
        qputenv("PATH", bin.path().toUtf8());
    }
    void TearDown() override { qputenv("PATH", savedPath); }

    QTemporaryDir bin;
    QByteArray savedPath;
};

} // namespace

TEST_F(HelperProgramTest, AHelperIsAnExecutableFileOnThePath)
{
    EXPECT_TRUE(HelperProgram::executablePath("veluria-rest-proxy").isNull());
    EXPECT_TRUE(HelperProgram::executablePath(QString()).isNull());

    // A folder of that name, or a file that can't be run, is no program.
    QDir(bin.path()).mkdir("veluria-rest-proxy");
    QFile plain(bin.filePath("veluria-uninstall"));
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    plain.close();
    EXPECT_TRUE(HelperProgram::executablePath("veluria-rest-proxy").isNull());
    EXPECT_TRUE(HelperProgram::executablePath("veluria-uninstall").isNull());

    writeProgram(bin.filePath("veluria-helper"), "#!/bin/sh\nexit 0\n");
    EXPECT_EQ(HelperProgram::executablePath("veluria-helper"), bin.filePath("veluria-helper"));
}

TEST_F(HelperProgramTest, AProxyThatCannotStartIsLoggedAndNotTriedAgain)
{
    FakeService::reset();
    QTemporaryDir settings;
    VLRUserDefaults::setStorageDirectory(settings.path());
    VLRUserDefaults::resetStandardUserDefaults();
    QStringList log;
    vlr::setLogObserver([&log](int level, const QString& tag, const QString& message) {
        log.append(QStringLiteral("%1 %2 %3").arg(level).arg(tag, message));
    });
    writeProgram(bin.filePath("veluria-rest-proxy"), "#!/nonexistent/interpreter\n");
    VLRUserDefaults::standardUserDefaults()->setBool(true, VLRUserDefaultsKeyLaunchRestProxy);

    AppDelegate delegate{AppDelegate::PartsFactory()};
    log.clear();
    delegate.launchRestProxy();
    ASSERT_EQ(log.size(), 1);
    EXPECT_TRUE(log.first().startsWith("4 RestProxy RestProxy could not launch. error = ")) << log.first().toStdString();
    EXPECT_GT(log.first().size(), QStringLiteral("4 RestProxy RestProxy could not launch. error = ").size());
    EXPECT_EQ(VLRUserDefaults::standardUserDefaults()->objectForKey(VLRUserDefaultsKeyLaunchRestProxy), QVariant(false));

    vlr::setLogObserver({});
    VLRUserDefaults::resetStandardUserDefaults();
    VLRUserDefaults::setStorageDirectory(QString());
}
