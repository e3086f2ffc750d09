#pragma once

#include "kit/jAllocator.h"

// An ordered tree of unique keys, each with its data, kept balanced by the red-black rules so that
// every insert, find and erase costs O(log n) whatever order the keys arrive in (sorted inserts
// included). Keys are compared with operator< only. Nodes are allocated through the engine
// allocator and registered under "jTree::insert"; a node's address stays valid until that node is
// erased, so erasing one node never invalidates iterators to the others.
template <class K, class D>
class jTree {
public:
    struct Node {
        Node(const K& k, const D& d, Node* p) : key(k), data(d), parent(p) {}

        K key;
        [[no_unique_address]] D data;
        Node* parent;
        Node* left = nullptr;
        Node* right = nullptr;
        bool red = true;
    };

    // Walks the nodes in ascending key order.
    template <class N>
    class Iter {
    public:
        explicit Iter(N* node) : m_node(node) {}
        N& operator*() const { return *m_node; }
        N* operator->() const { return m_node; }
        Iter& operator++()
        {
            m_node = jTree::next(m_node);
            return *this;
        }
        bool operator==(const Iter& other) const { return m_node == other.m_node; }
        bool operator!=(const Iter& other) const { return m_node != other.m_node; }
        N* node() const { return m_node; }

    private:
        N* m_node;
    };
    using iterator = Iter<Node>;
    using const_iterator = Iter<const Node>;

    jTree() = default;
    jTree(const jTree& other) { copy_from(other); }
    jTree(jTree&& other) noexcept { take_from(other); }
    ~jTree() { release(); }

    jTree& operator=(const jTree& other)
    {
        if (this != &other) {
            release();
            copy_from(other);
        }
        return *this;
    }
    jTree& operator=(jTree&& other) noexcept
    {
        if (this != &other) {
            release();
            take_from(other);
        }
        return *this;
    }

    // Inserts key with data and returns its node. When the key is already present nothing changes
    // and the existing node is returned. inserted, when given, tells which of the two happened.
    Node* insert(const K& key, const D& data, bool* inserted = nullptr)
    {
        Node* parent = nullptr;
        Node** link = &m_root;
        while (*link) {
            parent = *link;
            if (key < parent->key) {
                link = &parent->left;
            } else if (parent->key < key) {
                link = &parent->right;
            } else {
                if (inserted)
                    *inserted = false;
                return parent;
            }
        }
        Node* node = jNew<Node>("kit/jTree", __LINE__, "jTree::insert", key, data, parent);
        *link = node;
        ++m_count;
        fix_after_insert(node);
        if (inserted)
            *inserted = true;
        return node;
    }

    // Returns the node holding key, or null.
    Node* find(const K& key) { return find_node(key); }
    const Node* find(const K& key) const { return find_node(key); }

    // Removes the node holding key; returns false (and changes nothing) when the key is absent.
    bool erase(const K& key)
    {
        Node* node = find_node(key);
        if (!node)
            return false;
        erase(node);
        return true;
    }
    // Removes a node of this tree; other nodes keep their addresses.
    void erase(Node* node)
    {
        unlink(node);
        jDelete(node, "kit/jTree", __LINE__, "jTree::erase");
        --m_count;
    }

    int size() const { return m_count; }
    bool empty() const { return m_count == 0; }
    // Frees every node; the tree becomes empty.
    void release()
    {
        free_subtree(m_root);
        m_root = nullptr;
        m_count = 0;
    }
    void clear() { release(); }

    // The node with the smallest key, or null when empty.
    Node* first() const { return m_root ? leftmost(m_root) : nullptr; }
    // The node after node in key order, or null after the last one.
    template <class N>
    static N* next(N* node)
    {
        if (node->right)
            return leftmost(node->right);
        N* up = node->parent;
        while (up && node == up->right) {
            node = up;
            up = up->parent;
        }
        return up;
    }
    // The top of the tree, or null when empty (for walks that need the shape).
    const Node* root() const { return m_root; }

    iterator begin() { return iterator(first()); }
    iterator end() { return iterator(nullptr); }
    const_iterator begin() const { return const_iterator(first()); }
    const_iterator end() const { return const_iterator(nullptr); }

private:
    template <class N>
    static N* leftmost(N* node)
    {
        while (node->left)
            node = node->left;
        return node;
    }

    static bool is_red(const Node* node) { return node && node->red; }

    Node* find_node(const K& key) const
    {
        Node* node = m_root;
        while (node) {
            if (key < node->key)
                node = node->left;
            else if (node->key < key)
                node = node->right;
            else
                return node;
        }
        return nullptr;
    }

    // Puts replacement where node hangs from its parent (or at the root).
    void replace_child(Node* node, Node* replacement)
    {
        Node* parent = node->parent;
        if (!parent)
            m_root = replacement;
        else if (node == parent->left)
            parent->left = replacement;
        else
            parent->right = replacement;
        if (replacement)
            replacement->parent = parent;
    }

    void rotate_left(Node* x)
    {
        Node* y = x->right;
        x->right = y->left;
        if (y->left)
            y->left->parent = x;
        replace_child(x, y);
        y->left = x;
        x->parent = y;
    }

    void rotate_right(Node* x)
    {
        Node* y = x->left;
        x->left = y->right;
        if (y->right)
            y->right->parent = x;
        replace_child(x, y);
        y->right = x;
        x->parent = y;
    }

    // Restores "no red node has a red child" after node was added red.
    void fix_after_insert(Node* node)
    {
        while (is_red(node->parent)) {
            Node* parent = node->parent;
            Node* grand = parent->parent; // a red parent is never the root, so grand exists
            bool parentIsLeft = parent == grand->left;
            Node* uncle = parentIsLeft ? grand->right : grand->left;
            if (is_red(uncle)) {
                parent->red = false;
                uncle->red = false;
                grand->red = true;
                node = grand;
                continue;
            }
            if (node == (parentIsLeft ? parent->right : parent->left)) {
                node = parent;
                parentIsLeft ? rotate_left(node) : rotate_right(node);
                parent = node->parent;
            }
            parent->red = false;
            grand->red = true;
            parentIsLeft ? rotate_right(grand) : rotate_left(grand);
        }
        m_root->red = false;
    }

    // Takes node out of the tree and rebalances. A node with two children is replaced by its
    // successor node itself (relinked, not copied) so that no other node's address changes.
    void unlink(Node* node)
    {
        Node* child;
        Node* childParent;
        bool removedRed;
        if (!node->left || !node->right) {
            child = node->left ? node->left : node->right;
            childParent = node->parent;
            removedRed = node->red;
            replace_child(node, child);
        } else {
            Node* successor = leftmost(node->right);
            removedRed = successor->red;
            child = successor->right;
            if (successor->parent == node) {
                childParent = successor;
            } else {
                childParent = successor->parent;
                replace_child(successor, child);
                successor->right = node->right;
                successor->right->parent = successor;
            }
            replace_child(node, successor);
            successor->left = node->left;
            successor->left->parent = successor;
            successor->red = node->red;
        }
        if (!removedRed)
            fix_after_erase(child, childParent);
    }

    // Restores equal black heights after a black node left the path through parent; child (maybe
    // null) is what took its place.
    void fix_after_erase(Node* child, Node* parent)
    {
        while (child != m_root && !is_red(child)) {
            bool childIsLeft = child == parent->left;
            Node* sibling = childIsLeft ? parent->right : parent->left;
            if (is_red(sibling)) {
                sibling->red = false;
                parent->red = true;
                childIsLeft ? rotate_left(parent) : rotate_right(parent);
                sibling = childIsLeft ? parent->right : parent->left;
            }
            Node* nearNephew = childIsLeft ? sibling->left : sibling->right;
            Node* farNephew = childIsLeft ? sibling->right : sibling->left;
            if (!is_red(nearNephew) && !is_red(farNephew)) {
                sibling->red = true;
                child = parent;
                parent = child->parent;
                continue;
            }
            if (!is_red(farNephew)) {
                nearNephew->red = false;
                sibling->red = true;
                childIsLeft ? rotate_right(sibling) : rotate_left(sibling);
                sibling = childIsLeft ? parent->right : parent->left;
                farNephew = childIsLeft ? sibling->right : sibling->left;
            }
            sibling->red = parent->red;
            parent->red = false;
            farNephew->red = false;
            childIsLeft ? rotate_left(parent) : rotate_right(parent);
            child = m_root;
        }
        if (child)
            child->red = false;
    }

    // The tree is balanced, so the recursion depth stays below 2*log2(n+1).
    static void free_subtree(Node* node)
    {
        if (!node)
            return;
        free_subtree(node->left);
        free_subtree(node->right);
        jDelete(node, "kit/jTree", __LINE__, "jTree::release");
    }

    static Node* clone_subtree(const Node* node, Node* parent)
    {
        if (!node)
            return nullptr;
        Node* copy = jNew<Node>("kit/jTree", __LINE__, "jTree::insert", node->key, node->data, parent);
        copy->red = node->red;
        copy->left = clone_subtree(node->left, copy);
        copy->right = clone_subtree(node->right, copy);
        return copy;
    }

    void copy_from(const jTree& other)
    {
        m_root = clone_subtree(other.m_root, nullptr);
        m_count = other.m_count;
    }

    void take_from(jTree& other)
    {
        m_root = other.m_root;
        m_count = other.m_count;
        other.m_root = nullptr;
        other.m_count = 0;
    }

    Node* m_root = nullptr;
    int m_count = 0;
};
