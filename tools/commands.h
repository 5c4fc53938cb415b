#ifndef TOOLS_COMMANDS_H
#define TOOLS_COMMANDS_H

#include "tools/vela_options.h"

// The commands of vela, one file each. Each returns the exit status (0 when
// done) and throws VelaError for a failure, with the status it calls for.

// find: lists the analyzers announced on the local network.
int RunFind(const VelaOptions& options);
// stream: prints the records as CSV or JSON lines.
int RunStream(const VelaOptions& options);
// log: records into daily CSV files.
int RunLog(const VelaOptions& options);
// get and set: read and write one element of the configuration.
int RunGet(const VelaOptions& options);
int RunSet(const VelaOptions& options);
// zero, span, commit and rollback: the CH4 calibration.
int RunCalibration(const VelaOptions& options);
// watch: a live view in the terminal.
int RunWatch(const VelaOptions& options);
// serve: a live view in web browsers (in builds with an HTTP library).
int RunServe(const VelaOptions& options);

// How long commands wait for the analyzer without --timeout, in seconds.
constexpr double kDefaultTimeout = 5;

#endif
