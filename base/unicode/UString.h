#pragma once

// The UTF-8 string kinds that every layer above passes text in.
//
// They are thin types over the standard library. The encoding tag stays in
// every signature so that text in the locale's encoding (plain std::string)
// can never be mistaken for UTF-8. All kinds convert to UStringRef<UTF8>, so a
// function taking a UStringRef<UTF8> accepts any of them.
//
//   UStringRef<UTF8>     non-owning view (like std::string_view)
//   AutoUString<UTF8>    owned text
//   CopiedUString<UTF8>  owned copy of text that came from elsewhere
//   SharedUString<UTF8>  owned, immutable text; copies share one buffer

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

struct UTF8 {};

template <class Encoding> class UStringRef;
template <class Encoding> class AutoUString;
template <class Encoding> class CopiedUString;
template <class Encoding> class SharedUString;

template <>
class UStringRef<UTF8> {
public:
    constexpr UStringRef() noexcept = default;
    constexpr UStringRef(const char* nulTerminated) : view_(nulTerminated) {}
    constexpr UStringRef(const char* data, std::size_t size) : view_(data, size) {}
    constexpr UStringRef(std::string_view view) noexcept : view_(view) {}
    UStringRef(const std::string& text) noexcept : view_(text) {}

    constexpr std::string_view View() const noexcept { return view_; }
    constexpr operator std::string_view() const noexcept { return view_; }
    constexpr const char* Data() const noexcept { return view_.data(); }
    constexpr std::size_t Size() const noexcept { return view_.size(); }
    constexpr bool Empty() const noexcept { return view_.empty(); }
    std::string ToString() const { return std::string(view_); }

    friend constexpr bool operator==(UStringRef a, UStringRef b) noexcept { return a.view_ == b.view_; }
    friend constexpr bool operator!=(UStringRef a, UStringRef b) noexcept { return a.view_ != b.view_; }
    // Code-unit order: char_traits<char> compares bytes as unsigned char.
    friend constexpr bool operator<(UStringRef a, UStringRef b) noexcept { return a.view_ < b.view_; }

private:
    std::string_view view_;
};

namespace unicode_detail {

// Storage shared by the two plain owning kinds.
class OwnedUTF8 {
public:
    OwnedUTF8() = default;
    OwnedUTF8(UStringRef<UTF8> text) : text_(text.View()) {}
    OwnedUTF8(const char* nulTerminated) : text_(nulTerminated) {}
    explicit OwnedUTF8(std::string text) : text_(std::move(text)) {}

    UStringRef<UTF8> Ref() const noexcept { return UStringRef<UTF8>(text_); }
    operator UStringRef<UTF8>() const noexcept { return Ref(); }
    std::string_view View() const noexcept { return text_; }
    const std::string& Str() const noexcept { return text_; }
    std::string& Str() noexcept { return text_; }
    const char* Data() const noexcept { return text_.data(); }
    std::size_t Size() const noexcept { return text_.size(); }
    bool Empty() const noexcept { return text_.empty(); }
    void Append(UStringRef<UTF8> more) { text_.append(more.View()); }

private:
    std::string text_;
};

}  // namespace unicode_detail

template <>
class AutoUString<UTF8> : public unicode_detail::OwnedUTF8 {
public:
    using OwnedUTF8::OwnedUTF8;
    friend bool operator==(const AutoUString& a, const AutoUString& b) noexcept { return a.View() == b.View(); }
    friend bool operator!=(const AutoUString& a, const AutoUString& b) noexcept { return a.View() != b.View(); }
    friend bool operator<(const AutoUString& a, const AutoUString& b) noexcept { return a.View() < b.View(); }
};

template <>
class CopiedUString<UTF8> : public unicode_detail::OwnedUTF8 {
public:
    using OwnedUTF8::OwnedUTF8;
    friend bool operator==(const CopiedUString& a, const CopiedUString& b) noexcept { return a.View() == b.View(); }
    friend bool operator!=(const CopiedUString& a, const CopiedUString& b) noexcept { return a.View() != b.View(); }
    friend bool operator<(const CopiedUString& a, const CopiedUString& b) noexcept { return a.View() < b.View(); }
};

namespace unicode_detail {

// The text of a SharedUString and the count of strings sharing it, in one
// allocation: a store of pending actions holds hundreds of texts, and a
// separate counter and string header would cost more than most of the texts
// themselves. The text is NUL-terminated.
class SharedText {
public:
    static SharedText* Make(std::string_view text);
    // Another string shares the text.
    void Share() noexcept { owners_.fetch_add(1, std::memory_order_relaxed); }
    // A string lets go of the text; the last one frees it.
    void Release() noexcept;
    std::string_view View() const noexcept { return {Chars(), size_}; }

private:
    explicit SharedText(std::size_t size) noexcept : size_(size) {}
    const char* Chars() const noexcept { return reinterpret_cast<const char*>(this + 1); }

    std::atomic<std::size_t> owners_{1};
    std::size_t size_;
};

}  // namespace unicode_detail

template <>
class SharedUString<UTF8> {
public:
    SharedUString() = default;
    SharedUString(UStringRef<UTF8> text)
        : text_(text.Empty() ? nullptr : unicode_detail::SharedText::Make(text.View())) {}
    SharedUString(const char* nulTerminated) : SharedUString(UStringRef<UTF8>(nulTerminated)) {}
    explicit SharedUString(const std::string& text) : SharedUString(UStringRef<UTF8>(text)) {}
    SharedUString(const SharedUString& other) noexcept : text_(other.text_) {
        if (text_) text_->Share();
    }
    SharedUString(SharedUString&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    SharedUString& operator=(SharedUString other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~SharedUString() {
        if (text_) text_->Release();
    }

    std::string_view View() const noexcept { return text_ ? text_->View() : std::string_view(); }
    UStringRef<UTF8> Ref() const noexcept { return UStringRef<UTF8>(View()); }
    operator UStringRef<UTF8>() const noexcept { return Ref(); }
    const char* Data() const noexcept { return View().data(); }
    std::size_t Size() const noexcept { return View().size(); }
    bool Empty() const noexcept { return View().empty(); }
    std::string ToString() const { return std::string(View()); }

    friend bool operator==(const SharedUString& a, const SharedUString& b) noexcept { return a.View() == b.View(); }
    friend bool operator!=(const SharedUString& a, const SharedUString& b) noexcept { return a.View() != b.View(); }
    friend bool operator<(const SharedUString& a, const SharedUString& b) noexcept { return a.View() < b.View(); }

private:
    // Null for the empty text, so default-constructed strings cost nothing.
    unicode_detail::SharedText* text_ = nullptr;
};
