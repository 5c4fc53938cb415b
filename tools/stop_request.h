#ifndef TOOLS_STOP_REQUEST_H
#define TOOLS_STOP_REQUEST_H

// Ctrl-C and SIGTERM end vela's waiting commands cleanly: the signals only
// set a flag that the waiting loops test, and they end a wait in poll(2).

// Installs the recording handlers for SIGINT and SIGTERM; throws ErrnoError
// when a handler cannot be installed.
void CatchStopSignals();
// True once SIGINT or SIGTERM has arrived.
bool StopRequested();

#endif
