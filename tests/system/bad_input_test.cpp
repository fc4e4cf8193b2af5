/** Cards and tables that say what they shouldn't: one thing is dropped, all else goes on. */
#include "support/eventually.hpp"
#include "system/played_server.hpp"

#include <gtest/gtest.h>

namespace vantric::test {
namespace {

constexpr auto valueInterface = "xyz.openbmc_project.Sensor.Value";
constexpr auto goodSensor = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_8_sensorid_1";

/** Two cards: one in slot 3 at EID 11 that is going to misbehave, one in slot 8 at EID 70. */
constexpr auto twoCards = R"(
cards:
  - slot: 3
    kind: nic
    endpoints:
      - {eid: 11}
    sensors:
      - {id: 1, unit: celsius, value: 61}
      - {id: 2, unit: watts, value: 9}
  - slot: 8
    kind: nic
    endpoints:
      - {eid: 70}
    sensors:
      - {id: 1, unit: celsius, value: 47}
)";

constexpr auto otherInventory = "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/3";
constexpr auto otherSensor = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_1";

/** Moves the good card's value and waits for it: the road is open. */
void ExpectTheGoodCardGoesOn(PlayedServer& server) {
    server.Simctl({"set", "70", "1", "48"});
    EXPECT_TRUE(server.WaitForProperty(goodSensor, valueInterface, "Value", "48"));
    server.Simctl({"set", "70", "1", "47"});
    EXPECT_TRUE(server.WaitForProperty(goodSensor, valueInterface, "Value", "47"));
}

TEST(BadInput, CardsThatSayWhatTheyShouldNotDisturbNoOther) {
    PlayedServer server(ReadScenario("bad-input.yaml"));
    ASSERT_TRUE(server.WaitForProperty(goodSensor, valueInterface, "Value", "47"));
    // Each of the others has been through its inventory, in whatever way.
    ASSERT_TRUE(server.WaitForLog("Inventory successful for slot 1"));
    ASSERT_TRUE(server.WaitForLog("PLDM Inventory failed for slot 2"));
    ASSERT_TRUE(server.WaitForLog("PLDM Inventory failed for slot 3"));
    ASSERT_TRUE(server.WaitForLog("Inventory successful for slot 5"));
    ExpectTheGoodCardGoesOn(server);
    EXPECT_FALSE(server.Objects().empty()) << "what a card sent can't be carried by the bus";
}

/** Takes the card out of slot 3 and puts it back. */
void PullAndPlug(PlayedServer& server) {
    server.Simctl({"pull", "3"});
    ASSERT_TRUE(server.WaitForObjects([](const PublishedObjects& objects) {
        return !objects.empty() && !objects.contains(otherInventory);
    }));
    server.Simctl({"plug", "3"});
}

/** How many inventories the card in slot 3 has been through, well or not. */
int InventoriesOfSlot3(PlayedServer& server) {
    const std::string& log = server.Log();
    return CountOf(log, "Inventory successful for slot 3") +
           CountOf(log, "Inventory failed for slot 3");
}

class MalformedAnswers : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(MalformedAnswers, CostTheirCardOnly) {
    PlayedServer server(twoCards);
    ASSERT_TRUE(server.WaitForProperty(otherSensor, valueInterface, "Value", "61"));
    ASSERT_TRUE(server.WaitForProperty(goodSensor, valueInterface, "Value", "47"));
    std::vector<std::string> words{"malform", "11"};
    words.insert(words.end(), GetParam().begin(), GetParam().end());
    server.Simctl(words);
    // The card is taken out and put back, so that its inventory meets it too.
    PullAndPlug(server);
    ASSERT_TRUE(Eventually([&] { return InventoriesOfSlot3(server) >= 2; }));
    ExpectTheGoodCardGoesOn(server);

    // What an inventory was told wrongly stays until the next one.
    server.Simctl({"malform", "11", "none"});
    PullAndPlug(server);
    EXPECT_TRUE(server.WaitForProperty(otherSensor, valueInterface, "Value", "61"));
}

INSTANTIATE_TEST_SUITE_P(Modes, MalformedAnswers,
                         testing::Values(std::vector<std::string>{"truncate", "0"},
                                         std::vector<std::string>{"truncate", "3"},
                                         std::vector<std::string>{"truncate", "12"},
                                         std::vector<std::string>{"extend", "60000"},
                                         std::vector<std::string>{"flag", "3"},
                                         std::vector<std::string>{"endless"},
                                         std::vector<std::string>{"garbage"}),
                         [](const auto& info) {
                             std::string name;
                             for (const auto& word : info.param) {
                                 name += word;
                             }
                             return name;
                         });

TEST(BadInput, TablesThatAreNotGoodChangeNothing) {
    PlayedServer server(twoCards);
    ASSERT_TRUE(server.WaitForProperty(goodSensor, valueInterface, "Value", "47"));
    ASSERT_TRUE(server.WaitForProperty(otherSensor, valueInterface, "Value", "61"));
    for (const char* kind : {"bad-state", "bad-source", "not-attached", "empty"}) {
        server.Simctl({"table", kind});
    }
    ASSERT_TRUE(server.WaitForLog("Invalid discovery state", 2));
    ExpectTheGoodCardGoesOn(server);
    EXPECT_TRUE(server.Objects().contains(otherSensor));
}

TEST(BadInput, AGarbageTableCostsItsEntriesOnly) {
    PlayedServer server(twoCards);
    ASSERT_TRUE(server.WaitForProperty(goodSensor, valueInterface, "Value", "47"));
    server.Simctl({"table", "garbage"});
    ASSERT_TRUE(server.WaitForLog("END_POINT_TABLE_UPDATED", 2));
    server.Simctl({"table"});
    EXPECT_TRUE(server.WaitForProperty(goodSensor, valueInterface, "Value", "47"));
    EXPECT_TRUE(server.WaitForProperty(otherSensor, valueInterface, "Value", "61"));
}

} // namespace
} // namespace vantric::test
