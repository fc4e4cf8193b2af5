/** The platform's table of accelerators: when it is read, what is kept of it, and which sensors are
 *  wanted for it. */
#include "accelerator/sct.hpp"

#include "accelerator/played_sct.hpp"
#include "modeling/sensor_choice.hpp"
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

TEST_F(SctTest, UnitEntityAndTableChooseASensor) {
    constexpr std::uint16_t listed = 405;
    constexpr std::uint16_t other = 406;
    constexpr int dropped = -1;
    struct Choice {
        std::uint16_t sensorId;
        std::uint16_t entityType;
        std::uint8_t baseUnit;
        int ofCard; ///< kind
        int ofBoard;
    };
    const std::vector<Choice> choices{
        {listed, 149, 2, 1, 1},
        {listed, 68, 3, 1, 1},
        {listed, 0x7FFF, 2, 1, 1},
        {listed, 32836, 2, 2, 2},
        {listed, 0x8000, 3, 2, 2},
        {other, 68, 2, dropped, 3},
        {other, 79, 3, dropped, 3},
        {other, 148, 2, dropped, 3},
        {other, 24576, 2, dropped, 3},
        {other, 149, 2, dropped, dropped},
        {other, 32917, 2, dropped, dropped},
        {other, 68, 7, 3, 3},
        {other, 79, 7, 3, 3},
        {other, 148, 7, 3, 3},
        {other, 24576, 7, 3, 3},
        {other, 32917, 7, 3, 3},
        {other, 149, 7, 3, dropped},
        {listed, 32836, 7, 3, dropped},
        {listed, 149, 4, dropped, dropped},
        {listed, 68, 0, dropped, dropped},
    };
    sctTable.rows = {{}};
    sct.ReadOnce(card);
    const auto isInTable = [this](std::uint16_t sensorId) { return sct.IsSensorInSCT(sensorId); };
    const auto kind = [](const std::optional<SensorKind>& chosen) {
        return chosen ? static_cast<int>(*chosen) : dropped;
    };
    for (const auto& [id, type, unit, ofCard, ofBoard] : choices) {
        SCOPED_TRACE(testing::Message() << id << ' ' << type << ' ' << int{unit});
        EXPECT_EQ(kind(ClassifyNumericSensor(isInTable, id, type, unit)), ofCard);
        EXPECT_EQ(kind(ClassifyUbbNumericSensor(isInTable, id, type, unit)), ofBoard);
    }
}

} // namespace
} // namespace vantric::test
