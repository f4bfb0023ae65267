#include "sdk/base/ServiceThread.h"

#include "sdk/base/Database.h"

ServiceThread::ServiceThread()
    : m_thread([this] { run(); })
{ }

ServiceThread::~ServiceThread()
{
    finishAndStop();
}

void ServiceThread::post(Task task)
{
    {
        std::lock_guard lock(m_mutex);
        if (m_stopping)
            return;
        m_tasks.push_back(std::move(task));
    }
    m_wake.notify_one();
}

void ServiceThread::finishAndStop()
{
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_one();
    if (m_thread.joinable() && m_thread.get_id() != std::this_thread::get_id())
        m_thread.join();
}

Database* ServiceThread::database(const QString& folder, QString* failure)
{
    if (!m_database || m_database->folder() != folder) {
        m_database.reset();
        m_database = Database::open(folder, failure);
    }
    return m_database.get();
}

void ServiceThread::run()
{
    for (;;) {
        Task task;
        {
            std::unique_lock lock(m_mutex);
            m_wake.wait(lock, [this] { return m_stopping || !m_tasks.empty(); });
            if (m_tasks.empty())
                break;
            task = std::move(m_tasks.front());
            m_tasks.pop_front();
        }
        task(*this);
    }
    m_database.reset();
}
