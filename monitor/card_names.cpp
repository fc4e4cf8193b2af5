#include "card_names.hpp"

#include "interface_names.hpp"

#include <array>

namespace monitor {

namespace {

/// Where an object tells its card's LDID; the friendly name stands beside it.
constexpr std::array<std::pair<const char*, const char*>, 3> ldidProperties{{
    {probeInterface, "TargetDevKey"},
    {inventoryInterface, "LDID"},
    {stateInterface, "LDID"},
}};

/// The inventory object that a sensor belongs to, empty if it tells none.
std::string AssociatedPath(const Object& object) {
    const auto* associations = object.Get<Associations>(associationInterface, "Associations");
    return associations == nullptr || associations->empty() ? std::string()
                                                            : associations->front()[2];
}

/// The last part of a sensor's path up to the sensor's id.
std::string NameFromPath(const std::string& path) {
    const std::string leaf = path.substr(path.rfind('/') + 1);
    return leaf.substr(0, leaf.find("_sensorid_"));
}

/// What the friendly name of something on a card has besides that of the card, such as the port;
/// nothing if it names something else.
std::optional<std::string> PartOf(const std::string& part, const std::string& card) {
    if (!card.empty() && part.starts_with(card)) {
        std::string rest = part.substr(card.size());
        if (rest.empty() || rest.front() == ' ' || rest.front() == '-') {
            return rest;
        }
    }
    // The ports of an embedded card bear another name than the card.
    const std::size_t port = part.rfind(" Port ");
    return port == std::string::npos ? std::nullopt : std::optional(part.substr(port));
}

} // namespace

CardNames::CardNames(const ObjectModel& model) {
    for (const auto& [path, object] : model.Objects()) {
        const std::optional<Card> card = OwnCard(object);
        if (!card) {
            continue;
        }
        bearers[card->friendly].insert(card->ldid);
        if (object.Find(inventoryInterface) != nullptr) {
            inventory.emplace(path, *card);
        }
    }
}

std::string CardNames::Of(const std::string& path, const Object& object) const {
    const auto own = OwnCard(object);
    auto card = CardAbove(path);
    if (!card) {
        card = CardAbove(AssociatedPath(object));
    }
    if (!own) {
        return card ? Name(*card) : NameFromPath(path);
    }
    const auto part = card ? PartOf(own->friendly, card->friendly) : std::nullopt;
    return part ? Name(*card) + *part : Name(*own);
}

std::optional<CardNames::Card> CardNames::OwnCard(const Object& object) {
    for (const auto& [interface, property] : ldidProperties) {
        const Card card{.friendly = object.Text(interface, "FriendlyLDID"),
                        .ldid = object.Text(interface, property)};
        if (!card.friendly.empty() || !card.ldid.empty()) {
            return card;
        }
    }
    return std::nullopt;
}

std::optional<CardNames::Card> CardNames::CardAbove(std::string path) const {
    while (!path.empty()) {
        const auto found = inventory.find(path);
        if (found != inventory.end()) {
            return found->second;
        }
        const std::size_t slash = path.rfind('/');
        path.resize(slash == std::string::npos ? 0 : slash);
    }
    return std::nullopt;
}

std::string CardNames::Name(const Card& card) const {
    if (card.friendly.empty()) {
        return card.ldid;
    }
    const auto found = bearers.find(card.friendly);
    const bool shared = found != bearers.end() && found->second.size() > 1;
    return shared ? card.friendly + " (" + card.ldid + ")" : card.friendly;
}

} // namespace monitor
