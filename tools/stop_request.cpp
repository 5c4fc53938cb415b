#include "tools/stop_request.h"

#include <signal.h>

#include "common/daemon_app.h"

void CatchStopSignals() {
    catch_signal(received_signals(), SIGINT);
    catch_signal(received_signals(), SIGTERM);
}

bool StopRequested() {
    return sigismember(&received_signals(), SIGINT) == 1 ||
           sigismember(&received_signals(), SIGTERM) == 1;
}
