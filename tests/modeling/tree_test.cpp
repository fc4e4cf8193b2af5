#include "modeling/tree_builder.hpp"
#include "told_card.hpp"
#include "tree_text.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <random>

namespace vantric::test {
namespace {

TEST(PDRTree, TakesTheShapeThatTheAssociationsTell) {
    const struct {
        const char* what;
        ToldCard card;
        const char* tree;
    } cases[] = {
        {"no association", ToldCard(), "none"},
        {"a network card", NetworkCard(),
         "1.68.1[1.144.1[2.144.1[2.300.1[3.300.1[3.202.1]] 2.300.2]]]"},
        {"nothing contained", ToldCard().Physical(1, {68, 1, 0}, {}), "1.68.1"},
        {"the second container has no known place",
         ToldCard().Physical(1, {68, 1, 0}, {{144, 1, 1}}).Physical(9, {60, 4, 8}, {{66, 1, 9}}),
         "1.68.1[1.144.1 9.60.4[9.66.1]]"},
        {"a container is looked for in the container that it names",
         ToldCard().Physical(1, {68, 1, 0}, {{144, 1, 1}}).Physical(2, {144, 1, 7}, {{300, 1, 2}}),
         "1.68.1[1.144.1 2.144.1[2.300.1]]"},
        {"a contained entity is found by the association's container, not its own",
         ToldCard().Physical(1, {68, 1, 0}, {{144, 1, 5}}).Physical(2, {144, 1, 1}, {}),
         "1.68.1[1.144.1[2.144.1]]"},
        {"an association in two records",
         ToldCard()
             .Physical(1, {68, 1, 0}, {{144, 1, 1}})
             .Physical(2, {144, 1, 1}, {{300, 1, 2}})
             .Physical(2, {144, 1, 1}, {{300, 2, 2}}),
         "1.68.1[1.144.1[2.144.1[2.300.1] 2.144.1[2.300.2]]]"},
        {"a container that contains itself",
         ToldCard().Physical(1, {68, 1, 1}, {{68, 1, 1}}).Physical(1, {68, 1, 1}, {{68, 1, 1}}),
         "1.68.1[1.68.1 1.68.1[1.68.1]]"},
        {"a logical association makes no node",
         ToldCard().Logical(1, {68, 1, 0}, {{144, 1, 1}}).Physical(2, {60, 1, 0}, {{66, 1, 2}}),
         "2.60.1[2.66.1]"},
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
    constexpr Entity otherKind{301, 1, 2};
    constexpr Entity cable{187, 1, 2};
    const struct {
        const char* what;
        std::vector<Entity> listed;
        const char* connectedTo;
    } cases[] = {
        {"port first", {port1, cable}, "2.300.1"},
        {"the nearest port counts", {port1, port2, cable}, "2.300.2"},
        {"cable first", {cable, port1}, "none"},
        {"the port isn't in the tree", {port1, {300, 7, 2}, cable}, "none"},
        {"other entities don't count", {port2, otherKind, cable}, "2.300.2"},
        {"the cable isn't in the tree", {port1, {187, 2, 2}}, "2.300.2"},
    };
    for (const auto& [what, listed, connectedTo] : cases) {
        EntityTree tree;
        BuildTree(tree, ToldCard()
                            .Physical(2, {144, 1, 1}, {port1, port2, otherKind, cable})
                            .Logical(4, {187, 9, 9}, {port2, cable})
                            .Logical(5, {187, 9, 9}, listed)
                            .data->entityAssociations);
        EXPECT_EQ(Text(tree.FindNode({2, 187, 1})->logicalConnectionTo), connectedTo) << what;
    }
}

TEST(PDRTree, NodesOfOneKeyAreFoundInTheOrderOfAWalk) {
    // Few keys and many shapes, so that most searches have several answers to choose from.
    std::mt19937 random(20240607);
    const auto below = [&random](std::size_t limit) {
        return static_cast<std::uint16_t>(random() % limit);
    };
    for (int round = 0; round < 60; ++round) {
        EntityTree tree;
        std::vector<PDRTree*> nodes;
        const std::size_t reach = round % 3 == 0 ? 2 : 200; // chains, and bushes
        while (nodes.size() < 200) {
            const auto back = nodes.empty() ? 0 : below(std::min(nodes.size(), reach));
            PDRTree* parent = nodes.empty() ? nullptr : nodes[nodes.size() - 1 - back];
            nodes.push_back(tree.Add(parent, {below(2), below(2), below(3)}, 0));
        }
        for (int count = 0; count < 50; ++count) {
            tree.Renumber(*nodes[below(nodes.size())], below(3));
        }
        for (std::uint16_t instance = 0; instance < 4; ++instance) {
            for (const EntityKey& key : {EntityKey{0, 0, instance},
                                         {0, 1, instance},
                                         {1, 0, instance},
                                         {1, 1, instance}}) {
                ASSERT_EQ(tree.FindNode(key), FirstMatch(tree.Root(), key)) << "round " << round;
            }
        }
    }
}

TEST(PDRTree, WithoutAMatchTheRootTakesThePlace) {
    EntityTree tree;
    EXPECT_EQ(tree.FindNodeOrRoot({1, 68, 1}), nullptr);
    BuildTree(tree, NetworkCard().data->entityAssociations);
    EXPECT_EQ(tree.FindNodeOrRoot({9, 9, 9}), tree.Root());
    EXPECT_EQ(Text(tree.FindNodeOrRoot({3, 202, 1})), "3.202.1");
}

TEST(PDRTree, IsBuiltSearchedAndFreedInTimeHoweverDeepItIs) {
    // As much as an endpoint may send: one chain, and all that it contains besides has one key.
    constexpr std::uint16_t depth = 16000;
    ToldCard card;
    for (std::uint16_t level = 0; level < depth; ++level) {
        const auto next = static_cast<std::uint16_t>(level + 1);
        std::vector<Entity> contained(16, Entity{300, 1, 0});
        contained.push_back({144, 1, next});
        card.Physical(next, {144, 1, level}, contained);
        for (std::size_t index = 0; index < 16; ++index) {
            card.data->entityAssociations.back()->containedEntities[index]->ContainerID = 0;
        }
    }
    const std::clock_t start = std::clock();
    EntityTree tree;
    ASSERT_TRUE(BuildTree(tree, card.data->entityAssociations));
    ASSERT_NE(tree.FindNode({depth, 144, 1}), nullptr);
    EXPECT_EQ(tree.FindNode({depth, 144, 1})->position.depth, depth - 1U);
    EXPECT_EQ(tree.FindNode({0, 300, 1})->parent, tree.Root());
    tree.FreeTree();
    EXPECT_EQ(tree.FindNode({0, 300, 1}), nullptr);
    // Of the processor; comparing each node with each other would take minutes.
    EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 30);
}

} // namespace
} // namespace vantric::test
