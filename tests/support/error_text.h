#ifndef TESTS_SUPPORT_ERROR_TEXT_H
#define TESTS_SUPPORT_ERROR_TEXT_H

#include <functional>
#include <string>

// The text of the exception that `action` throws; empty when it throws none.
std::string ErrorText(const std::function<void()>& action);

#endif
