// SPDX-License-Identifier: Apache-2.0
/** Which properties an object starts with, for each interface that isn't thermal control's, whose
 * first values ThermalTyping gives. */
#pragma once

#include "dbus_handler/property_bags.hpp"
#include "dbus_handler/thermal_typing.hpp"
#include "publisher/requests.hpp"

#include <cstddef>
#include <map>
#include <string>
#include <tuple>

namespace vantric {

/** Returns the bags of a numeric sensor.
 *  @param path    the object's path in its final form
 *  @param typing  gives the thermal interface its bag, and blocks for that as it does; main thread
 */
PropertyBags BuildSensorProperties(const SensorInsertRequest& request, const std::string& path,
                                   ThermalTyping& typing);

/** Returns the bag of the probe interface.
 *  @param ldid    the LDID that the sensor stands for
 *  @param path    the object's path in its final form
 *  @param typing  gives the probes of accelerators their numbers; main thread */
PropertyBag<bindings::ProbeObj> BuildProbeProperties(const __Sensor& sensor,
                                                     const std::string& ldid,
                                                     const std::string& path,
                                                     ThermalTyping& typing);

/** Member name to the state set it belongs to and the state it is in. */
using StateSensorDetails = std::map<std::string, std::tuple<std::string, std::string>>;

/** Returns the details that the request tells, for count members. A list that doesn't number count
 *  reads as so many times "Unavailable". Of members of one name the last counts. */
StateSensorDetails BuildStateDetails(const StateSensorRequest& request, std::size_t count);

/** Returns the bag of the state sensor interface.
 *  @param path  the object's path in its final form */
PropertyBag<bindings::StateSensor> BuildStateSensorProperties(const StateSensorRequest& request,
                                                              const std::string& path);

/** Returns the bags of a device with FRU data. */
PropertyBags BuildFruInventoryProperties(const FruInventoryRequest& request);

/** Returns the bags of a device without FRU data; those of an accelerator tell what it is and which
 *  slot it sits in.
 *  @param path  the object's path in its final form */
PropertyBags BuildPlainInventoryProperties(const PlainInventoryRequest& request,
                                           const std::string& path);

/** Returns the bags of a controller. */
PropertyBags BuildControllerProperties(const ControllerRequest& request);

/** Returns the name that an accelerator's association has: the part of its path after
 *  acceleratorInventoryRoot, up to the next slash, or nothing. */
std::string AcceleratorAssociationName(const std::string& path);

} // namespace vantric
