#include "sdk/base/MainThread.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>

void MainThread::post(std::function<void()> work)
{
    QCoreApplication* application = QCoreApplication::instance();
    if (!application) {
        work();
        return;
    }
    QMetaObject::invokeMethod(application, std::move(work), Qt::QueuedConnection);
}

bool MainThread::isCurrent()
{
    const QCoreApplication* application = QCoreApplication::instance();
    return !application || QThread::currentThread() == application->thread();
}
