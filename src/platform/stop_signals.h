#pragma once
// A program that holds half-written files must not simply die when it is asked to stop (the end of
// a session, Ctrl+C, kill): it notes the request, gives up its work, removes what it wrote and then
// ends as the request said.

namespace pl::platform {

// While an object of this class lives, the requests to stop (on POSIX SIGTERM, SIGINT and SIGHUP)
// are only noted. A running child program (runAndWait) is ended at once when one arrives.
class StopRequests {
public:
    StopRequests();
    ~StopRequests();
    StopRequests(const StopRequests&) = delete;
    StopRequests& operator=(const StopRequests&) = delete;
};

// The request that arrived (its signal number), 0 when none did.
int stopRequested();

// Ends the process the way the request that arrived would have; returns when none did.
void endIfStopRequested();

} // namespace pl::platform
