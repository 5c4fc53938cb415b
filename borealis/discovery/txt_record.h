#ifndef BOREALIS_DISCOVERY_TXT_RECORD_H
#define BOREALIS_DISCOVERY_TXT_RECORD_H

#include <cstddef>
#include <map>
#include <string>

// A service's TXT record as keys and values, in ascending key order.
using TxtMap = std::map<std::string, std::string>;

// The TXT record data of `txt`: for each key in ascending order, one length
// byte and the text key "=" value. An entry of one character or less (both
// key and value empty) is left out; the length byte holds the entry's length
// modulo 256. Never fails.
std::string EncodeTxtRecord(const TxtMap& txt);

// The keys and values of the TXT record data `data` of `length` bytes; a
// string without "=" is a key with an empty value, an empty string is
// skipped, and a length byte that runs past the end ends the record. Never
// fails.
TxtMap DecodeTxtRecord(const unsigned char* data, std::size_t length);

#endif
