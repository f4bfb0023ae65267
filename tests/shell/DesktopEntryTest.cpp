#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// Installs the desktop entry under the prefix as the install step does, and
// gives its lines.
QStringList installEntry(const QString& prefix, const QString& buildFolder)
{
    const QString source = QStringLiteral(VELURIA_SOURCE_DIR "/src/resources/desktop");
    QProcess cmake;
    cmake.start(QStandardPaths::findExecutable("cmake"),
                {"-DCMAKE_INSTALL_PREFIX=" + prefix,
                 "-DVELURIA_DESKTOP_TEMPLATES=" + source + "/veluria.desktop.in|share/applications|" + buildFolder
                     + "/veluria.desktop",
                 "-DVELURIA_INSTALL_BINDIR=bin", "-P", source + "/InstallDesktopEntry.cmake"});
    if (!cmake.waitForFinished() || cmake.exitCode() != 0) {
        ADD_FAILURE() << cmake.readAllStandardError().toStdString();
        return {};
    }
    QFile entry(prefix + "/share/applications/veluria.desktop");
    if (!entry.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(entry.readAll()).split('\n');
}

void expectValid(const QString& path)
{
    const QString validator = QStandardPaths::findExecutable("desktop-file-validate");
    if (validator.isEmpty())
        return;
    QProcess validate;
    validate.start(validator, {path});
    ASSERT_TRUE(validate.waitForFinished());
    EXPECT_EQ(validate.exitCode(), 0) << validate.readAllStandardOutput().toStdString();
}

} // namespace

// The installed entry makes the client the handler of veluria: links, which
// it gets as its one argument, under whatever prefix it was installed.
TEST(DesktopEntryTest, TheInstalledEntryHandlesVeluriaLinksUnderAnyPrefix)
{
    if (QStandardPaths::findExecutable("cmake").isEmpty())
        GTEST_SKIP() << "cmake is not installed";
    QTemporaryDir root;
    const QString plain = root.filePath("usr");
    const QStringList lines = installEntry(plain, root.path());
    EXPECT_TRUE(lines.contains("MimeType=x-scheme-handler/veluria;"));
    EXPECT_TRUE(lines.contains("Exec=" + plain + "/bin/veluria %u"));
    EXPECT_TRUE(lines.contains("TryExec=" + plain + "/bin/veluria"));
    EXPECT_TRUE(lines.contains("Icon=veluria"));
    expectValid(plain + "/share/applications/veluria.desktop");

    // A prefix with characters the shell reads is quoted as the format says.
    const QString odd = root.filePath("my apps $HOME 100%");
    const QStringList quoted = installEntry(odd, root.path());
    EXPECT_TRUE(quoted.contains("Exec=\"" + root.path() + "/my apps \\\\$HOME 100%%/bin/veluria\" %u"))
        << quoted.join('\n').toStdString();
    expectValid(odd + "/share/applications/veluria.desktop");
    EXPECT_TRUE(QFile::exists(QStringLiteral(VELURIA_SOURCE_DIR "/src/resources/desktop/veluria.svg")));
}
