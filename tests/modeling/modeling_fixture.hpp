/** A device's modeling whose posts stay in the test. */
#pragma once

#include "modeling/modeling.hpp"
#include "support/captured_log.hpp"
#include "support/publisher_recorder.hpp"
#include "support/test_clock.hpp"
#include "told_card.hpp"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <utility>

namespace vantric::test {

using Texts = std::vector<std::string>;

/** Replaces the root that a path begins with by a letter, so that tables stay readable. */
inline std::string Short(const std::string& path) {
    static const std::array<std::pair<std::string, std::string>, 4> roots{{
        {"/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/", "B"},
        {"/xyz/openbmc_project/inventory/system/", "I:"},
        {"/xyz/openbmc_project/sensors/temperature/", "T:"},
        {"/xyz/openbmc_project/sensors/power/", "P:"},
    }};
    for (const auto& [root, letter] : roots) {
        if (path.starts_with(root)) {
            return letter + path.substr(root.size());
        }
    }
    return path;
}

/** "object path, inventory path, name, instance", and what a virtual board adds to it. */
inline std::string Show(const SensorInsertRequest& request) {
    std::string text = Short(request.objectPath) + ", " + Short(request.inventoryPath) + ", " +
                       request.entityName + ", " + std::to_string(request.sensor.entityInstance);
    if (request.slot != 3 || !request.resolvedLdid.empty()) {
        text += ", " + std::to_string(request.slot) + " " + request.resolvedLdid;
    }
    return request.deviceLdid == "NIC.Slot.3" ? text : "of another device: " + text;
}

/** "state path, instance, second LDID". */
inline std::string Show(const StateSensorRequest& request) {
    const std::string text = Short(request.statePath) + ", " +
                             std::to_string(request.entityInstance) + ", " + request.secondLdid;
    return request.deviceLdid == "NIC.Slot.3" ? text : "of another device: " + text;
}

template <typename Request>
Texts ShowAll(const std::vector<Request>& requests) {
    Texts texts;
    for (const auto& request : requests) {
        texts.push_back(Show(request));
    }
    return texts;
}

class ModelingTest : public testing::Test {
protected:
    ModelingTest() {
        SetClockScale(0);
        SetPostResult(0);
        Begin(false);
    }

    ~ModelingTest() override {
        modeling.reset();
        Forget();
    }

    /** Makes the device anew: the card in slot 3. */
    void Begin(bool multipleControllers, const PciIdentity& identity = {}) {
        modeling = std::make_unique<Modeling>(
            ModelingParameters{.slot = 3,
                               .ldid = "NIC.Slot.3",
                               .inventoryBase =
                                   "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/",
                               .multipleControllers = multipleControllers,
                               .identity = identity,
                               .cpuAffinity = 1},
            RecordingDoors().publisher);
        Forget();
    }

    /** What the tree makes the device post. */
    PostedRequests Publish(const ToldCard& card, std::uint8_t controller = 1) {
        modeling->CreatePDRTree(card.data, controller);
        return TakePosted();
    }

    /** What the device posts for an endpoint that tells of no entities. */
    PostedRequests PublishFlat(const ToldCard& card, std::uint8_t controller) {
        modeling->ModelWithoutTree(card.data, controller);
        return TakePosted();
    }

    static void Forget() {
        TakePosted();
        TakePauses();
    }

    std::unique_ptr<Modeling> modeling;
};

} // namespace vantric::test
