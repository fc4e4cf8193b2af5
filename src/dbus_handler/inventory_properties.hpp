/** The first values of an inventory object's properties. */
#pragma once

#include "dbus_handler/property_bags.hpp"
#include "publisher/requests.hpp"

#include <string>

namespace vantric {

/** LDIDs of accelerators hold this. */
inline constexpr auto acceleratorLdid = "ProcAccelerator.Slot.";

/** Returns the bag of the FRU interface; every text is in it, also an empty one. */
PropertyBag<bindings::FRU> BuildFruProperties(const FruFields& fields);

/** Returns the bag of the inventory interface for the device with the LDID. */
PropertyBag<bindings::Inventory> BuildInventoryProperties(const std::string& ldid,
                                                          const FruFields& fields);

/** Returns the name that an accelerator's association has: the part of its path behind
 *  ".../inventory/system/accelerator/", or nothing. */
std::string AcceleratorAssociationName(const std::string& path);

} // namespace vantric
