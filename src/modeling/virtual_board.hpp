/** The baseboard whose one endpoint speaks for eight accelerators and for the board itself. */
#pragma once

#include "modeling/sensor_place.hpp"
#include "publisher/requests.hpp"

#include <cstdint>
#include <string>

namespace vantric {

/** Slots of the accelerators, as the platform counts them. */
inline constexpr std::uint8_t firstAcceleratorSlot = 21;
inline constexpr std::uint8_t lastAcceleratorSlot = 28;

/** The one sensor of the endpoint that each accelerator shows as its own. */
inline constexpr std::uint16_t sharedSensorId = 1;

/** LDID and inventory path of the board itself. */
inline constexpr auto virtualBoardLdid = "UBB.Integrated.1-1";
inline constexpr auto virtualBoardPath = "/xyz/openbmc_project/inventory/system/UBB";

/** LDID of the accelerator in a slot. */
std::string VirtualAcceleratorLdid(const std::string& slot);

/** Whether the identity is that of such a board. */
bool IsVirtualBoard(const PciIdentity& identity);

/** Where the accelerator in a slot shows the shared sensor. The name is left to the caller. */
SensorPlace SharedSensorPlace(std::uint8_t slot);

/** Finds out from a sensor's own name which part of the system it stands for, and rewrites LDID,
 *  sensor path, slot and inventory path. False, and nothing changed, if the name tells nothing. */
bool ResolveVirtualSensor(const __Sensor& sensor, SensorPlace& place);

/** Moves a state sensor of the card or of a logical accelerator to the part of the system that it
 *  stands for: state path, second LDID and, for an accelerator, instance 0. */
void VirtualStateSensorPath(StateSensorRequest& request);

} // namespace vantric
