// SPDX-License-Identifier: Apache-2.0
/** The platform's signals and answers, and what follows from them. */
#include "common/process_flags.hpp"
#include "dbus_handler/platform_reads.hpp"
#include "dbus_handler/platform_services.hpp"
#include "dbus_handler/published_bus.hpp"

#include <sdbusplus/message/native_types.hpp>

#include <functional>
#include <future>
#include <tuple>

namespace vantric::test {

namespace {

using Texts = std::vector<std::string>;
using Strange = std::map<bool, bool>; ///< no type that a property of the platform has
/** In their order in the message, and as often. */
using Properties = std::vector<std::pair<std::string, std::variant<std::string, bool, Strange>>>;

const std::string assembly = "/xyz/openbmc_project/inventory/system/assembly/";
constexpr auto host = "/xyz/openbmc_project/state/host0";
constexpr auto unusable = "1 FRUEventCallback: failed to read message err[stoi]";

class Platform : public PublishedBus {
protected:
    Platform() {
        std::unique_lock lock(dbusReadyMutex);
        EXPECT_TRUE(dbusReadyCond.wait_for(lock, BusClient::patience, [] { return dbusReady; }));
        hostPowerState = HOST_POWER_UNKNOWN;
        TakeLog();
    }

    void EmitHost(const Properties& properties, const std::string& path = host) {
        client.Emit(path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                    std::string("any.Interface"), properties, std::vector<std::string>{});
    }

    void EmitFru(const std::string& name) {
        client.Emit("/xyz/openbmc_project/inventory", "org.freedesktop.DBus.ObjectManager",
                    "InterfacesAdded", sdbusplus::message::object_path(assembly + name));
    }

    /** Returns what was logged about the signals so far: a signal whose log line is known is sent
     *  after them, and they are served in order. */
    Texts Heard() {
        EmitFru("PCIESLOT_FRU");
        Texts log;
        EXPECT_TRUE(client.WaitUntil([&] {
            std::ranges::move(TakeLog(), std::back_inserter(log));
            return std::ranges::find(log, unusable) != log.end();
        }));
        log.erase(std::ranges::find(log, unusable), log.end());
        return log;
    }

    std::string Thermal(const char* property, std::uint16_t id = 5) {
        return Property(CardSensorPath(id), "com.korv.bmc.Thermal.ThermalSensor", property);
    }

    bool Becomes(const std::string& type, std::uint16_t id) {
        return client.WaitUntil([&] { return Thermal("SensorType", id).ends_with(type + "\""); });
    }

    PlatformServices services;
};

struct HostRow {
    Properties properties;
    Texts log;
    std::uint32_t state;
};

TEST_F(Platform, TellsTheHostsPower) {
    const std::string off = "4 TakeHostState: HOST_POWER_OFF";
    const std::string on = "4 TakeHostState: HOST_POWER_ON";
    const std::string state = "xyz.openbmc_project.State.Host.HostState.";
    const HostRow rows[] = {
        {{{"CurrentHostState", state + "TransitioningToOff"}}, {off}, HOST_POWER_OFF},
        {{{"CurrentHostState", state + "Running"}}, {on}, HOST_POWER_ON},
        {{{"CurrentHostState", state + "Off"}}, {}, HOST_POWER_UNKNOWN},
        {{{"RequestedHostTransition", state + "Running"}}, {}, HOST_POWER_UNKNOWN},
        {{{"CurrentHostState", true}, {"Other", false}}, {}, HOST_POWER_UNKNOWN},
        {{{"CurrentHostState", Strange{{true, true}}}}, {}, HOST_POWER_UNKNOWN},
        {{{"Other", Strange{}}, {"CurrentHostState", state + "Running"}}, {on}, HOST_POWER_ON},
        {{{"CurrentHostState", "TransitioningToOff"}, {"CurrentHostState", "Running"}},
         {off, on},
         HOST_POWER_ON},
        {{{"CurrentHostState", "Running"}, {"Z", ""}, {"CurrentHostState", "TransitioningToOff"}},
         {on, off},
         HOST_POWER_OFF},
        {{}, {}, HOST_POWER_UNKNOWN}};
    for (const auto& row : rows) {
        hostPowerState = HOST_POWER_UNKNOWN;
        EmitHost(row.properties);
        EXPECT_EQ(row.log, Heard());
        EXPECT_EQ(row.state, hostPowerState);
    }
    EmitHost({{"CurrentHostState", "Running"}}, std::string(host) + "/below");
    EXPECT_EQ(Texts{on}, Heard());
    EmitHost({{"CurrentHostState", "Running"}}, "/xyz/openbmc_project/state/host1");
    EXPECT_EQ(Texts{}, Heard());
}

TEST_F(Platform, IsHeardOnAfterASignalThatCantBeRead) {
    const auto emitHost = [this](const auto&... values) {
        client.Emit(host, "org.freedesktop.DBus.Properties", "PropertiesChanged", values...);
    };
    const auto emitFru = [this](const auto&... values) {
        client.Emit("/xyz/openbmc_project/inventory", "org.freedesktop.DBus.ObjectManager",
                    "InterfacesAdded", values...);
    };
    const std::string name = "any.Interface";
    const std::string hostLine = "1 HostPowerStatusCB: failed to read message err[sd_bus_";
    const std::string fruLine = "1 FRUEventCallback: failed to read message err[";
    const std::pair<std::function<void()>, std::string> rows[] = {
        {[&] { emitHost(); }, hostLine},
        {[&] { emitHost(std::int32_t{5}); }, hostLine},
        {[&] { emitHost(name); }, hostLine},
        {[&] { emitHost(name, std::string("CurrentHostState")); }, hostLine},
        {[&] {
             emitHost(name, std::map<std::string, std::string>{{"CurrentHostState", "Off"}});
         },
         hostLine},
        {[&] { emitHost(sdbusplus::message::object_path("/any"), Properties{}); }, hostLine},
        {[&] { emitHost(name, std::vector{std::tuple(name, name)}); }, hostLine},
        {[&] { emitFru(); }, fruLine + "sd_bus_message_read_basic string"},
        {[&] { emitFru(std::string("no path")); }, fruLine + "sd_bus_message_read_basic string"},
    };
    for (const auto& [emit, line] : rows) {
        emit();
        const auto log = Heard();
        ASSERT_EQ(1U, log.size()) << line;
        EXPECT_TRUE(log[0].starts_with(line)) << log[0];
    }
    EXPECT_EQ(HOST_POWER_UNKNOWN, hostPowerState);
    emitHost(name, Properties{{"CurrentHostState", "Running"}}); // what follows isn't looked at
    EXPECT_EQ(1U, Heard().size());
    EXPECT_EQ(HOST_POWER_ON, hostPowerState);
}

TEST_F(Platform, RetypesTheSensorsOfACardThatTurnsOutToBeOcp) {
    Do(dbusDataInsert, CardSensor());
    auto optics = CardSensor(SENSOR_KIND_THERMAL_PROBE, 6);
    optics.sensor.entityType = 200;
    Do(dbusDataInsert, optics);
    auto other = CardSensor(SENSOR_KIND_THERMAL_PROBE, 7);
    other.sensor.entityType = 1;
    Do(dbusDataInsert, other);
    Sent();
    services.Set(assembly + "PCIESLOT3_FRU", "Plain card");
    EmitFru("PCIESLOT3_FRU");
    ASSERT_TRUE(client.WaitUntil([&] { return !services.TakeReads().empty(); }));
    EXPECT_EQ(Texts{}, Changes(CardSensorPath(5)));

    services.Set(assembly + "PCIESLOT3_FRU", "An OCP card");
    EmitFru("PCIESLOT3_FRU");
    const std::string types = "com.korv.bmc.Thermal.ThermalSensor.dev_types.";
    ASSERT_TRUE(Becomes("NDC_ASIC", 5));
    ASSERT_TRUE(Becomes("NDC_OPTICS", 6));
    Texts changes;
    for (const auto& signal : Sent()) {
        if (signal.path == CardSensorPath(5) && signal.member == "PropertiesChanged") {
            changes.push_back(signal.body.substr(signal.body.find('{')));
        }
    }
    EXPECT_EQ((Texts{"{\"SensorType\": \"" + types + "NDC_ASIC\"}, []",
                     "{\"DeviceType\": \"OCP3\"}, []"}),
              changes)
        << "the instance is 151 as before";
    EXPECT_EQ("\"" + types + "UNKNOWN\"", Thermal("SensorType", 7));

    objects.UpdateSensorType(3);
    EXPECT_EQ(std::vector<Signal>{}, Sent()) << "once is enough";
    // The counters have gone on, and the memory of the path has not.
    Do(dbusDataInsert, CardSensor(SENSOR_KIND_THERMAL_PROBE, 8));
    EXPECT_EQ("152", Thermal("Instance", 8));
    objects.Clear({card, 0, CLEAR_SENSORS});
    Do(dbusDataInsert, CardSensor());
    EXPECT_EQ("151", Thermal("Instance"));
}

TEST_F(Platform, RetypesByWhatTheSensorFirstWasSinceTheReset) {
    for (const bool reset : {true, false}) {
        services.Set(assembly + "PCIESLOT3_FRU", "Plain card");
        auto optics = CardSensor();
        optics.sensor.entityType = 200;
        Do(dbusDataInsert, optics);
        objects.Clear({card, 0, CLEAR_SENSORS});
        if (reset) {
            publisher.ResetNumbering().LogFailure(LOG_LEVEL_ERROR);
            Sent();
        }
        Do(dbusDataInsert, CardSensor());
        services.Set(assembly + "PCIESLOT3_FRU", "OCP");
        objects.UpdateSensorType(3);
        EXPECT_TRUE(Becomes(reset ? "NDC_ASIC" : "NDC_OPTICS", 5));
        objects.Clear({card, 0, CLEAR_SENSORS});
        objects.ForgetNumbering({});
    }
}

TEST_F(Platform, IsAskedForTheModelWhenASensorComes) {
    services.Set(assembly + "PCIESLOT3_FRU", "OCP");
    Do(dbusDataInsert, CardSensor());
    EXPECT_EQ(Texts{"xyz.openbmc_project.EntityManager " + assembly +
                    "PCIESLOT3_FRU xyz.openbmc_project.Inventory.Decorator.Asset Model"},
              services.TakeReads());
    EXPECT_TRUE(Thermal("SensorType").ends_with(".NDC_ASIC\""));
    EXPECT_EQ("\"OCP3\"", Thermal("DeviceType"));
    services.Set(assembly + "PCIESLOT3_FRU", std::uint32_t{5});
    EXPECT_EQ("", getFRUPropertyVal(3, "Model"));
    TakeLog();
    EXPECT_EQ("", getFRUPropertyVal(4, "Model"));
    const auto log = TakeLog();
    ASSERT_EQ(1U, log.size());
    EXPECT_TRUE(log[0].starts_with("4 getFRUPropertyVal: FRU Dbus is not having details for "
                                   "slot[4]: sd_bus_call"))
        << log[0];
}

TEST_F(Platform, RetypesASensorWhoseCardSaysSoWhileItIsCreated) {
    services.Set(assembly + "PCIESLOT3_FRU", "Plain card");
    services.InNextRead([this] {
        services.Set(assembly + "PCIESLOT3_FRU", "OCP");
        objects.UpdateSensorType(3);
    });
    Do(dbusDataInsert, CardSensor());
    EXPECT_TRUE(Becomes("NDC_ASIC", 5));
}

TEST_F(Platform, NamesTheSlotOfAFru) {
    const std::pair<const char*, const char*> rows[] = {
        {"PCIESLOT12_FRU", "12"},    {"PCIESLOT12", "12"},       {"PCIESLOT7_FRU", "7"},
        {"PCIESLOT7", "7"},          {"PCIESLOT7x_FRU", "7"},    {"PCIESLOT263_FRU", "7"},
        {"PCIESLOT_7_FRU", nullptr}, {"PCIESLOTx_FRU", nullptr}, {"SLOT7_FRU", nullptr}};
    for (const std::uint8_t slot : {7, 12}) {
        auto request = CardSensor();
        request.deviceLdid = "NIC.Slot." + std::to_string(slot);
        request.objectPath += "_slot" + std::to_string(slot);
        request.slot = slot;
        Do(dbusDataInsert, request);
        // Without a model a line comes in the log, at any time: a thread of its own reads it.
        services.Set(assembly + "PCIESLOT" + std::to_string(slot) + "_FRU", "Plain card");
    }
    services.TakeReads();
    for (const auto& [name, slot] : rows) {
        EmitFru(name);
        Heard();
        if (slot != nullptr) {
            Texts reads;
            EXPECT_TRUE(client.WaitUntil([&] { return !(reads = services.TakeReads()).empty(); }));
            const auto fru = std::string("PCIESLOT") + slot + "_FRU";
            EXPECT_NE(std::string::npos, reads.at(0).find(fru)) << name;
        }
    }
    EmitFru("PCIESLOT7_FRU"); // a read of another slot would come before this one's
    ASSERT_TRUE(client.WaitUntil([&] { return !services.TakeReads().empty(); }));
}

TEST_F(Platform, KnowsUdids) {
    const std::string slot = "/com/korv/bmc/arp/arp/slot/slot3";
    services.Set(slot,
                 PlatformServices::Pairs{
                     {"0x1D", "upper"}, {"0x1d", "first"}, {"0x1d", "second"}, {"0x0", "nil"}});
    EXPECT_EQ("first", BusUdidReader().getUDIDPropertyVal(3, 29));
    EXPECT_EQ("nil", BusUdidReader().getUDIDPropertyVal(3, 0));
    EXPECT_EQ("", BusUdidReader().getUDIDPropertyVal(3, 13));
    EXPECT_EQ("com.korv.bmc.arp.arp " + slot + " com.korv.bmc.arp.arp UDIDInfo",
              services.TakeReads().at(0));
    services.Set(slot, PlatformServices::Pairs{});
    EXPECT_EQ("", BusUdidReader().getUDIDPropertyVal(3, 29));
    services.Set(slot, "text");
    EXPECT_EQ("", BusUdidReader().getUDIDPropertyVal(3, 29));
    EXPECT_EQ(Texts{}, TakeLog());
    EXPECT_EQ("", BusUdidReader().getUDIDPropertyVal(9, 29));
    const auto log = TakeLog();
    ASSERT_EQ(1U, log.size());
    EXPECT_TRUE(log[0].starts_with("4 getUDIDPropertyVal: UDID dbus is not having details for "
                                   "slot[9]: sd_bus_call"))
        << log[0];
}

TEST_F(Platform, MayRetypeAndResetWhileReadingsCome) {
    services.Set(assembly + "PCIESLOT3_FRU", "OCP");
    std::vector<std::future<void>> senders;
    for (int i = 0; i < 4; ++i) {
        senders.push_back(std::async(std::launch::async, [this] {
            for (int round = 0; round < 10; ++round) {
                objects.UpdateSensorType(3);
                EXPECT_EQ(publisher.ResetNumbering().ExecRet(), 0);
                EXPECT_EQ(publisher.InsertSensor(CardSensor()).ExecRet(), 0);
                EXPECT_EQ(publisher.SetSensorValue(Reading(round)).ExecRet(), 0);
                EXPECT_EQ(publisher.Clear({card, 3, CLEAR_SENSORS}).ExecRet(), 0);
            }
        }));
    }
    senders.clear(); // waits for them
    Sent();
    EXPECT_TRUE(Object(sensorsRoot, CardSensorPath()).empty());
}

} // namespace

} // namespace vantric::test
