#include "base/unicode/Base64.h"

#include <array>
#include <utility>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Character classes for decoding:
//   0..63  the alphabet (A-Z, a-z, 0-9, "+", "/")
//   kSkip  XML white space: space, tab, CR, LF
//   kPad   "="
//   kBad   every other byte
constexpr std::int8_t kBad = -1, kSkip = -2, kPad = -3;

constexpr std::array<std::int8_t, 256> MakeClasses() {
    std::array<std::int8_t, 256> classes{};
    for (auto& c : classes) c = kBad;
    for (int i = 0; i < 64; ++i) classes[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::int8_t>(i);
    classes[' '] = classes['\t'] = classes['\r'] = classes['\n'] = kSkip;
    classes['='] = kPad;
    return classes;
}

constexpr std::array<std::int8_t, 256> kClasses = MakeClasses();

}  // namespace

void Base64Decoder::Fail() {
    state_ = State::Failed;
    throw Base64DecodeError();
}

void Base64Decoder::Character(char c, std::string& out) {
    const std::int8_t cls = kClasses[static_cast<unsigned char>(c)];
    if (cls == kSkip) return;
    if (cls == kBad) Fail();

    switch (state_) {
    case State::Data:
        if (cls == kPad) {
            // "=" may only stand for the third or fourth character.
            if (count_ < 2) Fail();
            out += static_cast<char>(bits_ >> (count_ == 2 ? 4 : 10));
            if (count_ == 3) out += static_cast<char>(bits_ >> 2);
            state_ = ++count_ == 4 ? State::Done : State::Padding;
            return;
        }
        bits_ = (bits_ << 6) | static_cast<std::uint32_t>(cls);
        if (++count_ == 4) {
            out += static_cast<char>(bits_ >> 16);
            out += static_cast<char>(bits_ >> 8);
            out += static_cast<char>(bits_);
            bits_ = 0;
            count_ = 0;
        }
        return;
    case State::Padding:
        // Only the second "=" of "xx==" can follow.
        if (cls != kPad) Fail();
        state_ = State::Done;
        return;
    case State::Done:
        Fail();  // nothing but white space after the padding
        return;
    case State::Failed:
        Fail();
        return;
    }
}

void Base64Decoder::Feed(std::string_view text, std::string& out) {
    if (state_ == State::Failed) Fail();
    out.reserve(out.size() + text.size() / 4 * 3 + 3);
    for (char c : text) Character(c, out);
}

void Base64Decoder::Finish() {
    if (state_ == State::Failed || state_ == State::Padding || (state_ == State::Data && count_ != 0)) Fail();
}

std::string Base64Decoder::Decode(std::string_view text) {
    Base64Decoder decoder;
    std::string out;
    decoder.Feed(text, out);
    decoder.Finish();
    return out;
}

void Base64Encoder::Feed(std::string_view bytes, std::string& out) {
    out.reserve(out.size() + (bytes.size() + 2) / 3 * 4);
    for (char byte : bytes) {
        bits_ = (bits_ << 8) | static_cast<unsigned char>(byte);
        if (++count_ == 3) {
            out += kAlphabet[(bits_ >> 18) & 0x3F];
            out += kAlphabet[(bits_ >> 12) & 0x3F];
            out += kAlphabet[(bits_ >> 6) & 0x3F];
            out += kAlphabet[bits_ & 0x3F];
            bits_ = 0;
            count_ = 0;
        }
    }
}

void Base64Encoder::Finish(std::string& out) {
    if (count_ == 1) {
        out += kAlphabet[(bits_ >> 2) & 0x3F];
        out += kAlphabet[(bits_ << 4) & 0x3F];
        out += "==";
    } else if (count_ == 2) {
        out += kAlphabet[(bits_ >> 10) & 0x3F];
        out += kAlphabet[(bits_ >> 4) & 0x3F];
        out += kAlphabet[(bits_ << 2) & 0x3F];
        out += '=';
    }
    bits_ = 0;
    count_ = 0;
}

AutoUString<UTF8> Base64Encoder::Encode(std::string_view bytes) {
    Base64Encoder encoder;
    std::string out;
    encoder.Feed(bytes, out);
    encoder.Finish(out);
    return AutoUString<UTF8>(std::move(out));
}
