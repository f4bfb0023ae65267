#include "Accounts.h"
#include "Administrators.h"
#include "Database.h"
#include "FirstAdministrator.h"
#include "Server.h"
#include "ServerConfig.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("veluria-server"));
    QTextStream err(stderr);
    QTextStream out(stdout);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The Veluria team server."));
    parser.addHelpOption();
    const QCommandLineOption configOption(QStringLiteral("config"), QStringLiteral("The configuration file."),
                                          QStringLiteral("FILE"), QStringLiteral("/etc/veluria/server.ini"));
    const QCommandLineOption migrateOption(QStringLiteral("migrate"),
                                           QStringLiteral("Bring the database's schema up to date and stop."));
    const QCommandLineOption addUserOption(QStringLiteral("add-user"),
                                           QStringLiteral("Make an account; its password is read from standard input."),
                                           QStringLiteral("EMAIL"));
    const QCommandLineOption totpOption(QStringLiteral("second-factor"),
                                        QStringLiteral("With --add-user: print a TOTP secret the account must use."));
    const QCommandLineOption initOption(
        QStringLiteral("init"),
        QStringLiteral("Make the database's schema and the first administrator (asked for, or read from standard "
                       "input: the e-mail address, then the password) and stop."));
    const QCommandLineOption grantOption(QStringLiteral("administrator"),
                                         QStringLiteral("Let an existing account administer the server, and stop."),
                                         QStringLiteral("EMAIL"));
    const QCommandLineOption revokeOption(
        QStringLiteral("no-administrator"),
        QStringLiteral("Let an account no longer administer the server (unless it is the last one), and stop."),
        QStringLiteral("EMAIL"));
    parser.addOptions({configOption, migrateOption, initOption, addUserOption, totpOption, grantOption, revokeOption});
    parser.process(app);

    ServerConfig config;
    QString failure;
    if (!ServerConfig::load(parser.value(configOption), &config, &failure) || !Database::open(config, &failure)
        || !Database::migrate(&failure)) {
        err << failure << Qt::endl;
        return 1;
    }
    if (parser.isSet(migrateOption))
        return 0;
    if (parser.isSet(initOption)) {
        const QString administrator = FirstAdministrator::make(&failure);
        if (administrator.isNull()) {
            err << failure << Qt::endl;
            return 1;
        }
        out << "The database is ready; " << administrator << " administers it (veluria-admin --server)." << Qt::endl;
        return 0;
    }
    if (parser.isSet(grantOption) || parser.isSet(revokeOption)) {
        const bool grant = parser.isSet(grantOption);
        const QString email = parser.value(grant ? grantOption : revokeOption);
        if (!(grant ? Administrators::grant(email, &failure) : Administrators::revoke(email, &failure))) {
            err << failure << Qt::endl;
            return 1;
        }
        out << email.trimmed() << (grant ? " administers the server." : " no longer administers the server.")
            << Qt::endl;
        return 0;
    }
    if (parser.isSet(addUserOption)) {
        const QString password = QTextStream(stdin).readLine();
        QString secret;
        if (!Accounts(config.sessionLifetimeSeconds)
                 .addUser(parser.value(addUserOption), password, parser.isSet(totpOption), &secret, &failure)) {
            err << failure << Qt::endl;
            return 1;
        }
        if (!secret.isEmpty())
            out << secret << Qt::endl;
        return 0;
    }
    Server server(config);
    if (!server.start(&failure)) {
        err << failure << Qt::endl;
        return 1;
    }
    err << "veluria-server listening on " << config.listenAddress.toString() << " port " << config.port << Qt::endl;
    return app.exec();
}
