// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/probe_object.hpp"

#include "common/log.hpp"

#include <map>
#include <string_view>
#include <utility>
#include <variant>

namespace vantric {

namespace {

constexpr auto nonCached = "meta-NonCached";

SensorStoreValue ToStoreValue(const bindings::ProbeObj::PropertiesVariant& value) {
    return std::visit(
        []<typename T>(const T& held) { return SensorStoreValue(std::in_place_type<T>, held); },
        value);
}

std::map<std::string, SensorStoreValue> ToStoreValues(const PropertyBag<bindings::ProbeObj>& bag) {
    std::map<std::string, SensorStoreValue> values;
    for (const auto& [name, value] : bag) {
        values.emplace(name, ToStoreValue(value));
    }
    return values;
}

/** Runs a call of the library, whose exceptions end here. */
template <typename Call>
void Guarded(const Call& call) noexcept {
    try {
        call();
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "%s\n", error.what());
    } catch (...) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "The sensor store failed\n");
    }
}

} // namespace

ProbeObject::ProbeObject(sdbusplus::bus_t& bus, const std::string& path,
                         const PropertyBag<bindings::ProbeObj>& bag)
    : ProbeObj(bus, path.c_str()), objectPath(path) {
    const bool toBeCached = !bag.contains(nonCached);
    if (toBeCached) {
        sensorstore_probeobj_create(objectPath, ToStoreValues(bag));
    }
    for (const auto& [name, value] : bag) {
        setPropertyByName(name, value, false);
    }
    cached = toBeCached; // only now: the first values went to the cache as a whole
}

ProbeObject::~ProbeObject() {
    VANTRIC_LOG(LOG_LEVEL_FINEST, "Destroying probe object %s\n", objectPath.c_str());
    // Neither may keep the other from being done, nor end the process.
    Guarded([this] { SensorStoreKeys::remove(key()); });
    if (cached) {
        Guarded([this] { sensorstore_probeobj_remove(objectPath); });
    }
}

void ProbeObject::write(const Write& write) {
    const auto value = ToStoreValue(write.value);
    if (cached && sensorstore_probeobj_set_property(objectPath, write.property, value) != 0) {
        return;
    }
    if (write.differs) {
        write.store();
        PropertyChanged(objectPath, write.property, value);
        if (!write.skipSignal) {
            property_changed(write.property);
        }
    }
    if (std::string_view(write.property) == "Key") {
        SensorStoreKeys::set_key(key(), "ProbeObj", objectPath, sensorstore_service());
    }
}

} // namespace vantric
