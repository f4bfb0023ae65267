#include "platform/VLRMainQueue.h"

#include <QCoreApplication>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>

TEST(MainQueueTest, CallsRunLaterInOrderOnTheGuiThread)
{
    QStringList ran;
    VLRMainQueue::dispatchAsync([&] { ran << "first"; });
    VLRMainQueue::dispatchAfter(0, [&] { ran << "after 0"; });
    VLRMainQueue::dispatchAsync([&] { ran << "second"; });
    EXPECT_TRUE(ran.isEmpty());

    std::atomic<QThread*> ranOn{nullptr};
    std::unique_ptr<QThread> worker(QThread::create([&] {
        VLRMainQueue::dispatchAsync([&] { ranOn = QThread::currentThread(); });
        VLRMainQueue::dispatchAfter(20, [&] { ran << "from the worker, after 20"; });
    }));
    worker->start();
    ASSERT_TRUE(worker->wait(10000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return ran.size() == 4; }, 10000));
    EXPECT_EQ(ran, QStringList({"first", "second", "after 0", "from the worker, after 20"}));
    EXPECT_EQ(ranOn.load(), QCoreApplication::instance()->thread());
}

TEST(MainQueueTest, ACallBoundToAnObjectDiesWithIt)
{
    QStringList ran;
    auto context = std::make_unique<QObject>();
    VLRMainQueue::dispatchAsync(context.get(), [&] { ran << "async"; });
    VLRMainQueue::dispatchAfter(10, context.get(), [&] { ran << "after"; });
    context.reset();
    // Armed, then its object goes: the timer goes with it.
    auto armed = std::make_unique<QObject>();
    VLRMainQueue::dispatchAfter(30, armed.get(), [&] { ran << "armed"; });
    QCoreApplication::processEvents();
    armed.reset();

    auto survivor = std::make_unique<QObject>();
    VLRMainQueue::dispatchAfter(60, survivor.get(), [&] { ran << "survivor"; });
    // The calls dropped were all due before it.
    ASSERT_TRUE(QTest::qWaitFor([&] { return !ran.isEmpty(); }, 10000));
    EXPECT_EQ(ran, QStringList{"survivor"});
}
