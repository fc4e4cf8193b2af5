// SPDX-License-Identifier: Apache-2.0
/** Which PCIe device stands in a slot. */
#pragma once

#include "device/device_details.hpp"
#include "devicemanager/end_point_entry.hpp"

#include <optional>

namespace vantric {

/** What the platform's PCIe table tells of the device of an endpoint: its class, identity, CPU
 *  affinity and LDID. Nothing where the library failed, which is logged, and where it has no usable
 *  record. Any thread. */
std::optional<DeviceDetails> getDevicePCIeIDsForSlot(const EndPointEntry& entry);

} // namespace vantric
