#ifndef TOOLS_ANALYZER_ACTIONS_H
#define TOOLS_ANALYZER_ACTIONS_H

#include <string>

#include "tools/element_path.h"
#include "tools/exchange.h"

// The actions that both the command line and the browser view offer, each
// run over an open exchange. Each throws VelaError when the analyzer refuses.

// True when `text` is a span gas concentration: a number of ppm above 0.
bool IsConcentration(const std::string& text);
// Runs the calibration step `step` ("zero", "span", "commit" or "rollback";
// a span with the concentration `ppm`) and returns the working zero and span
// before and after, a line each: "ch4zero 0 -> 0.0123\nch4span 1\n". Throws
// VelaError with the analyzer's message when it could not take the step.
std::string CalibrationStep(Exchange& exchange, const std::string& step,
                            const std::string& ppm = "");
// Writes `value` into the element at `path` and returns the element as the
// analyzer then holds it (ElementPath::Find).
std::string SetElement(Exchange& exchange, const ElementPath& path, const std::string& value);
// The element at `path` as ElementPath::Find gives it; throws VelaError when
// the analyzer has no such element.
std::string GetElement(Exchange& exchange, const ElementPath& path);

#endif
