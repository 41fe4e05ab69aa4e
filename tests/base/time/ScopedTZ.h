#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

// Pins TZ for one test and restores it. POSIX zone strings ("<+03>-3") need no zone files.
class ScopedTZ {
public:
    explicit ScopedTZ(const char* tz) {
        if (const char* old = std::getenv("TZ")) previous_ = old;
        setenv("TZ", tz, 1);
        tzset();
    }
    ~ScopedTZ() {
        previous_ ? setenv("TZ", previous_->c_str(), 1) : unsetenv("TZ");
        tzset();
    }

private:
    std::optional<std::string> previous_;
};
