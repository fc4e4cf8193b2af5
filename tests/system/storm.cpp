#include "system/storm.hpp"

#include "support/eventually.hpp"

#include <algorithm>
#include <chrono>
#include <map>
#include <numeric>
#include <sstream>
#include <thread>
#include <utility>

namespace vantric::test {

namespace {

constexpr int sensorCount = 6;
constexpr int stateSensor = 20;
constexpr int requestsOfSomeCycles = 120;
constexpr int requestsOfAnAccelerator = 15; ///< whose sensors aren't read in every cycle
constexpr int highestEid = 250;
constexpr int hostWeight = 6;
constexpr std::chrono::seconds tableInterval{1};

struct Described {
    int slot;
    const char* kind;
    std::vector<std::pair<int, bool>> endPoints; ///< EID, and whether over VDM
    const char* entity;                          ///< type of the sensors' entity, or none
    bool hasTree = false;
};

const std::vector<Described> described{
    {1, "nic", {{11, true}, {12, false}}, "network-controller", true},
    {2, "nic", {{21, true}, {22, true}, {23, false}, {24, false}}, nullptr},
    {3, "fibre-channel", {{31, true}}, "network-controller", true},
    {4, "infiniband", {{41, true}, {42, false}}, nullptr},
    {5, "cxl-memory", {{51, true}, {52, false}}, "memory-module"},
    {6, "accelerator", {{61, true}}, "gpu"},
    {7, "nic", {{71, false}}, "network-controller", true},
    {9, "embedded-nic", {{91, true}, {92, true}}, nullptr},
};

std::string Text(const Described& card) {
    std::ostringstream text;
    text << "  - slot: " << card.slot << "\n    kind: " << card.kind << "\n    firmware: '1."
         << card.slot << "'\n    fru: {model: M" << card.slot << "}\n    endpoints:\n";
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

} // namespace

std::string Storm::Scenario() {
    std::string text = "platform-services: true\naccelerator-table:\n"
                       "  - {pci: {vendor: 1, device: 2}, sensors: [1, 2, 3, 4]}\ncards:\n";
    for (const auto& card : described) {
        text += Text(card);
    }
    return text;
}

Storm::Storm(PlayedServer& server, unsigned seed) : server(server), random(seed) {
    std::vector<int> sensors(sensorCount);
    std::iota(sensors.begin(), sensors.end(), 1);
    for (const auto& card : described) {
        Card known{.slot = card.slot,
                   .endPoints = {},
                   .hasTree = card.hasTree,
                   .isAccelerator = std::string(card.kind) == "accelerator"};
        for (const auto& [eid, vdm] : card.endPoints) {
            known.endPoints.push_back({eid, vdm, sensors});
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
    const auto sensor = [this](const char* command, const std::string& value) {
        const auto& endPoint = AnyEndPoint();
        const auto& ids = endPoint.sensors;
        return Words{command, std::to_string(endPoint.eid),
                     std::to_string(ids.at(static_cast<std::size_t>(Below(int(ids.size()))))),
                     value};
    };
    return {
        {10, [] { return Words{"table"}; }},
        {2,
         [] {
             return Words{"table", "bad-state"};
         }},
        {4, [] { return Words{"discovery"}; }},
        {12, [this] { return PullOrPlug(); }},
        {8, [this] { return MoveEndPoint(); }},
        {16,
         [this, number] {
             // Wrong answers are no part of this: what an inventory believed stays.
             return Fault({{"silence"}, {"slow", number(150)}, {"refuse"}});
         }},
        {16,
         [this] {
             return Words{"recover", AnyEid()};
         }},
        {hostWeight,
         [this] {
             hostOn = !hostOn;
             return Words{"host", hostOn ? "on" : "off"};
         }},
        {3, [] { return Words{"fw-start"}; }},
        {3, [] { return Words{"fw-stop"}; }},
        {5,
         [this] {
             return Words{"fru", std::to_string(AnyPluggedCard().slot),
                          Below(2) == 0 ? "OCP card" : "plain card"};
         }},
        {4,
         [this] {
             return Words{"touch", AnyEid()};
         }},
        {4,
         [sensor, number] {
             auto words = sensor("threshold", "critical-high");
             words.push_back("9" + number(9));
             return words;
         }},
        {4, [this] { return DropSensor(); }},
        {10, [sensor, number] { return sensor("set", number(100)); }},
        {3,
         [this] {
             return Words{"set-state", AnyEid(), std::to_string(stateSensor), "1",
                          std::to_string(1 + Below(4))};
         }},
        {3,
         [this, sensor] {
             static const char* const states[] = {"enabled", "failed", "unavailable"};
             return sensor("operational", states[Below(3)]);
         }},
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
    server.Benchctl(words);
}

/** The same numbers on every machine, which the library's distributions don't promise. */
int Storm::Below(int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}

Storm::Card& Storm::AnyPluggedCard() {
    while (true) {
        if (auto& card = AnyCard(); card.plugged) {
            return card;
        }
    }
}

Storm::EndPoint& Storm::AnyEndPoint() {
    auto& endPoints = AnyPluggedCard().endPoints;
    return endPoints.at(static_cast<std::size_t>(Below(int(endPoints.size()))));
}

Storm::Words Storm::Fault(const std::vector<Words>& ways) {
    Words words = ways.at(static_cast<std::size_t>(Below(int(ways.size()))));
    words.insert(words.begin() + 1, AnyEid());
    return words;
}

/** At least half of the cards stay. */
Storm::Words Storm::PullOrPlug() {
    auto& card = AnyCard();
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

/** The endpoints through which a new table has the devices reached, VDM where there is any, and how
 *  much they are asked in some cycles. */
std::map<int, int> Storm::InUse() const {
    std::map<int, int> eids;
    for (const auto& card : cards) {
        const bool vdm = card.endPoints.front().vdm;
        for (const auto& endPoint : card.endPoints) {
            if (card.plugged && endPoint.vdm == vdm) {
                eids[endPoint.eid] =
                    card.isAccelerator ? requestsOfAnAccelerator : requestsOfSomeCycles;
            }
        }
    }
    return eids;
}

bool Storm::Calm(bool plugEverything) {
    for (auto& card : cards) {
        if (plugEverything && !std::exchange(card.plugged, true)) {
            Send({"plug", std::to_string(card.slot), "quietly"});
        }
        for (const auto& endPoint : card.endPoints) {
            if (card.plugged) {
                Send({"recover", std::to_string(endPoint.eid)});
            }
        }
    }
    Send({"fw-stop"});
    hostOn = true;
    Send({"host", "on"});
    const auto counts = [this] {
        std::map<int, int> answered;
        std::istringstream in(server.Benchctl({"count"}));
        std::string skipped;
        for (int eid = 0; in >> skipped >> eid;) {
            in >> skipped >> answered[eid];
        }
        return answered;
    };
    const auto before = counts();
    auto lastTable = std::chrono::steady_clock::time_point();
    std::string missing;
    const bool calm = Eventually([&] {
        // A device that still believes in an endpoint which has moved needs a later table.
        if (const auto now = std::chrono::steady_clock::now(); now - lastTable > tableInterval) {
            server.Benchctl({"table"});
            lastTable = now;
        }
        missing.clear();
        auto answered = counts();
        for (const auto& [eid, requests] : InUse()) {
            if (const int asked = answered[eid] - before.at(eid); asked < requests) {
                missing += "EID " + std::to_string(eid) + " was asked " + std::to_string(asked) +
                           " times\n";
            }
        }
        return missing.empty();
    });
    history.push_back(missing);
    return calm;
}

std::string Storm::History() const {
    std::string text;
    for (const auto& line : history) {
        text += line + "\n";
    }
    return text;
}

} // namespace vantric::test
