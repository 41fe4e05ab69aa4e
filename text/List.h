#pragma once

// A minimal intrusive doubly linked list: a node links itself into a list and
// unlinks itself when destroyed, so a list never holds a dangling member.
// Nodes are neither copied nor moved, because the list points at them.

class List;

class ListNode {
public:
    ListNode() = default;
    ListNode(const ListNode&) = delete;
    ListNode& operator=(const ListNode&) = delete;
    ~ListNode() { Unlink(); }

    ListNode* Next() const noexcept { return next_; }
    bool IsLinked() const noexcept { return list_ != nullptr; }

protected:
    void LinkAtHead(List& list) noexcept;
    void Unlink() noexcept;

private:
    friend class List;
    List* list_ = nullptr;
    ListNode* prev_ = nullptr;
    ListNode* next_ = nullptr;
};

class List {
public:
    List() = default;
    List(const List&) = delete;
    List& operator=(const List&) = delete;
    // Detaches whatever is still linked: process-wide lists may be destroyed
    // at exit before the nodes that refer to them.
    ~List() {
        while (head_ != nullptr) {
            head_->Unlink();
        }
    }

    ListNode* Head() const noexcept { return head_; }
    bool Empty() const noexcept { return head_ == nullptr; }

private:
    friend class ListNode;
    ListNode* head_ = nullptr;
};

inline void ListNode::LinkAtHead(List& list) noexcept {
    Unlink();
    list_ = &list;
    next_ = list.head_;
    if (next_ != nullptr) {
        next_->prev_ = this;
    }
    list.head_ = this;
}

inline void ListNode::Unlink() noexcept {
    if (list_ == nullptr) {
        return;
    }
    if (prev_ != nullptr) {
        prev_->next_ = next_;
    } else {
        list_->head_ = next_;
    }
    if (next_ != nullptr) {
        next_->prev_ = prev_;
    }
    list_ = nullptr;
    prev_ = nullptr;
    next_ = nullptr;
}
