// Intrusive doubly-linked lists: the element carries its own links (one ListHook per list it can
// be in, told apart by a tag type), so insertion order is kept, appending and removing a given
// element take constant time and a list costs nothing per element beyond its two links.
// The lists do not own their elements; ListView is a non-owning range over one of them.
#pragma once

#include <cstddef>
#include <iterator>

namespace vellum {

template <typename Tag>
struct ListHook {
    // Null links mean "in no list of this tag": a linked hook always has both links set.
    ListHook* prev = nullptr;
    ListHook* next = nullptr;

    bool linked() const { return next != nullptr; }
};

// Iterates the elements T (possibly const) of a list of hooks of Tag.
template <typename T, typename Tag>
class ListIterator {
  public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = std::remove_const_t<T>;
    using difference_type = std::ptrdiff_t;
    using pointer = T*;
    using reference = T&;
    using Hook = ListHook<Tag>;

    ListIterator() = default;
    explicit ListIterator(const Hook* at) : at_(const_cast<Hook*>(at)) {}

    T& operator*() const { return *static_cast<T*>(static_cast<value_type*>(at_)); }
    T* operator->() const { return &**this; }
    ListIterator& operator++() {
        at_ = at_->next;
        return *this;
    }
    ListIterator operator++(int) {
        ListIterator before = *this;
        ++*this;
        return before;
    }
    ListIterator& operator--() {
        at_ = at_->prev;
        return *this;
    }
    bool operator==(const ListIterator& other) const { return at_ == other.at_; }
    bool operator!=(const ListIterator& other) const { return at_ != other.at_; }

  private:
    Hook* at_ = nullptr;
};

// A circular list around a sentinel root; the root's links are the list's head and tail.
// Neither copyable nor movable, since the elements point at the root.
template <typename T, typename Tag>
class IntrusiveList {
  public:
    using Hook = ListHook<Tag>;
    using iterator = ListIterator<T, Tag>;
    using const_iterator = ListIterator<const T, Tag>;

    IntrusiveList() { root_.prev = root_.next = &root_; }
    IntrusiveList(const IntrusiveList&) = delete;
    IntrusiveList& operator=(const IntrusiveList&) = delete;

    bool empty() const { return size_ == 0; }
    std::size_t size() const { return size_; }

    iterator begin() { return iterator(root_.next); }
    iterator end() { return iterator(&root_); }
    const_iterator begin() const { return const_iterator(root_.next); }
    const_iterator end() const { return const_iterator(&root_); }

    // The first element, or null when the list is empty.
    T* front() const { return element(root_.next); }
    // The element after `item` (which must be in this list), or null at the end.
    T* after(const T& item) const { return element(hook(item).next); }

    // `item` must not be in any list of this tag.
    void pushBack(T& item) {
        Hook& h = hook(item);
        h.prev = root_.prev;
        h.next = &root_;
        root_.prev->next = &h;
        root_.prev = &h;
        ++size_;
    }
    // Puts `item` (in no list of this tag) right before `next`, an element of this list, or at
    // the end when `next` is null.
    void insertBefore(T& item, T* next) {
        Hook& h = hook(item);
        Hook* const at = next == nullptr ? &root_ : &hook(*next);
        h.prev = at->prev;
        h.next = at;
        at->prev->next = &h;
        at->prev = &h;
        ++size_;
    }
    // The last element, or null when the list is empty.
    T* back() const { return element(root_.prev); }
    // The element before `item` (which must be in this list), or null at the front.
    T* before(const T& item) const { return element(hook(item).prev); }
    // `item` must be in this list; afterwards it is in none.
    void erase(T& item) {
        Hook& h = hook(item);
        h.prev->next = h.next;
        h.next->prev = h.prev;
        h.prev = h.next = nullptr;
        --size_;
    }
    // Turns the list round so that `item` (an element of it) comes last: the elements after it
    // come first, then those up to it, each part in its order. Constant time.
    void rotateToEnd(T& item) {
        Hook& h = hook(item);
        root_.prev->next = root_.next;
        root_.next->prev = root_.prev;
        root_.prev = &h;
        root_.next = h.next;
        h.next->prev = &root_;
        h.next = &root_;
    }
    // Forgets every element without touching them (their links are left as they were): for
    // owners that destroy all elements at once.
    void forgetAll() {
        root_.prev = root_.next = &root_;
        size_ = 0;
    }
    // Exchanges the elements of the two lists in constant time, each keeping its order.
    void swap(IntrusiveList& other) noexcept {
        Hook* const first = empty() ? nullptr : root_.next;
        Hook* const last = root_.prev;
        const std::size_t size = size_;
        adopt(other.empty() ? nullptr : other.root_.next, other.root_.prev, other.size_);
        other.adopt(first, last, size);
    }

  private:
    // Makes first..last (already linked to each other) the whole list; empty for null.
    void adopt(Hook* first, Hook* last, std::size_t size) {
        size_ = size;
        if (first == nullptr) {
            root_.prev = root_.next = &root_;
            return;
        }
        root_.next = first;
        root_.prev = last;
        first->prev = &root_;
        last->next = &root_;
    }

    template <typename, typename>
    friend class ListView;

    static Hook& hook(const T& item) { return const_cast<Hook&>(static_cast<const Hook&>(item)); }
    T* element(const Hook* h) const {
        if (h == &root_)
            return nullptr;
        return static_cast<T*>(const_cast<Hook*>(h));
    }

    Hook root_;
    std::size_t size_ = 0;
};

// A read-only window on a list: iteration, size and first element. T may be const.
template <typename T, typename Tag>
class ListView {
  public:
    using List = IntrusiveList<std::remove_const_t<T>, Tag>;
    using iterator = ListIterator<T, Tag>;

    explicit ListView(const List& list) : list_(&list) {}

    iterator begin() const { return iterator(list_->root_.next); }
    iterator end() const { return iterator(&list_->root_); }
    bool empty() const { return list_->empty(); }
    std::size_t size() const { return list_->size(); }
    T* front() const { return list_->front(); }
    T* back() const { return list_->back(); }

  private:
    const List* list_;
};

}  // namespace vellum
