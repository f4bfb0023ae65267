// veluria-uninstall: removes this install of Veluria. Without options it asks
// first, and whether to keep the user's data and downloads; `--yes` asks
// nothing and removes them too unless `--keep-data` is given.
#include "uninstaller/Uninstaller.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Veluria"));
    const QStringList arguments = app.arguments().mid(1);
    const bool scripted = arguments.contains(QLatin1String("--yes"));
    bool keepData = arguments.contains(QLatin1String("--keep-data"));
    Uninstaller uninstaller(InstallLocation::forProgramFolder(QApplication::applicationDirPath()));
    if (!scripted) {
        QMessageBox question(QMessageBox::Question, QStringLiteral("Uninstall Veluria"),
                             QStringLiteral("Remove Veluria from this computer?"));
        question.setInformativeText(QStringLiteral("Your settings, the local database and the files in your "
                                                   "Veluria folder can stay for a later install."));
        QPushButton* keep = question.addButton(QStringLiteral("Uninstall, Keep My Data"), QMessageBox::AcceptRole);
        QPushButton* all = question.addButton(QStringLiteral("Uninstall Everything"), QMessageBox::DestructiveRole);
        question.addButton(QMessageBox::Cancel);
        question.setDefaultButton(keep);
        question.exec();
        if (question.clickedButton() != keep && question.clickedButton() != all)
            return 2;
        keepData = question.clickedButton() == keep;
    }
    const Uninstaller::Outcome outcome = uninstaller.uninstall(keepData);
    std::fprintf(outcome.removed ? stdout : stderr, "%s\n", qUtf8Printable(outcome.message));
    if (!scripted)
        QMessageBox(outcome.removed ? QMessageBox::Information : QMessageBox::Warning,
                    QStringLiteral("Uninstall Veluria"), outcome.message)
            .exec();
    return outcome.removed ? 0 : 1;
}
