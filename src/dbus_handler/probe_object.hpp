// SPDX-License-Identifier: Apache-2.0
/** The probe interface, whose writes are mirrored to the platform's sensor data cache. */
#pragma once

#include "dbus_handler/property_bags.hpp"

#include <sdbusplus/bus.hpp>
#include <sensorstore.hpp>

#include <cstdint>
#include <string>

namespace vantric {

/** Values of the property ProbeStatus. */
enum ProbeStatus : std::uint8_t {
    PROBE_STATUS_NONE = 0,
    PROBE_STATUS_GOOD = 2,
};

/** Values of the property ObjectStatus. */
enum ObjectStatus : std::uint8_t {
    OBJECT_READY = 2,
    OBJECT_NOT_READY = 6,
};

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

private:
    /** The cache hears of a new value before the bus does, and may refuse it. A Key that is written
     *  also makes the cache resolve it to this object, even if it has it already. */
    void write(const Write& write) override;

    std::string objectPath;
    bool cached = false;
};

} // namespace vantric
