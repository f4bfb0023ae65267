#include "widgets/VLRApplicationAdditions.h"

#include "platform/VLRMainQueue.h"
#include "widgets/VLRModalSession.h"

namespace {

constexpr int kPollingInterval = 100; // milliseconds

} // namespace

void vlr_runAsyncModalSessionCompletionHandler(const VLRModalSession& session,
                                               std::function<void(qint64 response)> completionHandler)
{
    VLRMainQueue::dispatchAfter(
        kPollingInterval, [session, completionHandler = std::move(completionHandler)]() mutable {
            const qint64 response = session.run();
            if (response == VLRModalSession::VLRModalResponseContinue) {
                vlr_runAsyncModalSessionCompletionHandler(session, std::move(completionHandler));
                return;
            }
            if (completionHandler)
                completionHandler(response);
        });
}
