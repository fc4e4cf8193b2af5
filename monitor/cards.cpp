// SPDX-License-Identifier: Apache-2.0
#include "cards.hpp"

#include "interface_names.hpp"
#include "sensors.hpp"
#include "text.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>

namespace monitor {

namespace {

constexpr std::string_view inventoryRoot = "/xyz/openbmc_project/inventory/system/";

std::string Leaf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

/** The path one level up, empty at the top. */
std::string Above(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

/** The path of what a sensor is about, or the name that its own path bears. */
std::string PlaceOf(const std::string& path, const Object& object) {
    if (object.Has(stateInterface)) {
        return path.substr(0, path.find(stateFolder));
    }
    const auto* associations = object.Get<Associations>(associationInterface, "Associations");
    if (associations != nullptr && !associations->empty()) {
        return std::get<2>(associations->front());
    }
    const std::string leaf = Leaf(path);
    return leaf.substr(0, leaf.find("_sensorid_"));
}

Severity Health(std::optional<double> status) {
    static const std::map<double, Severity> words{
        {2, Severity::OK}, {3, Severity::WARNING}, {4, Severity::CRITICAL}, {5, Severity::FATAL}};
    const auto found = words.find(status.value_or(0));
    return found == words.end() ? Severity::UNKNOWN : found->second;
}

/** The path up to the number of a slot; the path itself if there is none. */
std::string SlotPath(const std::string& path) {
    for (const std::string_view level : {"/Slot/", "/Embedded/"}) {
        const std::size_t found = path.find(level);
        if (found != std::string::npos) {
            return path.substr(0, path.find('/', found + level.size()));
        }
    }
    return path;
}

Card ReadCard(const std::string& path, const Object& object) {
    Card card;
    card.path = path;
    card.ldid = object.Text(inventoryInterface, "LDID");
    card.name = object.Text(inventoryInterface, "FriendlyLDID");
    if (card.name.empty()) {
        card.name = card.ldid;
    }
    card.model = object.Text(fruInterface, "Model");
    card.partNumber = object.Text(fruInterface, "PN");
    card.serialNumber = object.Text(fruInterface, "SN");
    card.firmware = object.Text(inventoryInterface, "FirmwareVersion");
    card.health = Health(object.Number(inventoryInterface, "DeviceStatus"));
    return card;
}

/** Cards by path, while they are being filled. */
class Shelf {
public:
    explicit Shelf(const ObjectModel& model) {
        for (const auto& [path, object] : model.Objects()) {
            if (object.Has(inventoryInterface)) {
                cards.emplace(path, ReadCard(path, object));
            }
        }
    }

    Card& CardAt(const std::string& place) {
        for (std::string path = place; !path.empty(); path = Above(path)) {
            const auto found = cards.find(path);
            if (found != cards.end()) {
                return found->second;
            }
        }
        const std::string path = SlotPath(place);
        const auto [made, isNew] = cards.try_emplace(path);
        if (isNew) {
            made->second.path = path;
            made->second.name =
                path.starts_with(inventoryRoot) ? path.substr(inventoryRoot.size()) : path;
        }
        return made->second;
    }

    std::vector<Card> Take() {
        std::map<std::string, int> bearers;
        for (const auto& [path, card] : cards) {
            ++bearers[card.name];
        }
        std::vector<Card> taken;
        for (auto& [path, card] : cards) {
            if (bearers[card.name] > 1) {
                card.name += " (" + (card.ldid.empty() ? path : card.ldid) + ")";
            }
            taken.push_back(std::move(card));
        }
        return taken;
    }

private:
    std::map<std::string, Card> cards;
};

/** Sorts by id, which is what paths of one kind end in, and leaves members of one object together.
 */
template <typename Row>
void SortById(std::vector<Row>& rows) {
    std::ranges::stable_sort(rows, [](const Row& left, const Row& right) {
        const auto byId = NaturalOrder(Leaf(left.path), Leaf(right.path));
        return (byId != 0 ? byId : NaturalOrder(left.path, right.path)) < 0;
    });
}

bool IsCalled(const std::string& name, const std::string& text) {
    const auto isDigit = [](unsigned char character) { return std::isdigit(character) != 0; };
    const std::string in = LowerCase(name);
    const std::string part = LowerCase(text);
    for (std::size_t at = in.find(part); at != std::string::npos; at = in.find(part, at + 1)) {
        const std::size_t end = at + part.size();
        if (end == in.size() || !isDigit(in[end]) || part.empty() || !isDigit(part.back())) {
            return true;
        }
    }
    return false;
}

} // namespace

std::vector<Card> BuildCards(const ObjectModel& model) {
    Shelf shelf(model);
    for (const auto& [path, object] : model.Objects()) {
        if (object.Has(stateInterface)) {
            Card& card = shelf.CardAt(PlaceOf(path, object));
            const std::string place = PlaceOf(path, object);
            for (State& state : ReadStates(path, object)) {
                state.part = place == card.path ? "" : Leaf(place);
                card.states.push_back(std::move(state));
            }
        }
        if (object.Has(valueInterface) || object.Has(probeInterface)) {
            shelf.CardAt(PlaceOf(path, object)).sensors.push_back(ReadSensor(path, object));
        }
    }
    std::vector<Card> cards = shelf.Take();
    std::ranges::sort(cards, [](const Card& left, const Card& right) {
        return NaturalOrder(left.name, right.name) < 0;
    });
    for (Card& card : cards) {
        SortById(card.sensors);
        SortById(card.states);
    }
    return cards;
}

void KeepCalled(std::vector<Card>& cards, const std::string& text) {
    std::erase_if(cards, [&](const Card& card) {
        return !IsCalled(card.name, text) && !IsCalled(card.ldid, text);
    });
}

} // namespace monitor
