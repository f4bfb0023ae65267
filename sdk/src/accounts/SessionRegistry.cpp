#include "sdk/accounts/SessionRegistry.h"

#include <mutex>
#include <vector>

namespace {

struct Entry
{
    std::weak_ptr<void> token;
    SessionRegistry::Ending ending;
};

struct RegistryState
{
    std::mutex mutex;
    std::vector<Entry> entries;
};

RegistryState& state()
{
    static RegistryState s;
    return s;
}

} // namespace

std::shared_ptr<void> SessionRegistry::add(Ending ending)
{
    auto token = std::make_shared<char>();
    RegistryState& s = state();
    std::lock_guard lock(s.mutex);
    std::erase_if(s.entries, [](const Entry& entry) { return entry.token.expired(); });
    s.entries.push_back(Entry{token, std::move(ending)});
    return token;
}

void SessionRegistry::endAll()
{
    std::vector<Entry> entries;
    {
        RegistryState& s = state();
        std::lock_guard lock(s.mutex);
        entries.swap(s.entries);
    }
    for (const Entry& entry : entries)
        if (!entry.token.expired())
            entry.ending();
}
