#pragma once

#include <chrono>

class QNetworkReply;

// Sign-outs whose request to the server is still under way. Signing out
// never waits for the server, but a client that quits right after would
// take the request down with it and leave the token valid there: the
// library's shutdown gives them a short, bounded wait.
class PendingSignOuts
{
public:
    // Tracked until it finishes or is destroyed; GUI thread.
    static void add(QNetworkReply* reply);
    // Runs the GUI thread's events until none is pending or the time is up.
    static void waitForAll(std::chrono::milliseconds limit);
};
