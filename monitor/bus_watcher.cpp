#include "bus_watcher.hpp"

#include "interface_names.hpp"
#include "message_reader.hpp"

#include <algorithm>
#include <array>
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

/// Turns a callback of libsystemd into a call of the watcher. A message of another shape than
/// expected costs its own content only.
template <BusWatcher::Reaction reaction>
int BusWatcher::React(sd_bus_message* message, void* watcher, sd_bus_error* /*error*/) {
    auto& self = *static_cast<BusWatcher*>(watcher);
    try {
        (self.*reaction)(message);
    } catch (const std::system_error&) {
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
    std::erase_if(pending, [answered = sd_bus_get_current_slot(bus)](const SlotHandle& slot) {
        return slot.get() == answered;
    });
    if (sd_bus_message_is_method_error(message, nullptr) > 0) {
        return; // no such service yet, or an older one; its arrival is told by a signal
    }
    present = true;
    for (const auto& [path, interfaces] : MessageReader(message).ReadObjects()) {
        model.AddInterfaces(path, interfaces);
    }
}

void BusWatcher::OnInterfacesAdded(sd_bus_message* message) {
    MessageReader reader(message);
    const std::string path = reader.ReadText(SD_BUS_TYPE_OBJECT_PATH);
    model.AddInterfaces(path, reader.ReadInterfaces());
}

void BusWatcher::OnInterfacesRemoved(sd_bus_message* message) {
    MessageReader reader(message);
    const std::string path = reader.ReadText(SD_BUS_TYPE_OBJECT_PATH);
    model.RemoveInterfaces(path, reader.ReadTexts());
}

void BusWatcher::OnPropertiesChanged(sd_bus_message* message) {
    const char* path = sd_bus_message_get_path(message);
    MessageReader reader(message);
    const std::string interface = reader.ReadText();
    model.ChangeProperties(path == nullptr ? "" : path, interface, reader.ReadProperties());
}

void BusWatcher::OnOwnerChanged(sd_bus_message* message) {
    MessageReader reader(message);
    reader.ReadText();
    reader.ReadText();
    present = !reader.ReadText().empty();
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
