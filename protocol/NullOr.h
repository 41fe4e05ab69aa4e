#pragma once

#include <memory>

#include "base/Exceptions.h"

// Reading the value of an empty optional.
class NullValueAccess : public DebuggableException {};

// An optional field of a message: owns a copy of its value, or nothing.
// Copying copies the value; assigning replaces it. Null() is the one shared
// empty instance per type, so "make this field empty" reads as
// `field = NullOr<T>::Null();`.
template <class T>
class NullOr {
public:
    NullOr() = default;
    NullOr(const T& value) : value_(std::make_unique<T>(value)) {}
    NullOr(const NullOr& other) : value_(other.value_ ? std::make_unique<T>(*other.value_) : nullptr) {}
    NullOr(NullOr&&) noexcept = default;

    NullOr& operator=(const NullOr& other) {
        if (this != &other) {
            value_ = other.value_ ? std::make_unique<T>(*other.value_) : nullptr;
        }
        return *this;
    }
    NullOr& operator=(NullOr&&) noexcept = default;
    NullOr& operator=(const T& value) {
        value_ = std::make_unique<T>(value);
        return *this;
    }

    static const NullOr& Null() {
        static const NullOr empty;
        return empty;
    }

    bool IsNull() const noexcept { return value_ == nullptr; }
    explicit operator bool() const noexcept { return value_ != nullptr; }

    const T& Get() const {
        if (!value_) {
            throw NullValueAccess();
        }
        return *value_;
    }
    T& Get() {
        if (!value_) {
            throw NullValueAccess();
        }
        return *value_;
    }
    const T& operator*() const { return Get(); }
    const T* operator->() const { return &Get(); }

    friend bool operator==(const NullOr& a, const NullOr& b) {
        if (a.IsNull() || b.IsNull()) {
            return a.IsNull() == b.IsNull();
        }
        return *a.value_ == *b.value_;
    }
    friend bool operator!=(const NullOr& a, const NullOr& b) { return !(a == b); }

private:
    std::unique_ptr<T> value_;
};

// A look-up result that may find nothing: points at a value it does not own.
template <class T>
class NullOrConstRef {
public:
    NullOrConstRef() = default;
    NullOrConstRef(const T& value) : value_(&value) {}

    static const NullOrConstRef& Null() {
        static const NullOrConstRef empty;
        return empty;
    }

    bool IsNull() const noexcept { return value_ == nullptr; }
    explicit operator bool() const noexcept { return value_ != nullptr; }

    const T& Get() const {
        if (!value_) {
            throw NullValueAccess();
        }
        return *value_;
    }
    const T& operator*() const { return Get(); }
    const T* operator->() const { return &Get(); }

private:
    const T* value_ = nullptr;
};
