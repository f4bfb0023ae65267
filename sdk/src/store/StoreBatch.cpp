#include "sdk/store/StoreBatch.h"

#include "sdk/store/ContentStore.h"

#include <QThreadPool>

#include <atomic>
#include <mutex>

StoreBatch::StoreBatch(const ContentStore& store, std::function<bool()> shouldStop,
                       std::function<void(qint64 bytes)> advanced)
    : m_store(store)
    , m_shouldStop(std::move(shouldStop))
    , m_advanced(std::move(advanced))
{ }

ResumableCopy::Outcome StoreBatch::copy(const QList<Entry>& entries)
{
    m_copied = QList<Copied>(entries.size());
    std::atomic<qsizetype> next{0};
    std::atomic<qsizetype> done{0};
    std::atomic_bool failed{false};
    std::mutex mutex;
    auto shouldStop = [&] { return failed.load() || m_shouldStop(); };
    auto advanced = [&](qint64 bytes) {
        std::lock_guard lock(mutex);
        m_advanced(bytes);
    };
    // Each worker takes the next file until none is left: a few threads for
    // the whole folder, whatever its size.
    auto work = [&] {
        for (qsizetype index = next++; index < entries.size() && !shouldStop(); index = next++) {
            const Entry& entry = entries.at(index);
            ResumableCopy copy(entry.source, entry.partial, shouldStop, advanced, ResumableCopy::Durability::Deferred);
            const ResumableCopy::Outcome outcome = copy.run();
            if (outcome == ResumableCopy::Outcome::Done) {
                m_copied[index] = Copied{copy.digest(), copy.size()};
                ++done;
                continue;
            }
            if (outcome == ResumableCopy::Outcome::Failed) {
                std::lock_guard lock(mutex);
                if (!failed.exchange(true))
                    m_failure = Failure{entry.partial, copy.failure(), copy.sourceChanged(), copy.failedOnSource()};
            }
            return;
        }
    };
    QThreadPool pool;
    pool.setMaxThreadCount(int(std::min<qsizetype>(workers, std::max<qsizetype>(1, entries.size()))));
    for (int worker = 0; worker < pool.maxThreadCount(); ++worker)
        pool.start(work);
    pool.waitForDone();
    if (failed)
        return ResumableCopy::Outcome::Failed;
    if (done.load() < entries.size())
        return ResumableCopy::Outcome::Stopped;
    m_staged.reserve(m_staged.size() + entries.size());
    for (qsizetype index = 0; index < entries.size(); ++index)
        m_staged.append({entries.at(index).partial, m_copied.at(index).digest});
    return ResumableCopy::Outcome::Done;
}

QByteArray StoreBatch::stage(const QByteArray& data, const QString& name, QString* failure)
{
    const QByteArray digest = m_store.stage(data, name, failure);
    if (!digest.isNull())
        m_staged.append({m_store.partialPath(name), digest});
    return digest;
}

bool StoreBatch::commit(QString* failure)
{
    if (!m_store.sync(failure))
        return false;
    for (const auto& [partial, digest] : m_staged)
        if (!m_store.place(partial, digest, failure))
            return false;
    return m_store.sync(failure);
}
