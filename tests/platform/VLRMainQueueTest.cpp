#include "platform/NotificationDaemonMock.h"
#include "platform/VLRMainQueue.h"

#include <QCoreApplication>
#include <QObject>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>

namespace {

TEST(MainQueueTest, CallsRunLaterInOrderOnTheGuiThread)
{
    QStringList ran;
    VLRMainQueue::dispatchAsync([&] { ran << QStringLiteral("first"); });
    VLRMainQueue::dispatchAfter(0, [&] { ran << QStringLiteral("after 0"); });
    VLRMainQueue::dispatchAsync([&] { ran << QStringLiteral("second"); });
    EXPECT_TRUE(ran.isEmpty());

    std::atomic<QThread*> ranOn{nullptr};
    QThread* worker = QThread::create([&] {
        VLRMainQueue::dispatchAsync([&] { ranOn = QThread::currentThread(); });
        VLRMainQueue::dispatchAfter(20, [&] { ran << QStringLiteral("from the worker, after 20"); });
    });
    worker->start();
    ASSERT_TRUE(worker->wait(10000));
    delete worker;

    ASSERT_TRUE(waitUntil([&] { return ran.size() == 4; }));
    EXPECT_EQ(ran, (QStringList{QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("after 0"),
                                QStringLiteral("from the worker, after 20")}));
    EXPECT_EQ(ranOn.load(), QCoreApplication::instance()->thread());
}

TEST(MainQueueTest, ACallBoundToAnObjectDiesWithIt)
{
    QStringList ran;
    auto context = std::make_unique<QObject>();
    VLRMainQueue::dispatchAsync(context.get(), [&] { ran << QStringLiteral("async"); });
    VLRMainQueue::dispatchAfter(10, context.get(), [&] { ran << QStringLiteral("after"); });
    context.reset();

    auto survivor = std::make_unique<QObject>();
    VLRMainQueue::dispatchAfter(50, survivor.get(), [&] { ran << QStringLiteral("survivor"); });
    ASSERT_TRUE(waitUntil([&] { return !ran.isEmpty(); }));
    EXPECT_EQ(ran, QStringList{QStringLiteral("survivor")});

    // Armed, then its object goes: the timer goes with it.
    auto armed = std::make_unique<QObject>();
    VLRMainQueue::dispatchAfter(30, armed.get(), [&] { ran << QStringLiteral("armed"); });
    QCoreApplication::processEvents();
    armed.reset();
    VLRMainQueue::dispatchAfter(60, [&] { ran << QStringLiteral("end"); });
    ASSERT_TRUE(waitUntil([&] { return ran.size() == 2; }));
    EXPECT_EQ(ran, (QStringList{QStringLiteral("survivor"), QStringLiteral("end")}));
}

} // namespace
