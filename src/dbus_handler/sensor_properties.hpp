/** The first values of a numeric sensor's properties. */
#pragma once

#include "dbus_handler/property_bags.hpp"
#include "dbus_handler/thermal_properties.hpp"
#include "publisher/requests.hpp"

#include <string>

namespace vantric {

/** The LDID that a sensor stands for: the resolved one if there is one, else the device's. */
const std::string& EffectiveLdid(const SensorInsertRequest& request);

/** Returns which numbering and naming of thermal sensors the device follows. An embedded NIC is
 *  told by its LDID, everything else by its inventory path. */
DeviceClass DeviceClassOf(const std::string& inventoryPath, const std::string& effectiveLdid);

/** Fills the bags that all compositions of numeric sensors share: Value, Warning, Critical,
 *  Availability, OperationalStatus, Definitions. An alarm is set where the reading at creation is
 *  at or beyond its threshold. */
void FillOpenBmcBags(PropertyBags& bags, const SensorInsertRequest& request);

} // namespace vantric
