#include "kit/jTree.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <vector>

#include "kit/jMap.h"
#include "kit/jSet.h"
#include "support/Scenario.h"

namespace {

using IntTree = jTree<int, int>;
using Entries = std::vector<std::pair<int, int>>;

int heightOf(const IntTree::Node* node)
{
    return node ? 1 + std::max(heightOf(node->left), heightOf(node->right)) : 0;
}

} // namespace

using jTreeTest = Scenario;

// Selections are jSets on the tree. Sorted inserts stay within the red-black depth bound; after any
// mix of inserts and erases, tree, set and map agree with std::map (a tree keeps a key's first data,
// a map its last value), a saved copy of a set stays as it was, and erasing never moves a node.
TEST_F(jTreeTest, RandomInsertsAndErasesMatchStdMap)
{
    IntTree tree;
    for (int key = 1000; key < 2000; ++key)
        tree.insert(key, key);
    EXPECT_LE(heightOf(tree.root()), 2.0 * std::log2(tree.size() + 1.0));
    tree.release();
    std::mt19937 random(20261121);
    jSet<int> set;
    jMap<int, int> map;
    std::map<int, int> first;
    std::map<int, int> last;
    for (int step = 0; step < 4000; ++step) {
        int key = static_cast<int>(random() % 300);
        if (random() % 3 == 0) {
            bool present = first.erase(key) == 1;
            last.erase(key);
            EXPECT_EQ(tree.erase(key), present) << "step " << step;
            EXPECT_EQ(set.erase(key), present) << "step " << step;
            EXPECT_EQ(map.erase(key), present) << "step " << step;
        } else {
            bool inserted = false;
            IntTree::Node* node = tree.insert(key, step, &inserted);
            EXPECT_EQ(inserted, first.emplace(key, step).second) << "step " << step;
            EXPECT_EQ(node->data, first[key]) << "step " << step;
            last.insert_or_assign(key, step);
            EXPECT_EQ(set.insert(key), inserted) << "step " << step;
            EXPECT_EQ(map.insert(key, step), inserted) << "step " << step;
        }
    }
    jSet<int> saved;
    saved = set;
    set.release();
    Entries walked, mapped, fromSet;
    for (const IntTree::Node& node : tree)
        walked.emplace_back(node.key, node.data);
    for (auto [key, value] : map)
        mapped.emplace_back(key, value);
    for (int key : saved)
        fromSet.emplace_back(key, first[key]);
    EXPECT_EQ(walked, Entries(first.begin(), first.end()));
    EXPECT_EQ(fromSet, walked);
    EXPECT_EQ(mapped, Entries(last.begin(), last.end()));
    EXPECT_EQ(tree.size(), static_cast<int>(first.size()));
    EXPECT_EQ(set.begin(), set.end());
    const int kept = first.rbegin()->first;
    const IntTree::Node* keptNode = tree.find(kept);
    while (!first.empty()) { // drain in an order unrelated to the keys
        auto it = std::next(first.begin(), static_cast<long>(random() % first.size()));
        EXPECT_TRUE(tree.erase(it->first));
        first.erase(it);
        ASSERT_TRUE(first.count(kept) == 0 || tree.find(kept) == keptNode) << "erasing moved another node";
    }
    EXPECT_EQ(tree.root(), nullptr);
}
