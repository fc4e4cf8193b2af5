/** The questions that a device asks of other services, where there is no bus: no answer. */
#include "dbus_handler/dbus_handler.hpp"

namespace vantric {

std::string DBusHandler::getUDIDPropertyVal(std::uint8_t /*slot*/, std::uint8_t /*busAddress*/) {
    return {};
}

} // namespace vantric
