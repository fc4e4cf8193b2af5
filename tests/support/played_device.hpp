/** A device without a thread of its own: the test makes its steps. */
#pragma once

#include "device/device.hpp"
#include "support/played_card.hpp"
#include "support/publisher_recorder.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vantric::test {

/** @tparam Class the class of devices under test */
template <typename Class>
class PlayedDevice : public Class {
public:
    /** @param cards one endpoint each; they outlive this
     *  @param arguments what Class wants besides the first two */
    template <typename... Arguments>
    PlayedDevice(const DeviceDetails& details, const std::string& basePath,
                 const std::vector<PlayedCard*>& cards, Arguments&... arguments)
        : Class(details, basePath, RecordingDoors(), arguments...) {
        const auto slot = static_cast<std::uint8_t>(details.slotNumber);
        for (PlayedCard* card : cards) {
            const auto eid = static_cast<std::uint8_t>(firstEid + this->cmds.size());
            this->cmds.push_back(std::make_unique<PLDMCmds>(slot, eid, card->Connect(slot, eid)));
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

} // namespace vantric::test
