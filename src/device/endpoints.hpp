// SPDX-License-Identifier: Apache-2.0
/** How a device can be reached, and which endpoints are its controllers. */
#pragma once

#include "device/device_details.hpp"
#include "publisher/publisher.hpp"

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace vantric {

/** The endpoints of one device, those of them that are in use, and whose turn it is to use them.
 *
 * deviceMutex orders the monitor thread, which holds it for the commands of an inventory and for a
 * monitor cycle, and the callback thread, which brings new endpoints. Acquire and BeginWork take
 * it; unless told otherwise, everything else wants it held, or no second thread yet. */
class Endpoints {
public:
    /** Index of a controller to its EID. */
    using Controllers = std::map<std::uint8_t, std::uint16_t>;

    /** @param udids outlives this */
    Endpoints(const DeviceDetails& details, const UdidReader& udids);

    /** Takes deviceMutex, after whoever asked for it before. Any thread. */
    std::unique_lock<std::mutex> Acquire();

    /** The same for the commands of an inventory or of a monitor cycle. Monitor thread. */
    std::unique_lock<std::mutex> BeginWork();

    /** Whether a table has come since the latest work began. */
    bool HaveChangedSinceWorkBegan() const { return generation != workGeneration; }

    /** Whether a table has rearranged several controllers since the latest work began. */
    bool SeveralMovedSinceWorkBegan() const;

    /** Takes over those of a new table. */
    void Replace(std::vector<EID_table> i2cEIDs, std::vector<EID_table> vdmEIDs);

    /** Goes over to I2C, which is logged. Returns whether other endpoints are in use now. */
    bool UseI2C_EIDs();

    /** Orders the endpoints in use into controllers. May ask the platform for their UDIDs. */
    void Update_Controller_EID_Map();

    const Controllers& ControllerEIDMap() const { return controllerEIDMap; }

    /** Whether the endpoints in use are the I2C ones. Any thread, without the mutex. */
    bool UsesI2C() const { return useI2C; }

private:
    void OrderVdmControllers();
    void OrderI2cControllers();

    const UdidReader& udids;
    const std::uint16_t slotNumber;
    const bool embedded; ///< an embedded NIC
    std::vector<EID_table> mI2C_EIDs;
    std::vector<EID_table> mVDM_EIDs;
    std::atomic<bool> useI2C;
    Controllers controllerEIDMap;
    std::uint32_t generation = 0;     ///< tables taken over
    std::uint32_t workGeneration = 0; ///< generation when the latest work began
    Controllers workControllers;      ///< those it began with
    std::mutex deviceMutex;
    /** Held only while waiting for deviceMutex: who waits there blocks those who come later, so
     *  that a monitor thread that starts its next cycle at once can't overtake a waiting table. */
    std::mutex turnMutex;
};

} // namespace vantric
