#pragma once

#include "kit/jTree.h"

// The data a map keeps beside each key.
template <class V>
struct _MapData {
    V value{};
};

// An ordered map from unique keys to values on the balanced jTree; iteration runs in ascending key
// order and yields the key and the value of each entry.
template <class K, class V>
class jMap : public jTree<K, _MapData<V>> {
    using Tree = jTree<K, _MapData<V>>;

public:
    // One entry seen through an iterator: for (auto [key, value] : map).
    template <class Value>
    struct Entry {
        const K& key;
        Value& value;
    };

    template <class N, class Value>
    class Iter {
    public:
        explicit Iter(N* node) : m_node(node) {}
        Entry<Value> operator*() const { return {m_node->key, m_node->data.value}; }
        Iter& operator++()
        {
            m_node = Tree::next(m_node);
            return *this;
        }
        bool operator==(const Iter& other) const { return m_node == other.m_node; }
        bool operator!=(const Iter& other) const { return m_node != other.m_node; }
        const K& key() const { return m_node->key; }
        Value& value() const { return m_node->data.value; }

    private:
        N* m_node;
    };
    using Node = typename Tree::Node;
    using iterator = Iter<Node, V>;
    using const_iterator = Iter<const Node, const V>;

    // Returns the value stored under key, or null when the key is absent.
    V* lookup(const K& key)
    {
        Node* node = Tree::find(key);
        return node ? &node->data.value : nullptr;
    }
    const V* lookup(const K& key) const
    {
        const Node* node = Tree::find(key);
        return node ? &node->data.value : nullptr;
    }
    bool contains(const K& key) const { return Tree::find(key) != nullptr; }

    // Stores value under key, replacing the value of an existing entry; returns whether the key
    // was new.
    bool insert(const K& key, const V& value)
    {
        bool inserted = false;
        Node* node = Tree::insert(key, _MapData<V>{}, &inserted);
        node->data.value = value;
        return inserted;
    }
    // Returns the value under key, inserting a default value first when the key is absent.
    V& operator[](const K& key) { return Tree::insert(key, _MapData<V>{})->data.value; }

    iterator begin() { return iterator(Tree::first()); }
    iterator end() { return iterator(nullptr); }
    const_iterator begin() const { return const_iterator(Tree::first()); }
    const_iterator end() const { return const_iterator(nullptr); }
};
