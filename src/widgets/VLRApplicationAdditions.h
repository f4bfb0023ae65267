#pragma once

#include <QtGlobal>

#include <functional>

class VLRModalSession;

// Runs a modal session without a loop of its own: it is asked for its answer
// every 0.1 seconds from the application's event loop, and the handler gets
// the first answer that is not "continue". Everything else keeps running
// meanwhile, timers included.
void vlr_runAsyncModalSessionCompletionHandler(const VLRModalSession& session,
                                               std::function<void(qint64 response)> completionHandler);
