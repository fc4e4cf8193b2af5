// SPDX-License-Identifier: Apache-2.0
/** A device without a thread of its own: the test makes its steps. */
#pragma once

#include "common/process_flags.hpp"
#include "device/device.hpp"
#include "support/captured_log.hpp"
#include "support/played_card.hpp"
#include "support/publisher_recorder.hpp"
#include "support/test_clock.hpp"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vantric::test {

using Ids = std::vector<std::uint16_t>;
using Pauses = std::vector<std::chrono::seconds>;
using Texts = std::vector<std::string>;

/** @tparam Class the class of devices under test */
template <typename Class>
class PlayedDevice : public Class {
public:
    /** @param cards one endpoint each, as many as count says; they outlive this
     *  @param arguments what Class wants besides the first two */
    template <typename Cards, typename... Arguments>
    PlayedDevice(const DeviceDetails& details, const std::string& basePath, Cards& cards,
                 std::size_t count, Arguments&... arguments)
        : Class(details, basePath, RecordingDoors(), arguments...) {
        const auto slot = static_cast<std::uint8_t>(details.slotNumber);
        for (std::size_t index = 0; index < count; ++index) {
            const auto eid = static_cast<std::uint8_t>(firstEid + index);
            this->cmds.push_back(
                std::make_unique<PLDMCmds>(slot, eid, cards[index].Connect(slot, eid)));
        }
        this->modeling = std::make_unique<Modeling>(
            ModelingParameters{.slot = slot,
                               .ldid = details.ldid,
                               .inventoryBase = basePath,
                               .identity = details.identity,
                               .cpuAffinity = static_cast<std::uint8_t>(details.cpuAffinity)},
            RecordingDoors().publisher);
        this->state = DEVICE_INVENTORY;
    }

    using Class::InventoryTheDevice;
    using Class::MonitorTheDevice;

private:
    static constexpr std::size_t firstEid = 9;
};

/** Three cards, and the device that has some of them as its endpoints. */
template <typename Class>
class DeviceClassTest : public testing::Test {
protected:
    /** @param base inventory path of the class */
    DeviceClassTest(std::string base, std::uint16_t slot, std::string ldid)
        : base(std::move(base)) {
        SetClockScale(0);
        details.identity = {.vendorId = 1, .subVendorId = 2, .subDeviceId = 3, .deviceId = 4};
        details.cpuAffinity = 7;
        details.slotNumber = slot;
        details.ldid = std::move(ldid);
    }

    ~DeviceClassTest() override {
        useNewEndPoints = false;
        SetPostResult(0);
        device.reset();
        TakePosted();
        TakePauses();
    }

    /** A new device with this many of the cards. */
    template <typename... Arguments>
    void Plug(std::size_t count, Arguments&... arguments) {
        device.emplace(details, base, cards, count, arguments...);
        TakePosted();
    }

    /** What an inventory posts. */
    PostedRequests Inventory() {
        device->InventoryTheDevice();
        TakePauses();
        return TakePosted();
    }

    /** What this many cycles post, each of which ends with the status. */
    PostedRequests Cycles(int cycles, int status = 0) {
        for (int cycle = 1; cycle <= cycles; ++cycle) {
            EXPECT_EQ(device->MonitorTheDevice(), status);
        }
        return TakePosted();
    }

    /** Makes cycles; which asked which card: "3:1 " is the first card, in cycle 3. */
    std::string CyclesWith(std::uint16_t command, int cycles, int status = 0) {
        for (auto& each : cards) {
            each.TakeCount(command);
        }
        std::string with;
        for (int cycle = 1; cycle <= cycles; ++cycle) {
            EXPECT_EQ(device->MonitorTheDevice(), status);
            for (std::size_t index = 0; index < cards.size(); ++index) {
                if (cards[index].TakeCount(command) != 0) {
                    with += std::to_string(cycle) + ':' + std::to_string(index + 1) + ' ';
                }
            }
        }
        return with;
    }

    const std::string base;
    DeviceDetails details;
    std::array<PlayedCard, 3> cards;
    PlayedCard& card = cards[0];
    CapturedLog log;
    std::optional<PlayedDevice<Class>> device;
};

} // namespace vantric::test
