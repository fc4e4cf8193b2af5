// SPDX-License-Identifier: Apache-2.0
#include "modeling_fixture.hpp"

#include <random>

namespace vantric::test {
namespace {

/** "container.type.instance" with the children in brackets after it. */
std::string Text(const PDRTree* node) {
    if (node == nullptr) {
        return "none";
    }
    std::string text = std::to_string(node->containerID) + "." + std::to_string(node->entityType) +
                       "." + std::to_string(node->entityInstance);
    for (const auto& child : node->children) {
        text += (child == node->children.front() ? "[" : " ") + Text(child.get());
    }
    return node->children.empty() ? text : text + "]";
}

TEST(PDRTree, TakesTheShapeThatTheAssociationsTell) {
    const struct {
        const char* what;
        ToldCard card;
        const char* tree;
    } rows[] = {
        {"no association", ToldCard(), "none"},
        {"a network card", NetworkCard(),
         "1.68.1[1.144.1[2.144.1[2.300.1[3.300.1[3.202.1]] 2.300.2]]]"},
        {"the second container has no known place",
         ToldCard().Physical(1, {68, 1, 0}, {}).Physical(9, {60, 4, 8}, {{66, 1, 9}}),
         "1.68.1[9.60.4[9.66.1]]"},
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
    for (const auto& [what, card, expected] : rows) {
        EntityTree tree;
        EXPECT_TRUE(BuildTree(tree, card.data->entityAssociations)) << what;
        EXPECT_EQ(Text(tree.Root()), expected) << what;
        tree.FreeTree();
        EXPECT_EQ(tree.FindNodeOrRoot({1, 68, 1}), nullptr) << what;
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
    } rows[] = {
        {"the nearest port counts", {port2, port1, cable}, "2.300.1"},
        {"cable first", {cable, port1}, "none"},
        {"the port isn't in the tree", {port1, {300, 7, 2}, cable}, "none"},
        {"other entities don't count", {port1, otherKind, cable}, "2.300.1"},
        {"the cable isn't in the tree", {port1, {187, 2, 2}}, "2.300.2"},
    };
    for (const auto& [what, listed, connectedTo] : rows) {
        EntityTree tree;
        BuildTree(tree, ToldCard()
                            .Physical(2, {144, 1, 1}, {port1, port2, otherKind, cable})
                            .Logical(4, {187, 9, 9}, {port2, cable})
                            .Logical(5, {187, 9, 9}, listed)
                            .data->entityAssociations);
        EXPECT_EQ(Text(tree.FindNode({2, 187, 1})->logicalConnectionTo), connectedTo) << what;
    }
}

/** The first match of a plain depth-first walk. */
PDRTree* FirstMatch(PDRTree* node, const EntityKey& key) {
    if (node->Key() == key) {
        return node;
    }
    for (const auto& child : node->children) {
        if (PDRTree* found = FirstMatch(child.get(), key)) {
            return found;
        }
    }
    return nullptr;
}

TEST(PDRTree, FindsNodesOfOneKeyInTheOrderOfAWalkAndElseTheRoot) {
    // Few keys and many shapes, so that most searches have several answers to choose from.
    std::mt19937 random(20240607);
    const auto below = [&random](std::size_t limit) {
        return static_cast<std::uint16_t>(random() % limit);
    };
    for (int round = 0; round < 60; ++round) {
        EntityTree tree;
        std::vector<PDRTree*> nodes{tree.Add(nullptr, {0, 0, 0}, 0)};
        const std::size_t reach = round % 3 == 0 ? 2 : 100; // chains, and bushes
        while (nodes.size() < 100) {
            PDRTree* parent = nodes[nodes.size() - 1 - below(std::min(nodes.size(), reach))];
            nodes.push_back(tree.Add(parent, {below(2), below(2), below(3)}, 0));
        }
        for (int count = 0; count < 30; ++count) {
            tree.Renumber(*nodes[below(nodes.size())], below(3));
        }
        for (std::uint16_t index = 0; index < 16; ++index) {
            const EntityKey key{static_cast<std::uint16_t>(index / 8),
                                static_cast<std::uint16_t>(index / 4 % 2),
                                static_cast<std::uint16_t>(index % 4)};
            PDRTree* expected = FirstMatch(tree.Root(), key);
            ASSERT_EQ(tree.FindNode(key), expected) << "round " << round;
            ASSERT_EQ(tree.FindNodeOrRoot(key), expected != nullptr ? expected : tree.Root());
        }
    }
}

TEST(PDRTree, StaysWithinItsLimitsWhateverACardTells) {
    ToldCard deep;
    for (std::uint16_t level = 0; level < 4000; ++level) {
        const auto next = static_cast<std::uint16_t>(level + 1);
        deep.Physical(next, {144, 1, level}, {{144, 1, next}});
    }
    ToldCard wide;
    std::vector<Entity> ports;
    for (std::uint16_t port = 1; port <= 255; ++port) {
        ports.push_back({300, port, 0});
    }
    for (std::uint16_t record = 1; record <= 40; ++record) {
        wide.Physical(record, {68, 1, 0}, ports);
    }
    const struct {
        const ToldCard& card;
        EntityKey last; ///< that has a node, with this number of nodes above it
        std::size_t level;
        EntityKey lost; ///< the next
    } rows[] = {{deep, {128, 144, 1}, 127, {129, 144, 1}}, {wide, {32, 300, 255}, 2, {33, 68, 1}}};
    for (const auto& [card, last, level, lost] : rows) {
        const CapturedLog log;
        EntityTree tree;
        EXPECT_TRUE(BuildTree(tree, card.data->entityAssociations));
        ASSERT_NE(tree.FindNode(last), nullptr);
        EXPECT_EQ(tree.FindNode(last)->place.size(), level);
        EXPECT_EQ(tree.FindNode(lost), nullptr);
        EXPECT_EQ(log.Messages(2), Texts{"No more than 8192 entities on 128 levels are kept\n"});
    }
}

} // namespace
} // namespace vantric::test
