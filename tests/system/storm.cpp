#include "system/storm.hpp"

#include "support/eventually.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <map>
#include <numeric>
#include <sstream>
#include <thread>
#include <utility>

namespace vantric::test {

namespace {

constexpr int sensorCount = 6;
constexpr auto stateSensor = "20";
constexpr std::size_t acceleratorSensors = 4; ///< as the platform's table has it
// How often each sensor is read until the repository was looked at and the sensors read again.
constexpr int reads = 24;
constexpr int readsOfAnAccelerator = 10; ///< which aren't in every cycle
constexpr int highestEid = 250;
constexpr int hostWeight = 6;
constexpr std::chrono::seconds tableInterval{1};

const std::string off = "xyz.openbmc_project.State.Host.HostState.TransitioningToOff";
const std::string slotPath = "/xyz/openbmc_project/inventory/system/assembly/PCIESLOT";

struct Described {
    int slot;
    const char* kind;
    const char* name;
    std::vector<std::pair<int, bool>> endPoints; ///< EID, and whether over VDM
    const char* entity;                          ///< type of the sensors' entity, or none
    bool hasTree = false;
};

const std::vector<Described> described{
    {1, "nic", "NIC_Slot_1_", {{11, true}, {12, false}}, "network-controller", true},
    {2,
     "nic",
     "NIC_Slot_2_",
     {{21, true}, {22, true}, {23, false}, {24, false}},
     "network-controller"},
    {3, "fibre-channel", "FC_Slot_3_", {{31, true}}, "network-controller", true},
    {4, "infiniband", "InfiniBand_Slot_4_", {{41, true}, {42, false}}, nullptr},
    {5, "cxl-memory", "CXLMemory_Slot_5_", {{51, true}, {52, false}}, "memory-module"},
    {6, "accelerator", "ProcAccelerator_Slot_6_1_", {{61, true}}, "gpu"},
    {7, "nic", "NIC_Slot_7_", {{71, false}}, "network-controller", true},
    {9, "embedded-nic", "NIC_Embedded_1_", {{91, true}, {92, true}}, nullptr},
};

/** Entries of the table that are none of a device's. */
constexpr auto strangers = R"(
  - {slot: 20, kind: nic, endpoints: [{eid: 80, endpoint-type: 5}]}
  - {slot: 21, kind: nic, endpoints: [{eid: 81, pldm: false}]}
  - {slot: 22, kind: nic, endpoints: [{eid: 82, slot-type: 1}]}
  - {slot: 23, kind: nic, endpoints: [{eid: 83, medium: none}]}
  - {slot: 24, kind: nic, endpoints: [{eid: 84}], pcie-record: false}
  - {slot: 25, kind: nic, endpoints: [{eid: 85}], class: 2}
  - {slot: 26, kind: accelerator, endpoints: [{eid: 86, endpoint-type: 2}]}
  - {slot: 27, kind: nic, endpoints: [{eid: 87, ldid: NIC.Slot.}]}
  - {slot: 28, kind: nic, endpoints: [{eid: 88, ldid: {hex: "2e 2e ff 00 2e"}, ldid-length: 65535}]}
)";

// Of an endpoint, whose EID comes behind the first word.
constexpr std::array lateOrNoAnswers{"silence", "refuse", "slow 50",
                                     "silence", "refuse", "slow 150"};
constexpr std::array errorAnswers{
    "error-type 1", "fail 1",      "fail 1 0 2",    "fail 1 0 4",    "fail 5 0 5",    "fail 1 2 17",
    "fail 4 2 17",  "fail 5 2 17", "fail 128 2 17", "fail 129 2 17", "fail 200 2 17", "fail 1 2 33",
    "fail 1 2 80",  "fail 1 2 81", "fail 131 4 1",  "fail 1 4 2",    "fail 5 5 2",    "fail 200"};

const std::string notify = "notify PLDMFWUpdateStart$1$FWUpdateStart";
const std::array<std::string, 8> idleCommands{"table bad-state",           "table bad-source",
                                              "table not-attached",        "table empty",
                                              "notify \xff\xfe everybody", "notify \"\" everybody",
                                              notify + "$$ everybody",     notify + " everybody"};
constexpr std::array states{"1", "2", "3", "4"};
constexpr std::array operationalStates{"enabled", "failed", "unavailable"};

template <typename... T>
void TellHost(BusClient& client, const T&... values) {
    client.Emit("/xyz/openbmc_project/state/host0", "org.freedesktop.DBus.Properties",
                "PropertiesChanged", std::string("any.Interface"), values...);
}

template <typename T>
void TellFru(BusClient& client, const T& value) {
    client.Emit("/xyz/openbmc_project/inventory", "org.freedesktop.DBus.ObjectManager",
                "InterfacesAdded", value);
}

template <typename T>
void TellState(BusClient& client, const T& value, const char* property = "CurrentHostState") {
    TellHost(client, std::map<std::string, T>{{property, value}});
}

/** Signals of the platform that say nothing, though some look as if the host went off. */
const std::function<void(BusClient&)> idleSignals[] = {
    [](auto& bus) { TellHost(bus); },
    [](auto& bus) { TellHost(bus, off); },
    [](auto& bus) { TellState(bus, off); },
    [](auto& bus) { TellState(bus, std::variant<std::vector<std::string>>(std::vector{off})); },
    [](auto& bus) { TellState(bus, std::variant<std::string>(off), "RequestedHostTransition"); },
    [](auto& bus) { TellFru(bus, off); },
    [](auto& bus) { TellFru(bus, sdbusplus::message::object_path(slotPath + "_FRU")); },
    [](auto& bus) { TellFru(bus, sdbusplus::message::object_path(slotPath + "x_FRU")); },
};

constexpr std::size_t idleCount = std::size(idleCommands) + std::size(idleSignals);

std::string Text(const Described& card) {
    std::ostringstream text;
    text << "  - slot: " << card.slot << "\n    kind: " << card.kind << "\n    firmware: '1."
         << card.slot << "'\n    fru: {model: M" << card.slot
         << "}\n    pci: {vendor: 1, device: 2}\n    endpoints:\n";
    for (const auto& [eid, vdm] : card.endPoints) {
        text << "      - {eid: " << eid << ", medium: " << (vdm ? "vdm" : "i2c") << ", bdf: " << eid
             << ", bus-address: " << eid;
        if (std::string(card.kind) == "embedded-nic") {
            text << ", ldid: NIC.Embedded." << eid % 10 << "-1-1";
        }
        text << "}\n";
    }
    std::string entity;
    if (card.hasTree) {
        text << "    entities:\n      - type: add-in-card\n        contains:\n          - {type: "
             << card.entity << ", name: chip}\n";
        entity = ", entity: chip";
    } else if (card.entity != nullptr) {
        entity = ", entity: {type: " + std::string(card.entity) + "}";
    }
    text << "    sensors:\n      - {id: 1, repeat: " << sensorCount << ", unit: celsius, value: 40"
         << entity << ", thresholds: {warning-high: 70, critical-high: 90}}\n    state-sensors:\n"
         << "      - {id: " << stateSensor << entity
         << ", members: [{set: health, states: [1, 2, 3, 4], state: 1}]}\n";
    return text.str();
}

/** How many requests each endpoint has answered. */
std::map<int, int> Counts(const PlayedServer& server) {
    std::map<int, int> answered;
    std::istringstream in(server.Simctl({"count"}));
    std::string skipped;
    for (int eid = 0; in >> skipped >> eid;) {
        in >> skipped >> answered[eid];
    }
    return answered;
}

} // namespace

std::string Storm::Scenario() {
    std::string text = "platform-services: true\naccelerator-table:\n"
                       "  - {pci: {vendor: 1, device: 2}, sensors: [1, 2, 3, 4]}\ncards:\n";
    for (const auto& card : described) {
        text += Text(card);
    }
    return text + strangers;
}

Storm::Storm(PlayedServer& server, unsigned seed) : server(server), random(seed) {
    std::vector<int> sensors(sensorCount);
    std::iota(sensors.begin(), sensors.end(), 1);
    for (const auto& card : described) {
        Card known{.slot = card.slot,
                   .name = card.name,
                   .endPoints = {},
                   .hasTree = card.hasTree,
                   .isAccelerator = std::string(card.kind) == "accelerator"};
        for (const auto& [eid, vdm] : card.endPoints) {
            known.endPoints.push_back({eid, vdm, sensors});
        }
        if (known.isAccelerator) {
            known.endPoints.front().sensors.resize(acceleratorSensors);
        }
        cards.push_back(known);
    }
}

void Storm::Blow(int events) {
    const auto kinds = Kinds();
    const int all = std::accumulate(kinds.begin(), kinds.end(), 0,
                                    [](int sum, const Kind& kind) { return sum + kind.weight; });
    for (int event = 0; event < events; ++event) {
        int pick = Below(all);
        auto kind = kinds.begin();
        for (; pick >= kind->weight; ++kind) {
            pick -= kind->weight;
        }
        Send(kind->words());
        // How close events follow each other is part of the storm: half of them at once.
        std::this_thread::sleep_for(std::chrono::milliseconds(std::max(0, Below(200) - 100)));
    }
}

std::vector<Storm::Kind> Storm::Kinds() {
    const auto number = [this](int limit) { return std::to_string(Below(limit)); };
    const auto sensor = [this](const char* command, const auto&... more) {
        const auto& endPoint = AnyEndPoint();
        return Say(command, std::to_string(endPoint.eid), std::to_string(Any(endPoint.sensors)),
                   more...);
    };
    return {
        {10, [] { return Say("table"); }},
        {1, [] { return Say("table", "garbage"); }}, // one that shows no device
        {4, [] { return Say("discovery"); }},
        {12, [this] { return PullOrPlug(); }},
        {8, [this] { return MoveEndPoint(); }},
        // Malformed answers are no part of this: there is no telling what they leave behind.
        {16, [this] { return Fault(Any(lateOrNoAnswers)); }},
        {8, [this] { return Fault(Any(errorAnswers)); }},
        {16, [this] { return Say("recover", AnyEid()); }},
        {hostWeight, [this] { return Say("host", (hostOn = !hostOn) ? "on" : "off"); }},
        {3, [] { return Say("fw-start"); }},
        {3, [] { return Say("fw-stop"); }},
        {11, [this] { return Idle(std::size_t(Below(int(idleCount)))); }},
        {5, [this] { return BringFru(); }},
        {4, [this] { return Say("touch", AnyEid()); }},
        {4, [=] { return sensor("threshold", "critical-high", "9" + number(9)); }},
        {4, [this] { return DropSensor(); }},
        {10, [sensor, number] { return sensor("set", number(100)); }},
        {3, [this] { return Say("set-state", AnyEid(), stateSensor, "1", Any(states)); }},
        {3, [=, this] { return sensor("operational", Any(operationalStates)); }},
    };
}

void Storm::Send(const Words& words) {
    if (words.empty()) {
        return;
    }
    std::string line;
    for (const auto& word : words) {
        line += (line.empty() ? "" : " ") + word;
    }
    history.push_back(line);
    server.Simctl(words);
}

/** One of the things that must change nothing. */
Storm::Words Storm::Idle(std::size_t which) {
    if (which < std::size(idleCommands)) {
        return WordsOf(idleCommands[which]);
    }
    const std::size_t signal = which - std::size(idleCommands);
    history.push_back("idle signal " + std::to_string(signal));
    idleSignals[signal](server.Client());
    return {};
}

/** The same numbers on every machine, which the library's distributions don't promise. */
int Storm::Below(int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}

Storm::Card& Storm::AnyPluggedCard() {
    while (true) {
        if (auto& card = Any(cards); card.plugged) {
            return card;
        }
    }
}

Storm::EndPoint& Storm::AnyEndPoint() {
    return Any(AnyPluggedCard().endPoints);
}

Storm::Words Storm::Fault(const std::string& what) {
    Words words = WordsOf(what);
    auto& card = AnyPluggedCard();
    words.insert(words.begin() + 1, std::to_string(Any(card.endPoints).eid));
    // A command that fails while the next one goes well again leaves an inventory without versions.
    card.deceived |=
        words[0] == "slow" || words[0] == "error-type" || (words[0] == "fail" && words.size() == 3);
    return words;
}

/** At least half of the cards stay. */
Storm::Words Storm::PullOrPlug() {
    auto& card = Any(cards);
    const auto plugged = std::ranges::count(cards, true, &Card::plugged);
    if (card.plugged && plugged <= std::ssize(cards) / 2) {
        return {};
    }
    card.plugged = !card.plugged;
    Words words{card.plugged ? "plug" : "pull", std::to_string(card.slot)};
    if (Below(4) == 0) {
        words.emplace_back("quietly");
    }
    return words;
}

Storm::Words Storm::MoveEndPoint() {
    auto& endPoint = AnyEndPoint();
    if (nextEid == highestEid) {
        return {};
    }
    const int old = std::exchange(endPoint.eid, nextEid++);
    Words words{"move", std::to_string(old), std::to_string(endPoint.eid)};
    if (Below(2) == 0) {
        words.emplace_back("quietly");
    }
    return words;
}

Storm::Words Storm::DropSensor() {
    auto& card = AnyPluggedCard();
    auto& sensors = card.endPoints.front().sensors;
    if (!card.hasTree || sensors.size() == 1) {
        return {};
    }
    const int id = sensors.back();
    sensors.pop_back();
    return {"drop", std::to_string(card.endPoints.front().eid), std::to_string(id)};
}

Storm::Words Storm::BringFru() {
    const auto& card = AnyPluggedCard();
    const bool isOcp = card.MayBeOcp() && Below(2) == 0;
    return {"fru", std::to_string(card.slot), isOcp ? "OCP card" : "plain card"};
}

/** By EID, the endpoints through which a new table has the devices reached: VDM where there is any.
 */
std::map<int, Storm::Used> Storm::InUse() const {
    std::map<int, Used> used;
    for (const auto& card : cards) {
        const bool vdm = card.endPoints.front().vdm;
        for (const auto& endPoint : card.endPoints) {
            if (card.plugged && endPoint.vdm == vdm) {
                used[endPoint.eid] = {&card, &endPoint};
            }
        }
    }
    return used;
}

std::map<std::string, std::ptrdiff_t> Storm::Implied() const {
    std::map<std::string, std::ptrdiff_t> counts{
        {"cards", std::ranges::count(cards, true, &Card::plugged)}};
    for (const auto& [eid, used] : InUse()) {
        counts[used.card->name] += std::ssize(used.endPoint->sensors);
    }
    return counts;
}

bool Storm::Calm(bool plugEverything) {
    for (auto& card : cards) {
        if (plugEverything && !std::exchange(card.plugged, true)) {
            Send({"plug", std::to_string(card.slot), "quietly"});
        }
        if (!card.plugged) {
            continue;
        }
        for (const auto& endPoint : card.endPoints) {
            Send({"recover", std::to_string(endPoint.eid)});
            // None stays failed: a first reading of that can't be told from none.
            for (const int id : endPoint.sensors) {
                server.Simctl(
                    {"operational", std::to_string(endPoint.eid), std::to_string(id), "enabled"});
            }
        }
        if (std::exchange(card.deceived, false)) {
            Send({"pull", std::to_string(card.slot)});
            Send({"plug", std::to_string(card.slot)});
        }
        if (card.MayBeOcp()) {
            Send({"fru", std::to_string(card.slot), "OCP card"});
        }
    }
    Send({"fw-stop"});
    hostOn = true;
    Send({"host", "on"});
    if (!Answered(true)) {
        return false;
    }
    // A read of the repository that failed in the storm isn't tried again before the next change.
    for (const auto& [eid, used] : InUse()) {
        Send({"touch", std::to_string(eid)});
        if (!plugEverything) {
            Send({"operational", std::to_string(eid), "1", "unavailable"});
        }
    }
    for (std::size_t which = 0; which < idleCount; ++which) {
        Send(Idle(which));
    }
    return Answered(false);
}

bool Storm::Answered(bool tables) {
    const auto before = Counts(server);
    auto lastTable = std::chrono::steady_clock::time_point();
    std::string missing;
    const bool all = Eventually([&] {
        // A device that still believes in an endpoint which has moved needs a later table.
        if (const auto now = std::chrono::steady_clock::now();
            tables && now - lastTable > tableInterval) {
            server.Simctl({"table"});
            lastTable = now;
        }
        missing.clear();
        auto answered = Counts(server);
        for (const auto& [eid, used] : InUse()) {
            const int rounds = used.card->isAccelerator ? readsOfAnAccelerator : reads;
            if (const int asked = answered[eid] - before.at(eid);
                asked < rounds * std::ssize(used.endPoint->sensors)) {
                missing += "EID " + std::to_string(eid) + " was asked " + std::to_string(asked) +
                           " times\n";
            }
        }
        return missing.empty();
    });
    history.push_back(missing);
    return all;
}

std::string Storm::History() const {
    std::string text;
    for (const auto& line : history) {
        text += line + "\n";
    }
    return text;
}

} // namespace vantric::test
