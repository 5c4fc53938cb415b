#include "borealis/config/config_choice.h"

const std::vector<std::string>* SharedOptions(std::vector<std::string>& table,
                                              std::initializer_list<const char*> options) {
    if (table.empty()) {
        table.assign(options.begin(), options.end());
    }
    return &table;
}

const std::vector<int>* SharedNumbers(std::vector<int>& table, std::initializer_list<int> numbers) {
    if (table.empty()) {
        table.assign(numbers.begin(), numbers.end());
    }
    return &table;
}
