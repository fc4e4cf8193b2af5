// SPDX-License-Identifier: Apache-2.0
#include "bus_watcher.hpp"

#include "interface_names.hpp"

#include <sdbusplus/message.hpp>

#include <algorithm>
#include <array>
#include <exception>
#include <system_error>

namespace monitor {

namespace {

constexpr std::array objectManagers{"/xyz/openbmc_project/inventory/system",
                                    "/xyz/openbmc_project/sensors"};
constexpr const char* managerInterface = "org.freedesktop.DBus.ObjectManager";

void Check(int result, const char* call) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), call);
    }
}

std::string Rule(const std::string& sender, const std::string& interface,
                 const std::string& member) {
    return "type='signal',sender='" + sender + "',interface='" + interface + "',member='" + member +
           "'";
}

/** Reads the next values of a message into new objects of the types. */
template <typename... Types>
std::tuple<Types...> Read(sd_bus_message* raw) {
    std::tuple<Types...> values;
    sdbusplus::message_t message(raw);
    std::apply([&](auto&... value) { message.read(value...); }, values);
    return values;
}

using sdbusplus::message::object_path;

} // namespace

BusWatcher::BusWatcher(sd_bus* bus) : bus(bus) {
    const std::string service = serviceName;
    // The matches stand before the objects are asked for, so that nothing falls in between.
    Watch<&BusWatcher::OnInterfacesAdded>(Rule(service, managerInterface, "InterfacesAdded"));
    Watch<&BusWatcher::OnInterfacesRemoved>(Rule(service, managerInterface, "InterfacesRemoved"));
    Watch<&BusWatcher::OnPropertiesChanged>(
        Rule(service, "org.freedesktop.DBus.Properties", "PropertiesChanged"));
    Watch<&BusWatcher::OnOwnerChanged>(
        Rule("org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged") + ",arg0='" +
        service + "'");
    Watch<&BusWatcher::OnDisconnected>(
        Rule("org.freedesktop.DBus.Local", "org.freedesktop.DBus.Local", "Disconnected"));
    Fetch();
}

/** Turns a callback of libsystemd into a call of the watcher. A message of another shape than
 *  expected costs its own content only; no exception may leave into libsystemd. */
template <BusWatcher::Reaction reaction>
int BusWatcher::React(sd_bus_message* message, void* watcher, sd_bus_error* /*error*/) {
    auto& self = *static_cast<BusWatcher*>(watcher);
    try {
        (self.*reaction)(message);
    } catch (const std::exception&) {
        ++self.misunderstood;
    }
    return 0;
}

template <BusWatcher::Reaction reaction>
void BusWatcher::Watch(const std::string& rule) {
    sd_bus_slot* slot = nullptr;
    Check(sd_bus_add_match(bus, &slot, rule.c_str(), React<reaction>, this), "sd_bus_add_match");
    matches.emplace_back(slot);
}

void BusWatcher::Fetch() {
    pending.clear(); // what the owner before would still answer is of no use
    for (const char* path : objectManagers) {
        sd_bus_slot* slot = nullptr;
        Check(sd_bus_call_method_async(bus, &slot, serviceName, path, managerInterface,
                                       "GetManagedObjects", React<&BusWatcher::OnObjects>, this,
                                       nullptr),
              "sd_bus_call_method_async");
        pending.emplace_back(slot);
    }
}

void BusWatcher::OnObjects(sd_bus_message* message) {
    std::erase_if(pending, [answered = sd_bus_get_current_slot(bus)](const Slot& slot) {
        return slot.get() == answered;
    });
    if (sd_bus_message_is_method_error(message, nullptr) > 0) {
        return; // no such service yet, or an older one; its arrival is told by a signal
    }
    present = true;
    const auto [objects] = Read<std::map<object_path, Interfaces>>(message);
    for (const auto& [path, interfaces] : objects) {
        model.AddInterfaces(path, interfaces);
    }
}

void BusWatcher::OnInterfacesAdded(sd_bus_message* message) {
    const auto [path, interfaces] = Read<object_path, Interfaces>(message);
    model.AddInterfaces(path, interfaces);
}

void BusWatcher::OnInterfacesRemoved(sd_bus_message* message) {
    const auto [path, names] = Read<object_path, std::vector<std::string>>(message);
    model.RemoveInterfaces(path, names);
}

void BusWatcher::OnPropertiesChanged(sd_bus_message* message) {
    const char* path = sd_bus_message_get_path(message);
    const auto [interface, changed] = Read<std::string, Properties>(message);
    model.ChangeProperties(path == nullptr ? "" : path, interface, changed);
}

void BusWatcher::OnOwnerChanged(sd_bus_message* message) {
    const auto [name, before, owner] = Read<std::string, std::string, std::string>(message);
    present = !owner.empty();
    model.Clear();
    pending.clear();
    if (present) {
        Fetch();
    }
}

void BusWatcher::OnDisconnected(sd_bus_message* /*message*/) {
    lost = true;
}

} // namespace monitor
