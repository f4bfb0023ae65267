#pragma once

#include <QList>

#include <stdexcept>
#include <utility>

// Completion handlers that a fake keeps, so that a test completes them later,
// in any order, with any result, or never.
template <typename Handler> class FakePending
{
public:
    void add(Handler handler) { m_handlers.append(std::move(handler)); }
    int count() const { return int(m_handlers.size()); }
    bool isEmpty() const { return m_handlers.isEmpty(); }
    void clear() { m_handlers.clear(); }

    // Completes the oldest pending call; an empty handler is taken and skipped
    // as the library would.
    template <typename... Args> void complete(Args&&... args) { completeAt(0, std::forward<Args>(args)...); }

    template <typename... Args> void completeAt(int index, Args&&... args)
    {
        if (index < 0 || index >= m_handlers.size())
            throw std::logic_error("no pending completion handler to complete");
        Handler handler = m_handlers.takeAt(index);
        if (handler)
            handler(std::forward<Args>(args)...);
    }

private:
    QList<Handler> m_handlers;
};
