/** The platform's services on the bus, as another process meets them. */

#include "bench/bench_process.hpp"
#include "support/bus_client.hpp"
#include "support/private_bus.hpp"

#include <gtest/gtest.h>

namespace {

constexpr const char* scenario =
    "platform-services: true\n"
    "cards:\n"
    "  - slot: 3\n"
    "    kind: nic\n"
    "    model: OCP NIC\n"
    "    endpoints: [{eid: 9}, {eid: 10, medium: i2c, bus-address: 0x1d, udid: UDID-A}, "
    "{eid: 11, medium: i2c, bus-address: 2}]\n"
    "  - {slot: 4, kind: nic, endpoints: [{eid: 12}]}\n";

constexpr const char* entityManager = "xyz.openbmc_project.EntityManager";
constexpr const char* asset = "xyz.openbmc_project.Inventory.Decorator.Asset";
constexpr const char* addresses = "com.korv.bmc.arp.arp";

std::string AssetPath(int slot) {
    return "/xyz/openbmc_project/inventory/system/assembly/PCIESLOT" + std::to_string(slot) +
           "_FRU";
}

class PlatformServices : public testing::Test {
protected:
    /** The bodies of the signals of one kind from one object. */
    std::vector<std::string> Bodies(const std::string& path, const std::string& member) {
        std::vector<std::string> bodies;
        for (const auto& signal : client.Signals()) {
            if (signal.path == path && signal.member == member) {
                bodies.push_back(signal.body);
            }
        }
        return bodies;
    }

    vantric::test::PrivateBus bus;
    test::BenchProcess bench{scenario};
    vantric::test::BusClient client;
};

TEST_F(PlatformServices, TellTheModelOfACard) {
    EXPECT_EQ("\"OCP NIC\"", client.GetProperty(entityManager, AssetPath(3), asset, "Model"));
    EXPECT_THROW(client.GetProperty(entityManager, AssetPath(4), asset, "Model"),
                 std::runtime_error);
}

TEST_F(PlatformServices, TellTheAddressesOfASlot) {
    EXPECT_EQ(
        "[(\"0x1d\", \"UDID-A\"), (\"0x2\", \"\")]",
        client.GetProperty(addresses, "/com/korv/bmc/arp/arp/slot/slot3", addresses, "UDIDInfo"));
    EXPECT_EQ("[]", client.GetProperty(addresses, "/com/korv/bmc/arp/arp/slot/slot4", addresses,
                                       "UDIDInfo"));
}

TEST_F(PlatformServices, SwitchTheHost) {
    EXPECT_EQ("the host is off\n", bench.Control({"host", "off"}).output);
    EXPECT_EQ("the host is on\n", bench.Control({"host", "on"}).output);
    client.Settle(entityManager);
    const auto change = [](const std::string& state) {
        return "\"xyz.openbmc_project.State.Host\", {\"CurrentHostState\": "
               "\"xyz.openbmc_project.State.Host.HostState." +
               state + "\"}, []";
    };
    EXPECT_EQ((std::vector<std::string>{change("TransitioningToOff"), change("Off"),
                                        change("TransitioningToRunning"), change("Running")}),
              Bodies("/xyz/openbmc_project/state/host0", "PropertiesChanged"));
    EXPECT_EQ("benchctl: \"up\" is neither on nor off (host on|off)\n",
              bench.Control({"host", "up"}).errors);
}

TEST_F(PlatformServices, BringUpAFru) {
    EXPECT_EQ("the FRU of slot 4 is there, with model \"OCP 3\"\n",
              bench.Control({"fru", "4", "OCP 3"}).output);
    client.Settle(entityManager);
    const auto added = Bodies("/xyz/openbmc_project/inventory", "InterfacesAdded");
    ASSERT_EQ(1U, added.size());
    EXPECT_EQ("\"" + AssetPath(4) + "\", {\"" + asset + "\": {\"Model\": \"OCP 3\"}}", added[0]);
    EXPECT_EQ("\"OCP 3\"", client.GetProperty(entityManager, AssetPath(4), asset, "Model"));
    EXPECT_EQ("the FRU of slot 3 is there, with model \"OCP NIC\"\n",
              bench.Control({"fru", "3"}).output);
}

TEST(PlatformServicesAlone, AreMissedWhereTheScenarioHasNone) {
    const test::BenchProcess bench("cards: []\n");
    const auto outcome = bench.Control({"host", "off"});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ("benchctl: the scenario doesn't say \"platform-services: true\" (host on|off)\n",
              outcome.errors);
}

} // namespace
