#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGTERM, SIGINT and SIGHUP into a signal on the GUI thread, so that a
// request to stop goes through the application's ordinary termination.
class TerminationSignalWatcher : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignalWatcher(QObject* parent = nullptr);
    ~TerminationSignalWatcher() override;

signals:
    void terminationRequested(int signalNumber);

private:
    QSocketNotifier* m_notifier = nullptr;
};
