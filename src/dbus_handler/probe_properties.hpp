/** How a numeric sensor looks to the sensor data cache. */
#pragma once

#include "dbus_handler/property_bags.hpp"
#include "dbus_handler/sensor_numbering.hpp"
#include "publisher/requests.hpp"

#include <string>

namespace vantric {

/** Returns the bag of the probe interface.
 *  @param ldid       the LDID that the sensor stands for
 *  @param path       the object's path in its final form
 *  @param numbering  gives the probes of accelerators their numbers; main thread */
PropertyBag<bindings::ProbeObj> BuildProbeProperties(const __Sensor& sensor,
                                                     const std::string& ldid,
                                                     const std::string& path,
                                                     SensorNumbering& numbering);

} // namespace vantric
