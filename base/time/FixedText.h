#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/Exceptions.h"

// A whole text longer than the fixed buffer meant to hold it.
class ConstDataCapacityExceeded : public DebuggableException {};
// A piece that no longer fits while a fixed buffer is filled.
class DataOverflow : public DebuggableException {};

// Text assembled in place in a buffer of fixed size, for the short texts of
// a known form (time texts); a text that outgrows its form is an error, not
// a longer text.
template <std::size_t Capacity>
class FixedText {
public:
    FixedText() noexcept = default;
    explicit FixedText(std::string_view text) {
        if (text.size() > Capacity) throw ConstDataCapacityExceeded();
        Append(text);
    }

    void Append(std::string_view piece) {
        if (piece.size() > Capacity - size_) throw DataOverflow();
        if (!piece.empty()) std::memcpy(bytes_ + size_, piece.data(), piece.size());
        size_ += piece.size();
    }
    void Append(char c) { Append(std::string_view(&c, 1)); }
    // Decimal digits, left-padded with zeros to at least minDigits (at most 20).
    void AppendNumber(std::uint64_t value, std::size_t minDigits) {
        char digits[20];
        std::size_t count = 0;
        do {
            digits[sizeof digits - 1 - count++] = static_cast<char>('0' + value % 10);
            value /= 10;
        } while (value != 0);
        while (count < minDigits && count < sizeof digits) digits[sizeof digits - 1 - count++] = '0';
        Append(std::string_view(digits + sizeof digits - count, count));
    }

    std::string_view View() const noexcept { return std::string_view(bytes_, size_); }
    std::size_t Size() const noexcept { return size_; }

private:
    char bytes_[Capacity];
    std::size_t size_ = 0;
};
