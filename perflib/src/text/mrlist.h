#pragma once

#include <cstddef>
#include <iterator>
#include <utility>

/// Doubly linked list, the one container of the system. An end node that is never an element closes the
/// chain; the chain is no ring. A list of pointers does not own what they point to.
template <class T>
class mrList {
    struct Node {
        Node* next = nullptr;
        Node* prev = nullptr;
        T value{};
    };

    template <class V>
    class Position {
      public:
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = std::remove_const_t<V>;
        using difference_type = std::ptrdiff_t;
        using pointer = V*;
        using reference = V&;

        Position() = default;
        explicit Position(Node* node) : m_node(node) {}
        /// A position may be read-only; the way back does not exist.
        operator Position<const V>() const { return Position<const V>(m_node); }

        V& operator*() const { return m_node->value; }
        V* operator->() const { return &m_node->value; }
        Position& operator++() {
            m_node = m_node->next;
            return *this;
        }
        Position& operator--() {
            m_node = m_node->prev;
            return *this;
        }
        bool operator==(const Position& other) const = default;
        explicit operator bool() const { return m_node != nullptr; }

      private:
        friend class mrList;
        Node* m_node = nullptr;
    };

  public:
    using iterator = Position<T>;
    using const_iterator = Position<const T>;

    mrList() : head(new Node), tail(head) {}
    mrList(const mrList& other) : mrList() { append(other); }
    mrList& operator=(const mrList& other) {
        if (this != &other) {
            mrList copy(other);
            swap(copy);
        }
        return *this;
    }
    virtual ~mrList() {
        clear();
        delete tail;
    }

    iterator begin() { return iterator(head); }
    iterator end() { return iterator(tail); }
    const_iterator begin() const { return const_iterator(head); }
    const_iterator end() const { return const_iterator(tail); }

    bool empty() const { return head == tail; }
    /// Counts by walking: there is no stored count.
    int size() const {
        int count = 0;
        for (const Node* node = head; node != tail; node = node->next) {
            ++count;
        }
        return count;
    }

    /// Links a copy of `value` before `pos`; returns its position.
    iterator insert(iterator pos, const T& value) {
        Node* node = new Node{pos.m_node, pos.m_node->prev, value};
        (node->prev != nullptr ? node->prev->next : head) = node;
        pos.m_node->prev = node;
        return iterator(node);
    }
    iterator append(const T& value) { return insert(end(), value); }
    void append(const mrList& other) {
        for (const T& value : other) {
            append(value);
        }
    }

    /// Removes one element; returns the position after it.
    iterator erase(iterator pos) {
        Node* node = pos.m_node;
        Node* next = node->next;
        (node->prev != nullptr ? node->prev->next : head) = next;
        next->prev = node->prev;
        delete node;
        return iterator(next);
    }
    void clear() {
        while (!empty()) {
            erase(begin());
        }
    }

    /// Exchanges the chains: what other objects know of a list's own fields stays where it is.
    void swap(mrList& other) noexcept {
        std::swap(head, other.head);
        std::swap(tail, other.tail);
    }

    /// Merges `other`, sorted by `less` like this list, into this one; `other` ends empty. Of equal elements
    /// those of this list stay first. A list merged into itself stays as it is.
    /// For suites that keep lists sorted.
    void merge(mrList& other, bool (*less)(T&, T&)) {
        if (&other == this) {
            return;
        }
        iterator cursor = begin();
        while (cursor != end() && !other.empty()) {
            if (less(*other.begin(), *cursor)) {
                insert(cursor, *other.begin());
                other.erase(other.begin());
            } else {
                ++cursor;
            }
        }
        while (!other.empty()) {
            append(*other.begin());
            other.erase(other.begin());
        }
    }

  private:
    Node* head;
    Node* tail;
};
