#include "base/Exceptions.h"

#include <utility>

const char* DebuggableException::what() const noexcept {
    return "DebuggableException";
}

ExceptionPL::ExceptionPL(std::string message) : message_(std::move(message)) {}

const char* ExceptionPL::what() const noexcept {
    return message_.c_str();
}
