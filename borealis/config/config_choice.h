#ifndef BOREALIS_CONFIG_CONFIG_CHOICE_H
#define BOREALIS_CONFIG_CONFIG_CHOICE_H

#include <initializer_list>
#include <string>
#include <vector>

// Every choice class of the document keeps its option texts in one table
// shared by all its instances. The table is filled when the first instance is
// made; later instances find it filled and use it as it is.
const std::vector<std::string>* SharedOptions(std::vector<std::string>& table,
                                              std::initializer_list<const char*> options);

// The same for a choice's numbers (one per option).
const std::vector<int>* SharedNumbers(std::vector<int>& table, std::initializer_list<int> numbers);

#endif
