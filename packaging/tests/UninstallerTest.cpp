#include "BundleFixture.h"
#include "PrivateHome.h"

#include "installer/DesktopIntegration.h"
#include "uninstaller/Uninstaller.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

const QString Templates = VELURIA_SOURCE_DIR "/packaging/filemanagers";

} // namespace

// A bundle under a root whose name the shell would read gets entries that
// start it from there, valid as the desktop reads them; uninstalling removes
// them with the bundle, the autostart entry, the link handler and the user
// folder's bookmark, and the user's data goes only when asked.
TEST(UninstallerTest, ABundleLeavesNothingBehindButWhatTheUserKeeps)
{
    for (const bool keepData : {true, false}) {
        PrivateHome home;
        BundleFixture bundle("my apps $HOME");
        QDir templates(home.path("templates"));
        QDir().mkpath(templates.path());
        QFile::copy(VELURIA_SOURCE_DIR "/src/resources/desktop/veluria.desktop.in",
                    templates.filePath("veluria.desktop.in"));
        for (const char* name : {"veluria-publish.desktop.in", "publish-with-veluria.sh.in"})
            QFile::copy(Templates + "/" + name, templates.filePath(name));
        const QString program = bundle.root() + "/current/bin/veluria";
        const QStringList errors = DesktopIntegration::install(
            templates.path(), VELURIA_SOURCE_DIR "/src/resources/desktop/veluria.svg", program);
        EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();

        const QString entry = home.path(".local/share/applications/veluria.desktop");
        EXPECT_TRUE(home.read(".local/share/applications/veluria.desktop")
                        .contains("Exec=\"" + QString(program).replace("$", "\\\\$") + "\" --show-file-drop\n"));
        const QString validator = QStandardPaths::findExecutable("desktop-file-validate");
        if (!validator.isEmpty()) {
            EXPECT_EQ(QProcess::execute(validator, {entry}), 0);
        }
        // The script runs the program with the selected files as they are.
        QProcess script;
        script.start(home.path(".local/share/nautilus/scripts/Publish with Veluria"), {"a b.txt"});
        ASSERT_TRUE(script.waitForFinished());
        EXPECT_EQ(bundle.startedVersion(), "2.0.0");

        home.write(".config/autostart/veluria.desktop", "[Desktop Entry]\n");
        home.write(".config/mimeapps.list",
                   "[Default Applications]\nx-scheme-handler/veluria=veluria.desktop\n"
                   "text/plain=editor.desktop\n");
        home.write(
            ".config/gtk-3.0/bookmarks",
            ("file:///srv/projects\n" + QUrl::fromLocalFile(home.path("Veluria")).toString() + " Veluria\n").toUtf8());
        home.write(".local/share/Veluria/veluria.db", "data");
        home.write("Veluria/poster.pdf", "download");

        const Uninstaller::Outcome outcome =
            Uninstaller(InstallLocation::forProgramFolder(bundle.binFolder("2.0.0"))).uninstall(keepData);
        EXPECT_TRUE(outcome.removed) << outcome.message.toStdString();
        EXPECT_FALSE(QFileInfo::exists(bundle.root()));
        for (const char* gone :
             {".local/share/applications/veluria.desktop", ".local/share/kio/servicemenus/veluria-publish.desktop",
              ".local/share/nautilus/scripts/Publish with Veluria", ".config/autostart/veluria.desktop"})
            EXPECT_FALSE(QFileInfo::exists(home.path(gone))) << gone;
        EXPECT_EQ(home.read(".config/mimeapps.list"), "[Default Applications]\ntext/plain=editor.desktop\n");
        EXPECT_EQ(home.read(".config/gtk-3.0/bookmarks"), "file:///srv/projects\n");
        EXPECT_EQ(QFileInfo::exists(home.path(".local/share/Veluria/veluria.db")), keepData);
        EXPECT_EQ(QFileInfo::exists(home.path("Veluria/poster.pdf")), keepData);
    }
}
