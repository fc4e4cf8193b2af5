/** The first values of a state sensor's properties, and its details. */
#pragma once

#include "dbus_handler/property_bags.hpp"
#include "publisher/requests.hpp"

#include <map>
#include <string>
#include <tuple>

namespace vantric {

/** Member name to the state set it belongs to and the state it is in. */
using StateSensorDetails = std::map<std::string, std::tuple<std::string, std::string>>;

/** Returns the details that the request tells, for count members. A list that doesn't number count
 *  reads as so many times "Unavailable". Of members of one name the last counts. */
StateSensorDetails BuildStateDetails(const StateSensorRequest& request, std::size_t count);

/** Returns the bag of the state sensor interface.
 *  @param path  the object's path in its final form */
PropertyBag<bindings::StateSensor> BuildStateSensorProperties(const StateSensorRequest& request,
                                                              const std::string& path);

} // namespace vantric
