#pragma once

// Owned NUL-terminated text, the form handed to C interfaces that keep the
// pointer (the X widgets do).

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

template <class Char> class AutoNullTerminated;

// Text in the locale's multibyte encoding. The buffer lives on the heap and a
// move hands it over unchanged, so a pointer already given to a widget stays
// valid while the owner is moved around (a std::string could move its bytes).
template <>
class AutoNullTerminated<char> {
public:
    AutoNullTerminated() : AutoNullTerminated(std::string_view()) {}
    explicit AutoNullTerminated(std::string_view text)
        : size_(text.size()), buffer_(new char[text.size() + 1]) {
        if (size_ != 0) std::memcpy(buffer_.get(), text.data(), size_);
        buffer_[size_] = '\0';
    }
    AutoNullTerminated(const AutoNullTerminated& other) : AutoNullTerminated(other.View()) {}
    AutoNullTerminated& operator=(const AutoNullTerminated& other) {
        if (this != &other) *this = AutoNullTerminated(other);
        return *this;
    }
    // A moved-from owner reads as the empty text.
    AutoNullTerminated(AutoNullTerminated&& other) noexcept
        : size_(std::exchange(other.size_, 0)), buffer_(std::move(other.buffer_)) {}
    AutoNullTerminated& operator=(AutoNullTerminated&& other) noexcept {
        if (this != &other) {
            size_ = std::exchange(other.size_, 0);
            buffer_ = std::move(other.buffer_);
        }
        return *this;
    }

    const char* Get() const noexcept { return buffer_ ? buffer_.get() : ""; }
    // Toolkit interfaces are declared with char* but do not write through it.
    char* Data() noexcept { return buffer_ ? buffer_.get() : empty_; }
    std::size_t Size() const noexcept { return size_; }
    bool Empty() const noexcept { return size_ == 0; }
    std::string_view View() const noexcept { return std::string_view(Get(), size_); }

private:
    std::size_t size_ = 0;
    std::unique_ptr<char[]> buffer_;
    char empty_[1] = {'\0'};
};
