#include "tests/support/error_text.h"

#include <exception>

std::string ErrorText(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& error) {
        return error.what();
    }
    return "";
}
