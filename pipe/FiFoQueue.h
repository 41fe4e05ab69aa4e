#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "base/Exceptions.h"

// Front() or TakeFront() on a queue that holds nothing.
class FiFoQueueIsEmpty : public DebuggableException {};

// A plain first-in first-out list (singly linked, head and tail), the
// consumer's side of a locked queue. Appending, splicing and swapping are
// constant-time, so the locked queues hold their lock only for an instant.
template <class T>
class FiFoQueue {
public:
    FiFoQueue() = default;
    ~FiFoQueue() { Clear(); }
    FiFoQueue(const FiFoQueue&) = delete;
    FiFoQueue& operator=(const FiFoQueue&) = delete;
    FiFoQueue(FiFoQueue&& other) noexcept { Swap(other); }
    FiFoQueue& operator=(FiFoQueue&& other) noexcept {
        if (this != &other) {
            Clear();
            Swap(other);
        }
        return *this;
    }

    bool IsEmpty() const noexcept { return head_ == nullptr; }
    std::size_t Size() const noexcept { return size_; }

    void Append(T value) {
        auto node = std::make_unique<Node>(std::move(value));
        Node* last = node.get();
        if (tail_ != nullptr) tail_->next = std::move(node);
        else head_ = std::move(node);
        tail_ = last;
        ++size_;
    }

    T& Front() {
        if (head_ == nullptr) throw FiFoQueueIsEmpty();
        return head_->value;
    }

    T TakeFront() {
        if (head_ == nullptr) throw FiFoQueueIsEmpty();
        std::unique_ptr<Node> first = std::move(head_);
        head_ = std::move(first->next);
        if (head_ == nullptr) tail_ = nullptr;
        --size_;
        return std::move(first->value);
    }

    // Moves every element of `other`, in order, behind this queue's last one.
    void Splice(FiFoQueue& other) noexcept {
        if (other.head_ == nullptr) return;
        if (tail_ != nullptr) tail_->next = std::move(other.head_);
        else head_ = std::move(other.head_);
        tail_ = other.tail_;
        size_ += other.size_;
        other.tail_ = nullptr;
        other.size_ = 0;
    }

    void Swap(FiFoQueue& other) noexcept {
        std::swap(head_, other.head_);
        std::swap(tail_, other.tail_);
        std::swap(size_, other.size_);
    }

    // Unlinks node by node: letting the unique_ptr chain destroy itself would
    // recurse once per element and can overflow the stack of a long queue.
    void Clear() noexcept {
        while (head_ != nullptr) head_ = std::move(head_->next);
        tail_ = nullptr;
        size_ = 0;
    }

private:
    struct Node {
        explicit Node(T v) : value(std::move(v)) {}
        T value;
        std::unique_ptr<Node> next;
    };

    std::unique_ptr<Node> head_;
    Node* tail_ = nullptr;
    std::size_t size_ = 0;
};
