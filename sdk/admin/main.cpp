#include "AdminTool.h"
#include "RemoteAdmin.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("veluria-admin"));
    QTextStream out(stdout);
    QTextStream err(stderr);
    QStringList arguments = QCoreApplication::arguments();
    arguments.removeFirst();
    if (arguments.contains(QStringLiteral("--server")))
        return RemoteAdmin(out, err).run(arguments);
    return AdminTool(out, err).run(arguments);
}
