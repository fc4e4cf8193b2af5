#include "failing_memory.hpp"
#include "modeling/tree_builder.hpp"
#include "support/captured_log.hpp"
#include "told_card.hpp"
#include "tree_text.hpp"

#include <gtest/gtest.h>

namespace vantric::test {
namespace {

TEST(PDRTreeInShortMemory, LacksWhatCouldNotBeMadeAndIsWhole) {
    const auto card = ToldCard()
                          .Physical(1, {68, 1, 0}, {{144, 1, 1}})
                          .Physical(2, {144, 1, 1}, {{300, 1, 2}, {300, 2, 2}});
    const std::string whole = "1.68.1[1.144.1[2.144.1[2.300.1 2.300.2]]]";
    const std::vector<std::string> noContainer{
        "Failed to create node for ContainerID[1] and Type[68]\n\n",
        "Failed to create node for ContainerID[2] and Type[144]\n\n"};
    int lackingContainers = 0;
    int lackingEntities = 0;
    for (std::size_t allocations = 0;; ++allocations) {
        const CapturedLog log;
        EntityTree tree;
        allocationsBeforeFailure = allocations;
        const bool built = BuildTree(tree, card.data->entityAssociations);
        const bool failed = allocationsBeforeFailure == never;
        allocationsBeforeFailure = never;
        for (const EntityKey& key :
             {EntityKey{1, 68, 1}, {1, 144, 1}, {2, 144, 1}, {2, 300, 1}, {2, 300, 2}}) {
            ASSERT_EQ(tree.FindNode(key), FirstMatch(tree.Root(), key)) << allocations;
        }
        const auto messages = log.Messages(1);
        ASSERT_EQ(messages.size(), failed ? 1U : 0U) << allocations;
        if (!failed) {
            EXPECT_EQ(Text(tree.Root()), whole);
            break;
        }
        EXPECT_NE(Text(tree.Root()), whole) << allocations;
        EXPECT_EQ(built, messages[0] == "Failed to create node\n") << messages[0];
        if (!built) {
            EXPECT_EQ(messages[0], noContainer[tree.Root() == nullptr ? 0 : 1]);
        }
        ++(built ? lackingEntities : lackingContainers);
    }
    EXPECT_GE(lackingContainers, 2);
    EXPECT_GE(lackingEntities, 3);
}

} // namespace
} // namespace vantric::test
