#include "failing_memory.hpp"
#include "modeling/tree_builder.hpp"
#include "support/captured_log.hpp"
#include "told_card.hpp"
#include "tree_text.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

namespace vantric::test {
namespace {

constexpr auto networkCardTree =
    "(1,68,1)[(1,144,1)[(2,144,1)[(2,300,1)[(3,300,1)[(3,202,1)]](2,300,2)]]]";

struct TreeCase {
    const char* what;
    ToldCard card;
    const char* tree;
};

TEST(PDRTree, TakesTheShapeThatTheAssociationsTell) {
    const TreeCase cases[] = {
        {"no association", ToldCard(), "none"},
        {"a network card", NetworkCard(), networkCardTree},
        {"nothing contained", ToldCard().Physical(1, {68, 1, 0}, {}), "(1,68,1)"},
        {"the second container has no known place",
         ToldCard().Physical(1, {68, 1, 0}, {{144, 1, 1}}).Physical(9, {60, 4, 8}, {{66, 1, 9}}),
         "(1,68,1)[(1,144,1)(9,60,4)[(9,66,1)]]"},
        {"a container is looked for in the container that it names",
         ToldCard().Physical(1, {68, 1, 0}, {{144, 1, 1}}).Physical(2, {144, 1, 7}, {{300, 1, 2}}),
         "(1,68,1)[(1,144,1)(2,144,1)[(2,300,1)]]"},
        {"a contained entity is found by the association's container, not its own",
         ToldCard()
             .Physical(1, {68, 1, 0}, {{144, 1, 5}})
             .Physical(2, {144, 1, 1}, {{300, 1, 2}})
             .Physical(3, {144, 1, 5}, {}),
         "(1,68,1)[(1,144,1)[(2,144,1)[(2,300,1)]](3,144,1)]"},
        {"an association in two records",
         ToldCard()
             .Physical(1, {68, 1, 0}, {{144, 1, 1}})
             .Physical(2, {144, 1, 1}, {{300, 1, 2}})
             .Physical(2, {144, 1, 1}, {{300, 2, 2}}),
         "(1,68,1)[(1,144,1)[(2,144,1)[(2,300,1)](2,144,1)[(2,300,2)]]]"},
        {"a container that contains itself",
         ToldCard().Physical(1, {68, 1, 1}, {{68, 1, 1}}).Physical(1, {68, 1, 1}, {{68, 1, 1}}),
         "(1,68,1)[(1,68,1)(1,68,1)[(1,68,1)]]"},
        {"a logical association makes no node",
         ToldCard().Logical(1, {68, 1, 0}, {{144, 1, 1}}).Physical(2, {60, 1, 0}, {{66, 1, 2}}),
         "(2,60,1)[(2,66,1)]"},
    };
    for (const auto& [what, card, expected] : cases) {
        EntityTree tree;
        EXPECT_TRUE(BuildTree(tree, card.data->entityAssociations)) << what;
        EXPECT_EQ(Text(tree.Root()), expected) << what;
    }
}

TEST(PDRTree, LinksACableToThePortThatStandsBeforeIt) {
    constexpr Entity port1{300, 1, 2};
    constexpr Entity port2{300, 2, 2};
    constexpr Entity unknownPort{300, 7, 2};
    constexpr Entity otherKind{301, 1, 2};
    constexpr Entity cable{187, 1, 2};
    struct {
        const char* what;
        std::vector<Entity> listed;
        const char* connectedTo;
    } const cases[] = {
        {"port first", {port1, cable}, "(2,300,1)"},
        {"the nearest port counts", {port1, port2, cable}, "(2,300,2)"},
        {"cable first", {cable, port1}, "none"},
        {"the port isn't in the tree", {port1, unknownPort, cable}, "none"},
        {"other entities don't count", {port2, otherKind, cable}, "(2,300,2)"},
        {"the cable isn't in the tree", {port1, {187, 2, 2}}, "none"},
    };
    for (const auto& [what, listed, connectedTo] : cases) {
        EntityTree tree;
        const auto card = ToldCard()
                              .Physical(2, {144, 1, 1}, {port1, port2, otherKind, cable})
                              .Logical(5, {187, 9, 9}, listed)
                              .Logical(6, {187, 9, 9}, {{300, 1, 2}});
        BuildTree(tree, card.data->entityAssociations);
        EXPECT_EQ(Text(tree.FindNode({2, 187, 1})->logicalConnectionTo), connectedTo) << what;
    }
}

TEST(PDRTree, ACableLosesALinkWhenALaterAssociationHasNoPortForIt) {
    EntityTree tree;
    const auto card = ToldCard()
                          .Physical(2, {144, 1, 1}, {{300, 1, 2}, {187, 1, 2}})
                          .Logical(5, {187, 9, 9}, {{300, 1, 2}, {187, 1, 2}})
                          .Logical(6, {187, 9, 9}, {{187, 1, 2}});
    BuildTree(tree, card.data->entityAssociations);
    EXPECT_EQ(tree.FindNode({2, 187, 1})->logicalConnectionTo, nullptr);
}

TEST(PDRTree, TwoNodesOfOneKeyAreFoundInTheOrderOfAWalk) {
    // Few keys and many shapes, so that most searches have several answers to choose from.
    std::mt19937 random(20240607);
    const auto below = [&random](std::size_t limit) {
        return static_cast<std::uint16_t>(random() % limit);
    };
    for (int round = 0; round < 60; ++round) {
        EntityTree tree;
        std::vector<PDRTree*> nodes;
        const std::size_t reach = round % 3 == 0 ? 2 : 200; // chains, and bushes
        for (int count = 0; count < 200; ++count) {
            PDRTree* parent = nodes.empty()
                                  ? nullptr
                                  : nodes[nodes.size() - 1 - below(std::min(nodes.size(), reach))];
            const EntityKey key{below(2), below(2), below(3)};
            nodes.push_back(tree.Add(parent, key, 0));
        }
        for (int count = 0; count < 50; ++count) {
            tree.Renumber(*nodes[below(nodes.size())], below(3));
        }
        for (std::uint16_t key = 0; key < 16; ++key) {
            const EntityKey wanted{static_cast<std::uint16_t>(key & 1),
                                   static_cast<std::uint16_t>((key >> 1) & 1),
                                   static_cast<std::uint16_t>(key >> 2)};
            ASSERT_EQ(tree.FindNode(wanted), FirstMatch(tree.Root(), wanted)) << "round " << round;
        }
    }
}

TEST(PDRTree, WithoutAMatchTheRootTakesThePlace) {
    EntityTree tree;
    EXPECT_EQ(tree.FindNode({1, 68, 1}), nullptr);
    EXPECT_EQ(tree.FindNodeOrRoot({1, 68, 1}), nullptr);
    BuildTree(tree, NetworkCard().data->entityAssociations);
    EXPECT_EQ(tree.FindNode({9, 9, 9}), nullptr);
    EXPECT_EQ(tree.FindNodeOrRoot({9, 9, 9}), tree.Root());
    EXPECT_EQ(Text(tree.FindNodeOrRoot({3, 202, 1})), "(3,202,1)");
}

TEST(PDRTree, FreesItsShareOfTheRecords) {
    const auto card = NetworkCard().State(1, {300, 1, 2});
    EntityTree tree;
    BuildTree(tree, card.data->entityAssociations);
    tree.Root()->stateSensors = card.data->stateSensors;
    tree.FreeTree();
    EXPECT_EQ(tree.Root(), nullptr);
    EXPECT_EQ(tree.FindNode({1, 68, 1}), nullptr);
    EXPECT_EQ(card.data->stateSensors.front().use_count(), 1);
}

/** All that an endpoint may send: one chain, and what it contains besides has one key. */
ToldCard Hostile(std::uint16_t depth, std::size_t contained) {
    ToldCard card;
    for (std::uint16_t level = 0; level < depth; ++level) {
        const auto next = static_cast<std::uint16_t>(level + 1);
        std::vector<Entity> entities(contained, Entity{300, 1, 0});
        entities.push_back({144, 1, next});
        card.Physical(next, {144, 1, level}, entities);
    }
    for (auto& association : card.data->entityAssociations) {
        for (auto& entity : association->containedEntities) {
            if (entity->ContainedEntityType == 300) {
                entity->ContainerID = 0;
            }
        }
    }
    return card;
}

TEST(PDRTree, IsBuiltSearchedAndFreedInTimeHoweverDeepItIs) {
    const auto card = Hostile(16000, 16);
    const auto start = std::chrono::steady_clock::now();
    EntityTree tree;
    ASSERT_TRUE(BuildTree(tree, card.data->entityAssociations));
    PDRTree* deepest = tree.FindNode({16000, 144, 1});
    ASSERT_NE(deepest, nullptr);
    EXPECT_EQ(deepest->position.depth, 15999U);
    EXPECT_EQ(tree.FindNode({0, 300, 1})->parent, tree.Root());
    tree.FreeTree();
    // Comparing each node with each other would take minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

std::size_t CountNodes(const PDRTree* node) {
    std::size_t count = node != nullptr ? 1 : 0;
    for (std::size_t child = 0; count != 0 && child < node->children.size(); ++child) {
        count += CountNodes(node->children[child].get());
    }
    return count;
}

TEST(PDRTree, StaysWholeWhenMemoryRunsOut) {
    const auto card = NetworkCard();
    std::size_t containersLacking = 0;
    std::size_t containedLacking = 0;
    bool lacking = true;
    for (std::size_t allocations = 0; lacking; ++allocations) {
        const CapturedLog log;
        EntityTree tree;
        bool built = false;
        {
            const FailingMemory memory(allocations);
            built = BuildTree(tree, card.data->entityAssociations);
            lacking = memory.Failed();
        }
        const auto messages = log.Messages(1);
        ASSERT_EQ(messages.size(), lacking ? 1U : 0U) << allocations;
        if (!built) {
            EXPECT_EQ(messages[0].find("Failed to create node for ContainerID["), 0U);
            EXPECT_EQ(tree.FindNode({3, 202, 1}), nullptr);
            ++containersLacking;
        } else if (lacking) {
            EXPECT_EQ(messages[0], "Failed to create node\n");
            EXPECT_EQ(CountNodes(tree.Root()), 6U);
            ++containedLacking;
        } else {
            EXPECT_EQ(Text(tree.Root()), networkCardTree);
        }
        for (const EntityKey& key : {EntityKey{1, 68, 1},
                                     {1, 144, 1},
                                     {2, 144, 1},
                                     {2, 300, 1},
                                     {2, 300, 2},
                                     {3, 300, 1},
                                     {3, 202, 1}}) {
            ASSERT_EQ(tree.FindNode(key), FirstMatch(tree.Root(), key)) << allocations;
        }
    }
    EXPECT_GE(containersLacking, 3U);
    EXPECT_GE(containedLacking, 4U);
}

} // namespace
} // namespace vantric::test
