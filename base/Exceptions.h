#pragma once

#include <exception>
#include <string>

// Root of every error the program raises. It carries no text: the type says
// what went wrong, and nothing of it is ever shown to the user.
class DebuggableException : public std::exception {
public:
    const char* what() const noexcept override;
};

// An error whose message is part of the contract (for example the texts of
// the duration reader), so callers and tests can compare it.
class ExceptionPL : public DebuggableException {
public:
    explicit ExceptionPL(std::string message);

    const std::string& Message() const noexcept { return message_; }
    const char* what() const noexcept override;

private:
    std::string message_;
};
