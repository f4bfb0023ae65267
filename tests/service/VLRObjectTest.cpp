#include "fakes/FakeTransfer.h"
#include "fakes/FakeTransferQueue.h"
#include "service/VLRTransferQueue.h"
#include "service/VLRUserSession.h"

#include <gtest/gtest.h>

#include <QThread>

#include <thread>

namespace {

struct Delivery
{
    QString keyPath;
    VLRObject* object;
    vlr::KeyValueChange change;
    void* context;
    QThread* thread;
};

class Recorder : public VLRKeyValueObserver
{
public:
    QList<Delivery> deliveries;
    std::function<void(const Delivery&)> onDelivery;

    void observeValueForKeyPath(const QString& keyPath, VLRObject* object, const vlr::KeyValueChange& change,
                                void* context) override
    {
        deliveries.append({keyPath, object, change, context, QThread::currentThread()});
        if (onDelivery)
            onDelivery(deliveries.last());
    }
};

char tokenA, tokenB;

} // namespace

TEST(VLRObjectTest, RegistrationByKeyPathWithItsTokenAndOptions)
{
    auto transfer = FakeTransfer::make("t1", 1, "/tmp/a");
    Recorder recorder;
    transfer->addObserver(&recorder, "fractionCompleted", vlr::KeyValueObservingOptionNew, &tokenA);
    transfer->addObserver(&recorder, "fractionCompleted", vlr::KeyValueObservingOptionNone, &tokenB);
    transfer->addObserver(&recorder, "paused", vlr::KeyValueObservingOptionNew, &tokenA);
    EXPECT_TRUE(recorder.deliveries.isEmpty());

    transfer->setFractionCompleted(0.25);
    ASSERT_EQ(recorder.deliveries.size(), 2);
    EXPECT_EQ(recorder.deliveries[0].context, &tokenA);
    EXPECT_EQ(recorder.deliveries[0].object, transfer.get());
    EXPECT_EQ(recorder.deliveries[0].change.newValue->toDouble(), 0.25);
    // Without the "new" option the change carries no value.
    EXPECT_EQ(recorder.deliveries[1].context, &tokenB);
    EXPECT_FALSE(recorder.deliveries[1].change.hasNewValue());

    // Removal is by observer, key path and token: the other token stays.
    transfer->removeObserver(&recorder, "fractionCompleted", &tokenA);
    recorder.deliveries.clear();
    transfer->setFractionCompleted(0.5);
    ASSERT_EQ(recorder.deliveries.size(), 1);
    EXPECT_EQ(recorder.deliveries[0].context, &tokenB);
    // Removing what is not registered changes nothing.
    transfer->removeObserver(&recorder, "fractionCompleted", &tokenA);
    transfer->removeObserver(&recorder, "finished", &tokenA);
    EXPECT_EQ(transfer->observationCount(), 2);
}

TEST(VLRObjectTest, InitialDeliveryHappensInsideTheRegistration)
{
    auto queue = std::make_shared<FakeTransferQueue>();
    queue->setTransfers({FakeTransfer::make("t1", 1, "/tmp/a")});
    Recorder recorder;
    queue->addObserver(&recorder, "transfers", vlr::KeyValueObservingOptionInitial, &tokenA);
    ASSERT_EQ(recorder.deliveries.size(), 1);
    EXPECT_FALSE(recorder.deliveries[0].change.hasNewValue());

    queue->addObserver(&recorder, "transfers", vlr::KeyValueObservingOptionInitial | vlr::KeyValueObservingOptionNew,
                       &tokenB);
    ASSERT_EQ(recorder.deliveries.size(), 2);
    EXPECT_EQ(recorder.deliveries[1].change.newValue->value<VLRObjectList>().size(), 1);
}

TEST(VLRObjectTest, AnAbsentValueArrivesAsTheNullPlaceholder)
{
    auto transfer = FakeTransfer::make("t1", 1, "/tmp/a");
    auto queue = std::make_shared<FakeTransferQueue>();
    Recorder recorder;
    transfer->addObserver(&recorder, "error", vlr::KeyValueObservingOptionNew, &tokenA);
    queue->addObserver(&recorder, "currentTransfer", vlr::KeyValueObservingOptionNew, &tokenA);

    transfer->setError(vlr::Error{"D", 1, "broken", {}});
    transfer->setError(std::nullopt);
    queue->setCurrentTransfer(transfer);
    queue->setCurrentTransfer(nullptr);
    ASSERT_EQ(recorder.deliveries.size(), 4);
    EXPECT_EQ(recorder.deliveries[0].change.newValue->value<vlr::Error>().localizedDescription, "broken");
    EXPECT_TRUE(recorder.deliveries[1].change.newValueIsNull());
    EXPECT_EQ(recorder.deliveries[2].change.newValue->value<VLRObjectPtr>(), transfer);
    EXPECT_TRUE(recorder.deliveries[3].change.newValueIsNull());
}

TEST(VLRObjectTest, DeliveryIsSynchronousOnTheChangingThread)
{
    auto transfer = FakeTransfer::make("t1", 1, "/tmp/a");
    Recorder recorder;
    transfer->addObserver(&recorder, "finished", vlr::KeyValueObservingOptionNew, &tokenA);
    QThread* worker = nullptr;
    std::thread thread([&] {
        transfer->setFinished(true);
        worker = QThread::currentThread();
        // Already delivered when the setter returns.
        EXPECT_EQ(recorder.deliveries.size(), 1);
    });
    thread.join();
    ASSERT_EQ(recorder.deliveries.size(), 1);
    EXPECT_EQ(recorder.deliveries[0].thread, worker);
    EXPECT_NE(worker, QThread::currentThread());
}

TEST(VLRObjectTest, AnObserverRemovedDuringADeliveryIsNotToldAndTheObjectSurvivesItsLastOwner)
{
    auto transfer = FakeTransfer::make("t1", 1, "/tmp/a");
    Recorder first, second;
    first.onDelivery = [&](const Delivery&) { transfer->removeObserver(&second, "paused", &tokenB); };
    transfer->addObserver(&first, "paused", vlr::KeyValueObservingOptionNone, &tokenA);
    transfer->addObserver(&second, "paused", vlr::KeyValueObservingOptionNone, &tokenB);
    transfer->setPaused(true);
    EXPECT_EQ(first.deliveries.size(), 1);
    EXPECT_TRUE(second.deliveries.isEmpty());

    // The observer drops the last reference while it is being told.
    Recorder dropper;
    std::shared_ptr<FakeTransfer> owner = transfer;
    transfer.reset();
    dropper.onDelivery = [&](const Delivery&) { owner.reset(); };
    owner->addObserver(&dropper, "finished", vlr::KeyValueObservingOptionNew, &tokenA);
    owner->setFinished(true);
    EXPECT_EQ(dropper.deliveries.size(), 1);
    EXPECT_FALSE(owner);
}
