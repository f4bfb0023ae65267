#include "platform/HelperProgram.h"
#include "support/ScopedEnvironment.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class HelperProgramTest : public ::testing::Test
{
protected:
    void SetUp() override { environment.set("PATH", bin.path()); }

    QTemporaryDir bin;
    ScopedEnvironment environment;
};

} // namespace

TEST_F(HelperProgramTest, AHelperIsAnExecutableFileOnThePath)
{
    EXPECT_TRUE(HelperProgram::executablePath("veluria-rest-proxy").isNull());
    EXPECT_TRUE(HelperProgram::executablePath(QString()).isNull());

    // A folder of that name, or a file that can't be run, is no program.
    QDir(bin.path()).mkdir("veluria-rest-proxy");
    writeFile(bin.filePath("veluria-uninstall"), "");
    EXPECT_TRUE(HelperProgram::executablePath("veluria-rest-proxy").isNull());
    EXPECT_TRUE(HelperProgram::executablePath("veluria-uninstall").isNull());

    writeFile(bin.filePath("veluria-helper"), "#!/bin/sh\nexit 0\n",
              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(HelperProgram::executablePath("veluria-helper"), bin.filePath("veluria-helper"));
}
