#include "modeling/entity_tree.hpp"
#include "support/captured_log.hpp"
#include "told_card.hpp"
#include "tree_text.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

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
        while (nodes.size() < 100) {
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

TEST(PDRTree, StaysWithinItsLimitsWhateverACardTells) {
    ToldCard deep;
    ToldCard wide;
    for (std::uint16_t level = 0; level < 4000; ++level) {
        const auto next = static_cast<std::uint16_t>(level + 1);
        deep.Physical(next, {144, 1, level}, {{144, 1, next}});
    }
    for (std::uint16_t record = 0; record < 40; ++record) {
        wide.Physical(record, {68, 1, 0}, std::vector<Entity>(255, Entity{300, 1, 0}));
    }
    for (const auto& [card, found, lost] :
         {std::tuple(deep, EntityKey{64, 144, 1}, EntityKey{}),
          std::tuple(wide, EntityKey{31, 300, 1}, EntityKey{39, 300, 1})}) {
        const CapturedLog log;
        EntityTree tree;
        EXPECT_TRUE(BuildTree(tree, card.data->entityAssociations));
        EXPECT_NE(tree.FindNode(found), nullptr);
        EXPECT_EQ(tree.FindNode(lost), nullptr);
        EXPECT_EQ(log.Messages(2),
                  std::vector<std::string>{"No more than 8192 entities on 128 levels are kept\n"});
    }
}

} // namespace
} // namespace vantric::test
