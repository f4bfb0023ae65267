#pragma once

#include <QString>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

class Database;

// A worker thread that runs tasks one after the other, away from the GUI,
// with its own connection to the database. Tasks hand their results to the
// GUI thread themselves (MainThread::post).
class ServiceThread
{
public:
    using Task = std::function<void(ServiceThread& thread)>;

    ServiceThread();
    ServiceThread(const ServiceThread&) = delete;
    ServiceThread& operator=(const ServiceThread&) = delete;
    // Runs the tasks still queued, then ends the thread.
    ~ServiceThread();

    void post(Task task);
    // Tasks posted after this are dropped.
    void finishAndStop();

    // For tasks: the thread's connection to the database in this folder,
    // opened at first use; null with the reason in failure.
    Database* database(const QString& folder, QString* failure);

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<Task> m_tasks;
    bool m_stopping = false;
    std::unique_ptr<Database> m_database;
    std::thread m_thread;
};
