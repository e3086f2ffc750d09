#pragma once

#include "kit/jTree.h"
#include "kit/jVector.h"

// The (empty) data a set keeps beside each key.
struct _SetData {};

// An ordered set of unique keys on the balanced jTree; iteration yields the keys ascending.
template <class K>
class jSet : public jTree<K, _SetData> {
    using Tree = jTree<K, _SetData>;

public:
    template <class N>
    class Iter {
    public:
        explicit Iter(N* node) : m_node(node) {}
        const K& operator*() const { return m_node->key; }
        const K* operator->() const { return &m_node->key; }
        Iter& operator++()
        {
            m_node = Tree::next(m_node);
            return *this;
        }
        bool operator==(const Iter& other) const { return m_node == other.m_node; }
        bool operator!=(const Iter& other) const { return m_node != other.m_node; }

    private:
        N* m_node;
    };
    using Node = typename Tree::Node;
    using iterator = Iter<Node>;
    using const_iterator = Iter<const Node>;

    // Adds key; returns true when it was new, false when it was already in the set.
    // Returns a set of the items of a vector (each once).
    static jSet of(const jVector<K>& items)
    {
        jSet set;
        for (const K& item : items)
            set.insert(item);
        return set;
    }

    bool insert(const K& key)
    {
        bool inserted = false;
        Tree::insert(key, _SetData{}, &inserted);
        return inserted;
    }
    bool contains(const K& key) const { return Tree::find(key) != nullptr; }

    iterator begin() { return iterator(Tree::first()); }
    iterator end() { return iterator(nullptr); }
    const_iterator begin() const { return const_iterator(Tree::first()); }
    const_iterator end() const { return const_iterator(nullptr); }
};
