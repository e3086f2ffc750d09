#include "kit/jTree.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "kit/jString.h"
#include "support/Scenario.h"

namespace {

using IntTree = jTree<int, int>;

// Checks the red-black rules on the whole tree: the root is black, no red node has a red child,
// every path from a node down to a missing child passes the same number of black nodes, children
// point back at their parents and keys grow from left to right. Returns "" when all hold.
struct RedBlackCheck {
    std::string problem;
    int blackHeight(const IntTree::Node* node, const IntTree::Node* parent, const int* low, const int* high)
    {
        if (!node)
            return 1;
        if (node->parent != parent)
            problem = "node " + std::to_string(node->key) + " has a wrong parent link";
        if ((low && node->key <= *low) || (high && node->key >= *high))
            problem = "node " + std::to_string(node->key) + " is out of key order";
        if (node->red && ((node->left && node->left->red) || (node->right && node->right->red)))
            problem = "red node " + std::to_string(node->key) + " has a red child";
        int left = blackHeight(node->left, node, low, &node->key);
        int right = blackHeight(node->right, node, &node->key, high);
        if (left != right)
            problem = "black heights differ below " + std::to_string(node->key);
        return left + (node->red ? 0 : 1);
    }
    std::string operator()(const IntTree& tree)
    {
        problem.clear();
        if (tree.root() && tree.root()->red)
            return "the root is red";
        blackHeight(tree.root(), nullptr, nullptr, nullptr);
        return problem;
    }
};

int heightOf(const IntTree::Node* node)
{
    return node ? 1 + std::max(heightOf(node->left), heightOf(node->right)) : 0;
}

std::vector<int> keysInOrder(const IntTree& tree)
{
    std::vector<int> keys;
    for (const IntTree::Node& node : tree)
        keys.push_back(node.key);
    return keys;
}

std::vector<int> keysOf(const std::map<int, int>& reference)
{
    std::vector<int> keys;
    for (const auto& [key, value] : reference)
        keys.push_back(key);
    return keys;
}

} // namespace

using jTreeTest = Scenario;

TEST_F(jTreeTest, IteratesInKeyOrderWhateverTheInsertOrder)
{
    IntTree tree;
    for (int key : {50, 20, 80, 10, 30, 70, 90, 25, 35, 5})
        tree.insert(key, key * 10);
    EXPECT_EQ(keysInOrder(tree), (std::vector<int>{5, 10, 20, 25, 30, 35, 50, 70, 80, 90}));
    EXPECT_EQ(tree.size(), 10);
    EXPECT_EQ(tree.first()->key, 5);
    EXPECT_EQ(IntTree::next(tree.find(35))->key, 50); // up from a right subtree
    EXPECT_EQ(IntTree::next(tree.find(20))->key, 25); // leftmost of the right subtree
    EXPECT_EQ(IntTree::next(tree.find(90)), nullptr);
}

TEST_F(jTreeTest, InsertKeepsTheFirstDataOfADuplicateKey)
{
    IntTree tree;
    bool inserted = false;
    IntTree::Node* first = tree.insert(7, 1, &inserted);
    EXPECT_TRUE(inserted);
    IntTree::Node* again = tree.insert(7, 2, &inserted);
    EXPECT_FALSE(inserted);
    EXPECT_EQ(again, first);
    EXPECT_EQ(again->data, 1);
    EXPECT_EQ(tree.size(), 1);
}

TEST_F(jTreeTest, FindAndEraseOfAbsentKeys)
{
    IntTree tree;
    EXPECT_EQ(tree.find(1), nullptr);
    EXPECT_FALSE(tree.erase(1));
    tree.insert(1, 10);
    tree.insert(3, 30);
    EXPECT_EQ(tree.find(2), nullptr);
    EXPECT_FALSE(tree.erase(2));
    EXPECT_EQ(tree.size(), 2);
    EXPECT_TRUE(tree.erase(1));
    EXPECT_FALSE(tree.erase(1));
    EXPECT_EQ(keysInOrder(tree), std::vector<int>{3});
}

TEST_F(jTreeTest, ErasingANodeKeepsOtherNodesInPlace)
{
    IntTree tree;
    for (int key = 0; key < 64; ++key)
        tree.insert(key, key);
    IntTree::Node* kept = tree.find(33);
    IntTree::Node* successor = tree.find(32);
    tree.erase(tree.find(31)); // an inner node whose successor moves up
    EXPECT_EQ(tree.find(33), kept);
    EXPECT_EQ(tree.find(32), successor);
    EXPECT_EQ(successor->data, 32);
    EXPECT_EQ(RedBlackCheck()(tree), "");
}

TEST_F(jTreeTest, RandomInsertsAndErasesMatchStdMapAndKeepTheRules)
{
    std::mt19937 random(20261121);
    std::uniform_int_distribution<int> keys(0, 299);
    IntTree tree;
    std::map<int, int> reference;
    RedBlackCheck check;
    for (int step = 0; step < 4000; ++step) {
        int key = keys(random);
        if (random() % 3 == 0) {
            EXPECT_EQ(tree.erase(key), reference.erase(key) == 1) << "step " << step;
        } else {
            bool inserted = false;
            tree.insert(key, step, &inserted);
            EXPECT_EQ(inserted, reference.emplace(key, step).second) << "step " << step;
        }
        ASSERT_EQ(check(tree), "") << "after step " << step << " on key " << key;
        ASSERT_EQ(tree.size(), static_cast<int>(reference.size()));
    }
    EXPECT_EQ(keysInOrder(tree), keysOf(reference));
    for (const auto& [key, value] : reference)
        EXPECT_EQ(tree.find(key)->data, value);
    while (!reference.empty()) { // drain in an order unrelated to the keys
        auto it = std::next(reference.begin(), static_cast<long>(random() % reference.size()));
        EXPECT_TRUE(tree.erase(it->first));
        reference.erase(it);
        ASSERT_EQ(check(tree), "");
    }
    EXPECT_EQ(tree.root(), nullptr);
}

TEST_F(jTreeTest, SortedInsertsStayLogarithmicallyShallow)
{
    IntTree ascending;
    IntTree descending;
    const int n = 1000;
    for (int key = 0; key < n; ++key) {
        ascending.insert(key, key);
        descending.insert(n - key, key);
    }
    double limit = 2.0 * std::log2(n + 1.0);
    EXPECT_LE(heightOf(ascending.root()), limit);
    EXPECT_LE(heightOf(descending.root()), limit);
    EXPECT_EQ(RedBlackCheck()(ascending), "");
    EXPECT_EQ(RedBlackCheck()(descending), "");
}

TEST_F(jTreeTest, NodesAreRegisteredAndFreedByRelease)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    IntTree tree;
    for (int key = 0; key < 5; ++key)
        tree.insert(key, key);
    EXPECT_EQ(jMemRegistry::snapshot().count("jTree::insert"), before.count("jTree::insert") + 5);
    tree.erase(2);
    EXPECT_EQ(jMemRegistry::snapshot().count("jTree::insert"), before.count("jTree::insert") + 4);
    tree.release();
    EXPECT_EQ(tree.size(), 0);
    EXPECT_EQ(tree.first(), nullptr);
    EXPECT_EQ(tree.begin(), tree.end());
    EXPECT_EQ(jMemRegistry::snapshot(), before);
}

TEST_F(jTreeTest, CopiesAreIndependentAndMovesTakeTheNodes)
{
    jTree<jString, jString> tree;
    tree.insert("b", "two");
    tree.insert("a", "one");
    jTree<jString, jString> copy(tree);
    tree.erase("a");
    tree.find("b")->data = "changed";
    ASSERT_EQ(copy.size(), 2);
    EXPECT_EQ(copy.first()->data, "one");
    EXPECT_EQ(copy.find("b")->data, "two");
    jTree<jString, jString> moved(std::move(copy));
    EXPECT_EQ(copy.size(), 0);
    EXPECT_EQ(moved.size(), 2);
    copy = moved;
    moved = std::move(tree);
    EXPECT_EQ(moved.size(), 1);
    EXPECT_EQ(copy.size(), 2);
    EXPECT_EQ(moved.find("b")->data, "changed");
}
