// SPDX-License-Identifier: Apache-2.0
/** The platform's table of accelerators: when it is read, and what is kept of it. */
#include "accelerator/sct.hpp"

#include "accelerator/played_sct.hpp"
#include "support/captured_log.hpp"

#include <gtest/gtest.h>

#include <thread>

std::uint16_t SlotCatalogAllDevices(void** entries) {
    return vantric::test::sctTable.Answer(entries);
}

namespace vantric::test {
namespace {

constexpr PciIdentity card{
    .vendorId = 0x1002, .subVendorId = 0x1003, .subDeviceId = 0x4321, .deviceId = 0x1234};

class SctTest : public testing::Test {
protected:
    SctTest() { sctTable = {}; }

    CapturedLog log;
    Sct sct;
};

TEST_F(SctTest, KeepsTheSensorsOfTheFirstEntryThatIsTheCards) {
    sctTable.rows = {{.type = 22 + 0x10000, .sensorIds = {10}},
                     {.identity = {1, 0x1234, 0x1003, 0x4321}, .sensorIds = {11}},
                     {.identity = {0x1002, 1, 0x1003, 0x4321}, .sensorIds = {12}},
                     {.identity = {0x1002, 0x1234, 1, 0x4321}, .sensorIds = {13}},
                     {.identity = {0x1002, 0x1234, 0x1003, 1}, .sensorIds = {14}},
                     {.sensorIds = {405, 30, 7, 65535}},
                     {.sensorIds = {15}}};
    sct.ReadOnce(card);
    for (const std::uint16_t id : {405, 30, 7, 65535}) {
        EXPECT_TRUE(sct.IsSensorInSCT(id)) << id;
    }
    for (const std::uint16_t id : {0, 8, 10, 11, 12, 13, 14, 15}) {
        EXPECT_FALSE(sct.IsSensorInSCT(id)) << id;
    }
    EXPECT_EQ(log.Messages(1), (std::vector<std::string>{"Sensor entry in SCT with 405\n",
                                                         "Sensor entry in SCT with 30\n",
                                                         "Sensor entry in SCT with 7\n",
                                                         "Sensor entry in SCT with 65535\n"}));
}

TEST_F(SctTest, ATableWithoutTheCardIsReadAndNotReadAgain) {
    sctTable.rows = {{.type = 1}};
    sct.ReadOnce(card);
    EXPECT_EQ(log.Count(4, "Number of accelerator entry in SCT is 0\n"), 1);
    sctTable.rows = {{}};
    sct.ReadOnce(card);
    EXPECT_FALSE(sct.IsSensorInSCT(405));
    EXPECT_EQ(log.Count(2, "Current is null, cannot access its members\n"), 1);
    EXPECT_EQ(sctTable.calls, 1);
}

TEST_F(SctTest, AFailedReadIsTriedAgain) {
    const std::string noDevices = "NO PCI DEVICES are found in SCT";
    const std::string failed = "SCT read failed with status: 1\n";
    for (const PlayedSct& table :
         {PlayedSct{.withoutBuffer = true}, PlayedSct{.rows = {{}}, .withoutEntries = true},
          PlayedSct{.rows = {{}}, .withoutBuffer = true}}) {
        sctTable = table;
        sct.ReadOnce(card);
    }
    EXPECT_EQ(log.Messages(1), (std::vector{noDevices + "\n", failed, noDevices + "\n", failed,
                                            noDevices + " - pciesctDevices NULL\n", failed}));
    sctTable = {.rows = {{}}};
    sct.ReadOnce(card);
    EXPECT_TRUE(sct.IsSensorInSCT(405));
}

TEST_F(SctTest, CardsMayLookUpWhileOneReads) {
    sctTable.rows = {{}};
    std::vector<std::thread> cards;
    for (int i = 0; i < 4; ++i) {
        cards.emplace_back([this] {
            sct.IsSensorInSCT(405);
            sct.ReadOnce(card);
            EXPECT_TRUE(sct.IsSensorInSCT(405));
        });
    }
    for (auto& thread : cards) {
        thread.join();
    }
    EXPECT_EQ(sctTable.calls, 1);
}

} // namespace
} // namespace vantric::test
