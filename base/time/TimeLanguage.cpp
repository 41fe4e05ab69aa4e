#include "base/time/TimeLanguage.h"

#include <cstddef>
#include <cstdint>

#include "base/time/TimeErrors.h"

namespace {

const char* const kDayNames[] = {"sun", "mon", "tue", "wed", "thu", "fri", "sat"};
const char* const kMonthNames[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                   "jul", "aug", "sep", "oct", "nov", "dec"};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

char Lower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool SameWord(std::string_view word, const char* lowerName) {
    std::size_t i = 0;
    for (; i < word.size() && lowerName[i] != '\0'; ++i) {
        if (Lower(word[i]) != lowerName[i]) return false;
    }
    return i == word.size() && lowerName[i] == '\0';
}

// One production per member function; each consumes its text or throws.
class TimeLanguage {
public:
    explicit TimeLanguage(std::string_view text) : text_(text) {}

    ParsedTimeText Text() {
        ParsedTimeText result;
        Blanks();
        if (pos_ < text_.size() && IsLetter(text_[pos_])) {
            DayName();
            Blanks();
            Expect(',');
            Blanks();
        }
        result.date = Date();
        RequireBlanks();
        result.time = Time();
        if (Blanks() && !AtEnd()) {
            result.zone = Zone();
            result.hasZone = true;
            Blanks();
        }
        if (!AtEnd()) throw ParsingFailure();
        // Existence is judged only once the whole text has the right shape.
        if (!result.date.IsValid()) throw NoSuchDate();
        if (!result.time.IsValid()) throw NoSuchTimeOfDay();
        return result;
    }

private:
    bool AtEnd() const { return pos_ == text_.size(); }

    bool Blanks() {
        const std::size_t start = pos_;
        while (pos_ < text_.size() && (text_[pos_] == ' ' || text_[pos_] == '\t')) ++pos_;
        return pos_ != start;
    }

    void RequireBlanks() {
        if (!Blanks()) throw ParsingFailure();
    }

    void Expect(char c) {
        if (AtEnd() || text_[pos_] != c) throw ParsingFailure();
        ++pos_;
    }

    // minDigits to maxDigits digits, not followed by another digit.
    unsigned Number(std::size_t minDigits, std::size_t maxDigits) {
        unsigned value = 0;
        std::size_t count = 0;
        while (pos_ < text_.size() && IsDigit(text_[pos_])) {
            if (++count > maxDigits) throw ParsingFailure();
            value = value * 10 + static_cast<unsigned>(text_[pos_++] - '0');
        }
        if (count < minDigits) throw ParsingFailure();
        return value;
    }

    // Exactly count digits, whatever follows ("+0200" holds two such fields).
    unsigned Digits(std::size_t count) {
        unsigned value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            if (AtEnd() || !IsDigit(text_[pos_])) throw ParsingFailure();
            value = value * 10 + static_cast<unsigned>(text_[pos_++] - '0');
        }
        return value;
    }

    std::string_view Word() {
        const std::size_t start = pos_;
        while (pos_ < text_.size() && IsLetter(text_[pos_])) ++pos_;
        return text_.substr(start, pos_ - start);
    }

    // Index of the word in the table of lower-case names.
    template <std::size_t N>
    std::size_t Name(const char* const (&names)[N]) {
        const std::string_view word = Word();
        for (std::size_t i = 0; i < N; ++i) {
            if (SameWord(word, names[i])) return i;
        }
        throw ParsingFailure();
    }

    void DayName() { Name(kDayNames); }

    DateRecord Date() {
        const unsigned day = Number(1, 2);
        RequireBlanks();
        const std::size_t month = Name(kMonthNames);
        RequireBlanks();
        const unsigned year = Number(4, 4);
        return DateRecord(day, static_cast<Month>(month + 1), year);
    }

    TimeOfDay Time() {
        const unsigned hour = Number(2, 2);
        Expect(':');
        const unsigned minute = Number(2, 2);
        unsigned second = 0;
        if (!AtEnd() && text_[pos_] == ':') {
            ++pos_;
            second = Number(2, 2);
        }
        return TimeOfDay(static_cast<std::uint8_t>(hour), static_cast<std::uint8_t>(minute),
                         static_cast<std::uint8_t>(second));
    }

    TimeZone Zone() {
        const char sign = text_[pos_];
        if (sign == '+' || sign == '-') {
            ++pos_;
            const unsigned hours = Digits(2);
            if (!AtEnd() && text_[pos_] == ':') ++pos_;
            const unsigned minutes = Number(2, 2);
            if (minutes > 59) throw ParsingFailure();
            const std::int32_t seconds = static_cast<std::int32_t>(hours * 3600 + minutes * 60);
            return TimeZone(sign == '-' ? -seconds : seconds);
        }
        const std::string_view word = Word();
        if (SameWord(word, "gmt") || SameWord(word, "ut") || SameWord(word, "utc") || SameWord(word, "z")) {
            return TimeZone::UTC();
        }
        throw ParsingFailure();
    }

    std::string_view text_;
    std::size_t pos_ = 0;
};

}  // namespace

ParsedTimeText ParseTimeText(std::string_view text) {
    return TimeLanguage(text).Text();
}
