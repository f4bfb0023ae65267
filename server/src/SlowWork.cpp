#include "SlowWork.h"

#include <QThread>
#include <QThreadPool>

namespace {
QThreadPool& pool()
{
    // Half the cores: the connection threads keep the rest for transfers.
    static QThreadPool* instance = [] {
        auto* p = new QThreadPool;
        p->setMaxThreadCount(qMax(1, QThread::idealThreadCount() / 2));
        return p;
    }();
    return *instance;
}

// One object per asking thread that lives as long as the thread does: the
// pool posts answers to it, never to a connection that may be deleted
// meanwhile on its own thread.
QObject* anchorOfThisThread()
{
    thread_local QObject* anchor = [] {
        auto* object = new QObject;
        QThread* thread = QThread::currentThread();
        QObject::connect(
            thread, &QThread::finished, object, [object] { delete object; }, Qt::DirectConnection);
        return object;
    }();
    return anchor;
}
} // namespace

void SlowWork::start(QObject* context, std::function<void()> work, std::function<void()> then)
{
    QObject* anchor = anchorOfThisThread();
    pool().start([anchor, guard = QPointer<QObject>(context), work = std::move(work), then = std::move(then)] {
        work();
        QMetaObject::invokeMethod(
            anchor,
            [guard, then] {
                if (guard)
                    then();
            },
            Qt::QueuedConnection);
    });
}

void SlowWork::waitForAll()
{
    pool().waitForDone();
}
