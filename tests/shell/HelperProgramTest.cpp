#include "platform/HelperProgram.h"

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
