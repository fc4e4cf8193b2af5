/** The probe interface, whose writes are mirrored to the platform's sensor data cache. */
#pragma once

#include "dbus_handler/property_bags.hpp"

#include <sdbusplus/bus.hpp>
#include <sensorstore.hpp>

#include <cstdint>
#include <string>

namespace vantric {

/** com.korv.zenth.Sensor.ProbeObj at one path.
 *
 * Every changed property goes to the cache before it goes to the bus. An object that is cached
 * offers each write to the cache first, and a write that the cache refuses doesn't happen. Belongs
 * to the main thread. */
class ProbeObject : public SensorStoreCluster, public bindings::ProbeObj {
public:
    /** Registers the interface and writes the properties of the bag. The object is cached unless
     *  the bag holds "meta-NonCached", with any value.
     *  @throws sdbusplus::exception::SdBusError if the path is malformed or has the interface. */
    ProbeObject(sdbusplus::bus_t& bus, const std::string& path,
                const PropertyBag<bindings::ProbeObj>& bag);

    /** Takes the key, and the object if it is cached, out of the cache. */
    ~ProbeObject() override;

    // Reads and the writes without a flag are the binding's; these are what all writes end in. Each
    // returns the value that the property has afterwards.
    using ProbeObj::entityID;
    using ProbeObj::friendlyLDID;
    using ProbeObj::initupdateInProgress;
    using ProbeObj::key;
    using ProbeObj::objectStatus;
    using ProbeObj::probeCapabilities;
    using ProbeObj::probeLocation;
    using ProbeObj::probeReading;
    using ProbeObj::probeStatus;
    using ProbeObj::probeThresholds;
    using ProbeObj::reAliasedName;
    using ProbeObj::sensorNumber;
    using ProbeObj::subType;
    using ProbeObj::targetDevKey;
    using ProbeObj::type1MaxReadingRange;
    using ProbeObj::type1MinReadingRange;
    using ProbeObj::unitModifier;

    /** Also makes the cache resolve the key to this object, even if it has it already. */
    std::string key(std::string value, bool skipSignal) override;
    std::uint32_t subType(std::uint32_t value, bool skipSignal) override;
    std::int32_t probeReading(std::int32_t value, bool skipSignal) override;
    ProbeThresholds probeThresholds(ProbeThresholds value, bool skipSignal) override;
    std::uint8_t probeStatus(std::uint8_t value, bool skipSignal) override;
    std::uint8_t unitModifier(std::uint8_t value, bool skipSignal) override;
    std::uint16_t probeCapabilities(std::uint16_t value, bool skipSignal) override;
    std::string probeLocation(std::string value, bool skipSignal) override;
    std::string reAliasedName(std::string value, bool skipSignal) override;
    std::string targetDevKey(std::string value, bool skipSignal) override;
    std::string friendlyLDID(std::string value, bool skipSignal) override;
    std::uint32_t sensorNumber(std::uint32_t value, bool skipSignal) override;
    std::uint8_t entityID(std::uint8_t value, bool skipSignal) override;
    std::uint8_t type1MinReadingRange(std::uint8_t value, bool skipSignal) override;
    std::uint8_t type1MaxReadingRange(std::uint8_t value, bool skipSignal) override;
    std::uint32_t initupdateInProgress(std::uint32_t value, bool skipSignal) override;
    std::uint8_t objectStatus(std::uint8_t value, bool skipSignal) override;

private:
    template <typename T, typename Store>
    bool Write(const char* property, const T& stored, const T& value, bool skipSignal, Store store);

    std::string objectPath;
    bool cached = false;
};

} // namespace vantric
