#ifndef BOREALIS_VERSION_H
#define BOREALIS_VERSION_H

// The program's version ("1.0.14"), given once by the build: the help text,
// the greeting and the document's version element all show it.
inline constexpr char kBorealisVersion[] = BOREALIS_VERSION;

#endif
