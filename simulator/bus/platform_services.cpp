// SPDX-License-Identifier: Apache-2.0
#include "bus/platform_services.hpp"

#include <charconv>

namespace simulator {

namespace {

constexpr const char* hostPath = "/xyz/openbmc_project/state/host0";
constexpr const char* hostInterface = "xyz.openbmc_project.State.Host";
constexpr const char* inventoryPath = "/xyz/openbmc_project/inventory";
constexpr const char* assetInterface = "xyz.openbmc_project.Inventory.Decorator.Asset";
constexpr const char* addressInterface = "com.korv.bmc.arp.arp";

std::string AssetPath(std::uint16_t slot) {
    return std::string(inventoryPath) + "/system/assembly/PCIESLOT" + std::to_string(slot) + "_FRU";
}

std::string AddressPath(std::uint16_t slot) {
    return "/com/korv/bmc/arp/arp/slot/slot" + std::to_string(slot);
}

/** Gets a property that is a std::string; the context is the string. */
int GetText(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
            const char* /*property*/, sd_bus_message* reply, void* context,
            sd_bus_error* /*error*/) {
    return sd_bus_message_append(reply, "s", static_cast<std::string*>(context)->c_str());
}

std::string Hexadecimal(std::uint8_t number) {
    char digits[2];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number, 16).ptr;
    return "0x" + std::string(std::begin(digits), end);
}

/** Each I2C endpoint of a slot: its bus address, and the text that names it. */
std::vector<std::pair<std::string, std::string>> AddressesOf(Machine& machine, std::uint16_t slot) {
    std::vector<std::pair<std::string, std::string>> pairs;
    for (const auto* const card : machine.FindCards(slot)) {
        for (const auto& endPoint : card->endPoints) {
            const auto& description = endPoint.description;
            if (card->plugged && description.medium == Medium::I2c) {
                pairs.emplace_back(Hexadecimal(description.busAddress), description.udid);
            }
        }
    }
    return pairs;
}

int AppendPairs(sd_bus_message* reply,
                const std::vector<std::pair<std::string, std::string>>& pairs) {
    int result = sd_bus_message_open_container(reply, 'a', "(ss)");
    for (const auto& [key, value] : pairs) {
        result =
            result < 0 ? result : sd_bus_message_append(reply, "(ss)", key.c_str(), value.c_str());
    }
    return result < 0 ? result : sd_bus_message_close_container(reply);
}

} // namespace

PlatformServices::PlatformServices(EventLoop& loop, Machine& machine)
    : hostState("xyz.openbmc_project.State.Host.HostState.Running") {
    sd_bus* opened = nullptr;
    Checked(sd_bus_open_system(&opened), "sd_bus_open_system");
    bus.reset(opened);
    Checked(sd_bus_attach_event(opened, loop.Get(), SD_EVENT_PRIORITY_NORMAL),
            "sd_bus_attach_event");

    static const sd_bus_vtable hostProperties[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_PROPERTY("CurrentHostState", "s", GetText, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
        SD_BUS_VTABLE_END,
    };
    host = Register(hostPath, hostInterface, hostProperties, &hostState);

    sd_bus_slot* manager = nullptr;
    Checked(sd_bus_add_object_manager(opened, &manager, inventoryPath),
            "sd_bus_add_object_manager");
    inventory.reset(manager);

    static const sd_bus_vtable addressProperties[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_PROPERTY("UDIDInfo", "a(ss)",
                        ([](sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                            void* context, sd_bus_error*) {
                            const auto& object = *static_cast<Addresses*>(context);
                            return AppendPairs(reply, AddressesOf(*object.machine, object.slot));
                        }),
                        0, 0),
        SD_BUS_VTABLE_END,
    };
    for (const auto& card : machine.Cards()) {
        const auto slot = card.description.slot;
        if (!card.description.model.empty()) {
            MakeAsset(slot, card.description.model);
        }
        const auto [object, isNew] = addresses.try_emplace(slot, Addresses{&machine, slot, {}});
        if (isNew) {
            object->second.registration =
                Register(AddressPath(slot), addressInterface, addressProperties, &object->second);
        }
    }

    for (const char* const name : {"xyz.openbmc_project.State.Host",
                                   "xyz.openbmc_project.EntityManager", "com.korv.bmc.arp.arp"}) {
        Checked(sd_bus_request_name(opened, name, 0), name);
    }
}

PlatformServices::Registration PlatformServices::Register(const std::string& path,
                                                          const char* interface,
                                                          const sd_bus_vtable* properties,
                                                          void* context) {
    sd_bus_slot* slot = nullptr;
    Checked(
        sd_bus_add_object_vtable(bus.get(), &slot, path.c_str(), interface, properties, context),
        "sd_bus_add_object_vtable");
    return Registration(slot);
}

void PlatformServices::MakeAsset(std::uint16_t slot, const std::string& model) {
    static const sd_bus_vtable assetProperties[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_PROPERTY("Model", "s", GetText, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
        SD_BUS_VTABLE_END,
    };
    auto& asset = assets[slot];
    asset.model = model;
    if (!asset.registration) {
        asset.registration =
            Register(AssetPath(slot), assetInterface, assetProperties, &asset.model);
    }
}

const std::string& PlatformServices::AddFru(std::uint16_t slot,
                                            const std::optional<std::string>& model) {
    MakeAsset(slot, model ? *model : assets[slot].model);
    Checked(
        sd_bus_emit_interfaces_added(bus.get(), AssetPath(slot).c_str(), assetInterface, nullptr),
        "sd_bus_emit_interfaces_added");
    return assets[slot].model;
}

void PlatformServices::TellHostState(const char* state) {
    hostState = std::string("xyz.openbmc_project.State.Host.HostState.") + state;
    Checked(sd_bus_emit_properties_changed(bus.get(), hostPath, hostInterface, "CurrentHostState",
                                           nullptr),
            "sd_bus_emit_properties_changed");
}

void PlatformServices::SetHost(bool on) {
    TellHostState(on ? "TransitioningToRunning" : "TransitioningToOff");
    TellHostState(on ? "Running" : "Off");
}

} // namespace simulator
