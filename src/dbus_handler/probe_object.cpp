#include "dbus_handler/probe_object.hpp"

#include "common/log.hpp"

#include <map>
#include <utility>
#include <variant>

namespace vantric {

namespace {

constexpr auto nonCached = "meta-NonCached";

template <typename T>
SensorStoreValue ToStoreValue(const T& value) {
    return SensorStoreValue(std::in_place_type<T>, value);
}

std::map<std::string, SensorStoreValue> ToStoreValues(const PropertyBag<bindings::ProbeObj>& bag) {
    std::map<std::string, SensorStoreValue> values;
    for (const auto& [name, value] : bag) {
        values.emplace(name,
                       std::visit([](const auto& held) { return ToStoreValue(held); }, value));
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

/** What all writes do. store is the binding's own write, told to keep quiet: the cache hears of the
 *  new value before the bus does.
 *  @return false if the cache refused the value; the property then keeps the one it has */
template <typename T, typename Store>
bool ProbeObject::Write(const char* property, const T& stored, const T& value, bool skipSignal,
                        Store store) {
    if (cached &&
        sensorstore_probeobj_set_property(objectPath, property, ToStoreValue(value)) != 0) {
        return false;
    }
    if (stored == value) {
        return true;
    }
    store(value);
    PropertyChanged(objectPath, property, ToStoreValue(value));
    if (!skipSignal) {
        property_changed(property);
    }
    return true;
}

std::string ProbeObject::key(std::string value, bool skipSignal) {
    const bool taken = Write("Key", key(), value, skipSignal,
                             [this](const auto& changed) { ProbeObj::key(changed, true); });
    if (taken) {
        SensorStoreKeys::set_key(key(), "ProbeObj", objectPath, sensorstore_service());
    }
    return key();
}

std::uint32_t ProbeObject::subType(std::uint32_t value, bool skipSignal) {
    Write("SubType", subType(), value, skipSignal,
          [this](auto changed) { ProbeObj::subType(changed, true); });
    return subType();
}

std::int32_t ProbeObject::probeReading(std::int32_t value, bool skipSignal) {
    Write("ProbeReading", probeReading(), value, skipSignal,
          [this](auto changed) { ProbeObj::probeReading(changed, true); });
    return probeReading();
}

ProbeThresholds ProbeObject::probeThresholds(ProbeThresholds value, bool skipSignal) {
    Write("ProbeThresholds", probeThresholds(), value, skipSignal,
          [this](const auto& changed) { ProbeObj::probeThresholds(changed, true); });
    return probeThresholds();
}

std::uint8_t ProbeObject::probeStatus(std::uint8_t value, bool skipSignal) {
    Write("ProbeStatus", probeStatus(), value, skipSignal,
          [this](auto changed) { ProbeObj::probeStatus(changed, true); });
    return probeStatus();
}

std::uint8_t ProbeObject::unitModifier(std::uint8_t value, bool skipSignal) {
    Write("UnitModifier", unitModifier(), value, skipSignal,
          [this](auto changed) { ProbeObj::unitModifier(changed, true); });
    return unitModifier();
}

std::uint16_t ProbeObject::probeCapabilities(std::uint16_t value, bool skipSignal) {
    Write("ProbeCapabilities", probeCapabilities(), value, skipSignal,
          [this](auto changed) { ProbeObj::probeCapabilities(changed, true); });
    return probeCapabilities();
}

std::string ProbeObject::probeLocation(std::string value, bool skipSignal) {
    Write("ProbeLocation", probeLocation(), value, skipSignal,
          [this](const auto& changed) { ProbeObj::probeLocation(changed, true); });
    return probeLocation();
}

std::string ProbeObject::reAliasedName(std::string value, bool skipSignal) {
    Write("ReAliasedName", reAliasedName(), value, skipSignal,
          [this](const auto& changed) { ProbeObj::reAliasedName(changed, true); });
    return reAliasedName();
}

std::string ProbeObject::targetDevKey(std::string value, bool skipSignal) {
    Write("TargetDevKey", targetDevKey(), value, skipSignal,
          [this](const auto& changed) { ProbeObj::targetDevKey(changed, true); });
    return targetDevKey();
}

std::string ProbeObject::friendlyLDID(std::string value, bool skipSignal) {
    Write("FriendlyLDID", friendlyLDID(), value, skipSignal,
          [this](const auto& changed) { ProbeObj::friendlyLDID(changed, true); });
    return friendlyLDID();
}

std::uint32_t ProbeObject::sensorNumber(std::uint32_t value, bool skipSignal) {
    Write("SensorNumber", sensorNumber(), value, skipSignal,
          [this](auto changed) { ProbeObj::sensorNumber(changed, true); });
    return sensorNumber();
}

std::uint8_t ProbeObject::entityID(std::uint8_t value, bool skipSignal) {
    Write("EntityID", entityID(), value, skipSignal,
          [this](auto changed) { ProbeObj::entityID(changed, true); });
    return entityID();
}

std::uint8_t ProbeObject::type1MinReadingRange(std::uint8_t value, bool skipSignal) {
    Write("Type1MinReadingRange", type1MinReadingRange(), value, skipSignal,
          [this](auto changed) { ProbeObj::type1MinReadingRange(changed, true); });
    return type1MinReadingRange();
}

std::uint8_t ProbeObject::type1MaxReadingRange(std::uint8_t value, bool skipSignal) {
    Write("Type1MaxReadingRange", type1MaxReadingRange(), value, skipSignal,
          [this](auto changed) { ProbeObj::type1MaxReadingRange(changed, true); });
    return type1MaxReadingRange();
}

std::uint32_t ProbeObject::initupdateInProgress(std::uint32_t value, bool skipSignal) {
    Write("InitupdateInProgress", initupdateInProgress(), value, skipSignal,
          [this](auto changed) { ProbeObj::initupdateInProgress(changed, true); });
    return initupdateInProgress();
}

std::uint8_t ProbeObject::objectStatus(std::uint8_t value, bool skipSignal) {
    Write("ObjectStatus", objectStatus(), value, skipSignal,
          [this](auto changed) { ProbeObj::objectStatus(changed, true); });
    return objectStatus();
}

} // namespace vantric
