/** A device's modeling whose posts stay in the test. */
#pragma once

#include "modeling/modeling.hpp"
#include "support/captured_log.hpp"
#include "support/immediate_channel.hpp"
#include "support/posted_requests.hpp"
#include "support/test_clock.hpp"
#include "told_card.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace vantric::test {

inline const std::string base = "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/";
inline const std::string temperatures = "/xyz/openbmc_project/sensors/temperature/";
inline const std::string powers = "/xyz/openbmc_project/sensors/power/";

class ModelingTest : public testing::Test {
protected:
    ModelingTest() {
        SetClockScale(0);
        SetChannelResult(0);
        Begin(false);
    }

    ~ModelingTest() override {
        modeling.reset();
        Forget();
    }

    /** Makes the device anew: the card in slot 3. */
    void Begin(bool multipleControllers, const PciIdentity& identity = {}) {
        modeling.reset();
        modeling = std::make_unique<Modeling>(
            ModelingParameters{.slot = 3,
                               .ldid = "NIC.Slot.3",
                               .inventoryBase = base,
                               .multipleControllers = multipleControllers,
                               .identity = identity,
                               .cpuAffinity = 1});
        Forget();
    }

    /** What controller 1's tree makes the device post. */
    PostedRequests Publish(const ToldCard& card) {
        modeling->CreatePDRTree(card.data, 1);
        return TakePosted();
    }

    /** What controller 2 makes the device post. */
    PostedRequests PublishSecond(const ToldCard& card) {
        modeling->CreatePDRTree(card.data, 2);
        return TakePosted();
    }

    static void Forget() {
        TakePosted();
        TakePauses();
    }

    std::unique_ptr<Modeling> modeling;
};

} // namespace vantric::test
