/** What people call a device. */
#pragma once

#include <string>
#include <string_view>

namespace vantric {

/** Returns the text for people of an LDID: NIC.Slot.3-1 gives "NIC in Slot 3 Port 1". An LDID of
 *  fewer than three parts is returned as it is. */
std::string MakeFriendlyLdid(std::string_view ldid);

} // namespace vantric
