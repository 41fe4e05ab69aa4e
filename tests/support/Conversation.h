#pragma once

// A model of the whole conversation, in process: random client documents and
// random user events, interleaved with ticks, played through the real
// dispatch and tick against a screen that keeps the action dialog's real
// rules (app/ActionDialogModel) and stands in for the other dialogs. After
// every step it checks what the user was promised:
//
// - consent: an entry with a confirmation message is reported taken only
//   after its own title and message were shown and OK was pressed on them,
//   in the same take or take-all (a forced action past its own deadline
//   excepted);
// - the chosen action is the one acted on, and the choice follows its entry;
// - a take-all takes what was pending when it was pressed, all of it or none;
// - nothing reaches the action dialog while a confirmation, the details or
//   the quiet notice holds it;
// - snoozing is offered only when no deadline is near, the user's snooze
//   choice survives refreshes, and "Close" never snoozes;
// - nothing the client sent is lost: every entry stays pending, is reported,
//   or was withdrawn by the client.
//
// The choices come from a seeded generator (the tests) or from a fuzzer's
// bytes; either way a run is repeatable.

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

class ConversationChoices {
public:
    virtual ~ConversationChoices() = default;
    // A number in [0, n), n > 0.
    virtual unsigned Below(unsigned n) = 0;
    // True once a finite source has nothing more to give.
    virtual bool Exhausted() const = 0;
};

class SeededChoices final : public ConversationChoices {
public:
    explicit SeededChoices(std::uint32_t seed) : engine_(seed) {}
    unsigned Below(unsigned n) override { return std::uniform_int_distribution<unsigned>(0, n - 1)(engine_); }
    bool Exhausted() const override { return false; }

private:
    std::mt19937 engine_;
};

class ByteChoices final : public ConversationChoices {
public:
    ByteChoices(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    unsigned Below(unsigned n) override { return next_ < size_ ? data_[next_++] % n : 0; }
    bool Exhausted() const override { return next_ >= size_; }

private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t next_ = 0;
};

// Plays up to `steps` steps (fewer when the choices run dry). Returns the
// first broken promise, followed by the steps that led to it; empty when
// every promise held. Takes over the program's process-wide state (the
// pending list, the queues, the settings, the clock and the wired screen)
// and leaves it reset.
std::string PlayConversation(ConversationChoices& choices, int steps);
