// SPDX-License-Identifier: Apache-2.0
#include "scenario/parse.hpp"
#include "scenario/scenario.hpp"
#include "scenario/vocabulary.hpp"

namespace simulator {

namespace {

constexpr std::size_t ldidCapacity = 512;

const CardKind& ParseKind(const Value& value) {
    const auto text = value.Text();
    std::string known;
    for (const auto& kind : CardKinds()) {
        if (kind.name == text) {
            return kind;
        }
        known += (known.empty() ? "" : ", ") + std::string(kind.name);
    }
    value.Fail("\"" + text + "\" is no kind of card; the kinds are " + known);
}

Medium ParseMedium(const Value& value) {
    const auto text = value.Text();
    if (text == "vdm") {
        return Medium::Vdm;
    }
    if (text == "i2c") {
        return Medium::I2c;
    }
    if (text != "none") {
        value.Fail("a medium is vdm, i2c or none");
    }
    return Medium::None;
}

EndPoint ParseEndPoint(const Value& value, Mapping& cardMapping, const Card& card,
                       const CardKind& kind) {
    Mapping mapping(value);
    EndPoint endPoint;
    endPoint.eid = mapping.Get("eid").Integer<std::uint16_t>();
    if (const auto medium = mapping.Find("medium")) {
        endPoint.medium = ParseMedium(*medium);
    }
    mapping.Read("bdf", endPoint.bdf);
    mapping.Read("bus-address", endPoint.busAddress);
    mapping.Read("udid", endPoint.udid);
    const auto usual = std::string(kind.ldidPrefix) + std::to_string(card.slot) + "-1-1";
    endPoint.ldid.assign(usual.begin(), usual.end());
    if (const auto ldid = mapping.Find("ldid")) {
        endPoint.ldid = ParseBytes(*ldid);
        if (endPoint.ldid.size() > ldidCapacity) {
            ldid->Fail("an LDID text has at most 512 bytes");
        }
    }
    mapping.Read("ldid-length", endPoint.ldidLength);
    endPoint.endPointType = kind.endPointType;
    mapping.Read("endpoint-type", endPoint.endPointType);
    endPoint.slotType = kind.embedded ? 4 : 0;
    mapping.Read("slot-type", endPoint.slotType);
    endPoint.slot = card.slot;
    mapping.Read("slot", endPoint.slot);
    mapping.Read("pldm", endPoint.pldm);
    Layers layers(mapping, cardMapping);
    endPoint.terminus = ParseTerminus(layers);
    mapping.Finish();
    return endPoint;
}

Card ParseCard(const Value& value) {
    Mapping mapping(value);
    Card card;
    const auto& kind = ParseKind(mapping.Get("kind"));
    card.kind = kind.name;
    card.slot = mapping.Get("slot").Integer<std::uint16_t>();
    if (const auto pci = mapping.Find("pci")) {
        card.pci = ParsePci(*pci);
    }
    mapping.Read("cpu-affinity", card.cpuAffinity);
    card.deviceClass = kind.deviceClass;
    mapping.Read("class", card.deviceClass);
    card.locatorType = kind.embedded ? 2 : 6;
    mapping.Read("locator", card.locatorType);
    mapping.Read("group", card.group);
    mapping.Read("pcie-record", card.inPcieTable);
    mapping.Read("plugged", card.plugged);
    mapping.Read("model", card.model);
    for (const auto& endPoint : mapping.Get("endpoints").Items()) {
        card.endPoints.push_back(ParseEndPoint(endPoint, mapping, card, kind));
    }
    mapping.Finish();
    if (card.endPoints.empty()) {
        value.Fail("a card has at least one endpoint");
    }
    return card;
}

void RequireDistinctEids(const std::vector<Value>& cardValues, const std::vector<Card>& cards) {
    std::set<std::uint16_t> eids;
    for (std::size_t i = 0; i < cards.size(); ++i) {
        for (const auto& endPoint : cards[i].endPoints) {
            if (!eids.insert(endPoint.eid).second) {
                cardValues[i].Fail("EID " + std::to_string(endPoint.eid) + " stands twice");
            }
        }
    }
}

} // namespace

Scenario ReadScenario(const std::string& path) {
    const auto whole = Value::FromFile(path);
    Mapping mapping(whole);
    Scenario scenario;
    mapping.Read("platform-services", scenario.platformServices);
    const auto cards = mapping.Get("cards").Items();
    for (const auto& card : cards) {
        scenario.cards.push_back(ParseCard(card));
    }
    RequireDistinctEids(cards, scenario.cards);
    if (const auto accelerators = mapping.Find("accelerator-table")) {
        for (const auto& entry : accelerators->Items()) {
            scenario.accelerators.push_back(ParseAccelerator(entry));
        }
    }
    mapping.Finish();
    return scenario;
}

} // namespace simulator
