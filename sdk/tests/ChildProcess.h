#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>

// This test program started once more as a second client: it runs one of the
// ChildRole tests, chosen by VELURIA_CHILD_ROLE, against the same database.
class ChildProcess
{
public:
    ChildProcess(const QString& role, const QString& databaseFolder, const QString& home,
                 const QProcessEnvironment& extra = {});
    ~ChildProcess();

    // Waits for a line that starts with the text on the child's output.
    bool waitForLine(const QString& start, int timeoutMs = 30000);
    bool waitForSuccess(int timeoutMs = 30000);
    void killHard();
    QString output() const { return m_output; }

    static bool isChild(const char* role);

private:
    QProcess m_process;
    QString m_output;
};
