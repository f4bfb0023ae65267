#pragma once

#include <QList>
#include <QString>

#include <sys/types.h>

// Another program running as this user, found by its executable's name.
class VLRRunningApplication
{
public:
    explicit VLRRunningApplication(pid_t processIdentifier);

    // Every process of this user whose executable has that file name.
    static QList<VLRRunningApplication> runningApplicationsWithExecutableName(const QString& name);

    pid_t processIdentifier() const { return m_processIdentifier; }
    // Asks the program to end (SIGTERM); false when it was already gone.
    bool terminate() const;

private:
    pid_t m_processIdentifier;
};
