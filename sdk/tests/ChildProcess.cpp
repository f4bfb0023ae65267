#include "ChildProcess.h"

#include <QCoreApplication>
#include <QElapsedTimer>

ChildProcess::ChildProcess(const QString& role, const QString& databaseFolder, const QString& home,
                           const QProcessEnvironment& extra)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VELURIA_CHILD_ROLE"), role);
    environment.insert(QStringLiteral("VELURIA_CHILD_DATABASE"), databaseFolder);
    environment.insert(QStringLiteral("HOME"), home);
    // Everything of the child's own lives under that home.
    environment.remove(QStringLiteral("XDG_DATA_HOME"));
    environment.remove(QStringLiteral("XDG_CONFIG_HOME"));
    environment.insert(extra);
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(
        QCoreApplication::applicationFilePath(),
        {QStringLiteral("--gtest_filter=ChildRole.") + role, QStringLiteral("--gtest_also_run_disabled_tests")});
}

ChildProcess::~ChildProcess()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}

bool ChildProcess::waitForLine(const QString& start, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < timeoutMs) {
        for (const QString& line : m_output.split(QLatin1Char('\n')))
            if (line.startsWith(start))
                return true;
        if (m_process.state() == QProcess::NotRunning)
            return false;
        m_process.waitForReadyRead(50);
        m_output += QString::fromLocal8Bit(m_process.readAll());
        QCoreApplication::processEvents();
    }
    return false;
}

bool ChildProcess::waitForSuccess(int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (m_process.state() != QProcess::NotRunning && clock.elapsed() < timeoutMs) {
        m_process.waitForFinished(50);
        QCoreApplication::processEvents();
    }
    m_output += QString::fromLocal8Bit(m_process.readAll());
    return m_process.state() == QProcess::NotRunning && m_process.exitStatus() == QProcess::NormalExit
        && m_process.exitCode() == 0 && m_output.contains(QLatin1String("[  PASSED  ] 1 test"));
}

void ChildProcess::killHard()
{
    m_process.kill();
    m_process.waitForFinished(5000);
}

bool ChildProcess::isChild(const char* role)
{
    return qEnvironmentVariable("VELURIA_CHILD_ROLE") == QLatin1String(role);
}
