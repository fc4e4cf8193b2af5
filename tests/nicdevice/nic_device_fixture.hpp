/** A network card in slot 3 with up to three endpoints, whose steps a test makes. */
#pragma once

#include "nicdevice/nic_device.hpp"

#include "common/process_flags.hpp"
#include "pldm_cmds/pdr_builders.hpp"
#include "support/captured_log.hpp"
#include "support/played_device.hpp"
#include "support/publisher_recorder.hpp"
#include "support/test_clock.hpp"

#include <gtest/gtest.h>

#include <array>
#include <optional>

namespace vantric::test {

using namespace std::chrono_literals;
using Ids = std::vector<std::uint16_t>;
using Pauses = std::vector<std::chrono::seconds>;
using Texts = std::vector<std::string>;

inline const std::string base = "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/";
inline constexpr std::uint16_t enableSensor = 0x0210; // SetNumericSensorEnable
inline constexpr std::size_t controllers = 3;

class NicDeviceTest : public testing::Test {
protected:
    NicDeviceTest() { SetClockScale(0); }

    ~NicDeviceTest() override {
        useNewEndPoints = false;
        SetPostResult(0);
        device.reset();
        TakePosted();
        TakePauses();
    }

    /** A new device in slot 3 with this many of the cards. */
    void Plug(std::size_t count, bool overVdm = true) {
        DeviceDetails details;
        details.identity = {.vendorId = 1, .subVendorId = 2, .subDeviceId = 3, .deviceId = 4};
        details.cpuAffinity = 7;
        details.slotNumber = 3;
        details.ldid = "NIC.Slot.3";
        (overVdm ? details.vdmEIDs : details.i2cEIDs).resize(count);
        std::vector<PlayedCard*> plugged;
        for (std::size_t i = 0; i < count; ++i) {
            plugged.push_back(&cards[i]);
        }
        device.emplace(details, base, plugged);
        TakePosted();
    }

    /** What an inventory posts. */
    PostedRequests Inventory() {
        device->InventoryTheDevice();
        TakePauses();
        return TakePosted();
    }

    /** Makes good cycles; which asked which controller: "3:1 " is the first, in cycle 3. */
    std::string CyclesWith(std::uint16_t command, int cycles) {
        for (auto& card : cards) {
            card.TakeCount(command);
        }
        std::string with;
        for (int cycle = 1; cycle <= cycles; ++cycle) {
            EXPECT_EQ(device->MonitorTheDevice(), 0);
            for (std::size_t i = 0; i < controllers; ++i) {
                if (cards[i].TakeCount(command) != 0) {
                    with += std::to_string(cycle) + ':' + std::to_string(i + 1) + ' ';
                }
            }
        }
        return with;
    }

    std::array<PlayedCard, controllers> cards;
    CapturedLog log;
    std::optional<PlayedDevice<NicDevice>> device;
};

} // namespace vantric::test
