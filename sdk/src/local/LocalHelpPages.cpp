#include "sdk/local/LocalHelpPages.h"

#include "sdk/base/DatabaseLocation.h"
#include "sdk/base/PrivateFiles.h"

QUrl LocalHelpPages::helpPage()
{
    return write(QStringLiteral("help.html"), QStringLiteral("Veluria help"),
                 QStringLiteral("<p>This Veluria works with the local Veluria service on this computer. Accounts, "
                                "workspaces and their members are managed with the command <code>veluria-admin</code>; "
                                "<code>veluria-admin --help</code> lists what it can do.</p>"
                                "<p>Files published into a workspace can be downloaded by its members with a "
                                "<code>veluria:</code> link, which <code>veluria-admin link</code> prints.</p>"));
}

QUrl LocalHelpPages::resetPasswordPage()
{
    return write(QStringLiteral("reset-password.html"), QStringLiteral("Forgotten password"),
                 QStringLiteral("<p>Passwords of the local Veluria service are set by whoever manages it, with "
                                "<code>veluria-admin passwd EMAIL PASSWORD</code>. Ask them for a new one, then sign "
                                "in again.</p>"));
}

QUrl LocalHelpPages::write(const QString& fileName, const QString& title, const QString& body)
{
    const QUrl folder = DatabaseLocation::current();
    if (!folder.isLocalFile())
        return {};
    const QString helpFolder = folder.toLocalFile() + QStringLiteral("/Help");
    if (!PrivateFiles::makeFolder(helpFolder))
        return {};
    const QString path = helpFolder + QLatin1Char('/') + fileName;
    const QByteArray page =
        QStringLiteral("<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>%1</title></head>"
                       "<body><h1>%1</h1>%2</body></html>\n")
            .arg(title, body)
            .toUtf8();
    return PrivateFiles::writeUnlessSame(path, page) ? QUrl::fromLocalFile(path) : QUrl();
}
