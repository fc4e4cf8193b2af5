// SPDX-License-Identifier: Apache-2.0
/** What the platform's signals tell this process. Both callbacks run on "dbusEventHandler" and let
 *  no exception out. */
#pragma once

#include <sdbusplus/message.hpp>

namespace vantric {

/** Sets hostPowerState from the property CurrentHostState of a PropertiesChanged signal. */
void HostPowerStatusCB(sdbusplus::message_t& message);

/** Has the sensors of a card typed anew when the InterfacesAdded signal says that the FRU of the
 *  card has come up. */
void FRUEventCallback(sdbusplus::message_t& message);

} // namespace vantric
