// SPDX-License-Identifier: Apache-2.0
/** A card that says what it shouldn't costs itself only: all else goes on. */
#include "support/eventually.hpp"
#include "system/played_server.hpp"

#include <gtest/gtest.h>

namespace vantric::test {
namespace {

constexpr auto twoCards = R"(
cards:
  - slot: 3
    kind: nic
    endpoints: [{eid: 11}]
    sensors:
      - {id: 1, unit: celsius, value: 61}
      - {id: 2, unit: watts, value: 9}
  - slot: 8
    kind: nic
    endpoints: [{eid: 70}]
    sensors: [{id: 1, unit: celsius, value: 47}]
)";

const std::string goodCard = "temperature/NIC_Slot_8_sensorid_1";

class MalformedAnswers : public testing::TestWithParam<std::string> {};

TEST_P(MalformedAnswers, CostTheirCardOnly) {
    PlayedServer server(twoCards);
    const std::string card = "networkdevice/Nic/Slot/3";
    const auto inventories = [&server] {
        const std::string& log = server.Log();
        return CountOf(log, "Inventory successful for slot 3") +
               CountOf(log, "Inventory failed for slot 3");
    };
    server.See("temperature/NIC_Slot_3_sensorid_1 Value=61").Do("malform 11 " + GetParam());
    // The card is taken out and put back, so that its inventory meets it too.
    server.Do("pull 3").Miss(card).Do("plug 3");
    ASSERT_TRUE(Eventually([&] { return inventories() >= 2; })) << server.Log();
    server.Do("set 70 1 48")
        .See(goodCard + " Value=48")
        .Do("set 70 1 47")
        .See(goodCard + " Value=47");
    server.Do("malform 11 none").Do("pull 3").Miss(card).Do("plug 3");
    server.See("temperature/NIC_Slot_3_sensorid_1 Value=61");
}

INSTANTIATE_TEST_SUITE_P(Modes, MalformedAnswers,
                         testing::Values("truncate 0", "truncate 3", "truncate 12", "extend 60000",
                                         "flag 3", "endless", "garbage"));

} // namespace
} // namespace vantric::test
