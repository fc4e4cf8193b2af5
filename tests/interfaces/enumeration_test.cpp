/** The enumerators: their numbers inside the program and their texts on the bus. */
#include <com/korv/bmc/Thermal/ThermalSensor/server.hpp>
#include <xyz/openbmc_project/Inventory/Item/Accelerator/server.hpp>
#include <xyz/openbmc_project/Sensor/Value/server.hpp>

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>

namespace {

using sdbusplus::server::com::korv::bmc::thermal::ThermalSensor;
using sdbusplus::server::xyz::openbmc_project::inventory::item::Accelerator;
using sdbusplus::server::xyz::openbmc_project::sensor::Value;

/** Each word, with its prefix, stands for its number and for nothing else, and behind them there
 * are no more. */
template <typename Enum>
void ExpectEnumerators(const std::string& prefix, const std::map<int, std::string>& words,
                       int count, std::string (*toString)(Enum),
                       std::optional<Enum> (*fromString)(const std::string&)) {
    for (const auto& [number, word] : words) {
        EXPECT_EQ(prefix + word, toString(static_cast<Enum>(number)));
        EXPECT_EQ(static_cast<Enum>(number), fromString(prefix + word)) << word;
        EXPECT_EQ(std::nullopt, fromString(word));
    }
    EXPECT_NO_THROW(toString(static_cast<Enum>(count - 1)));
    EXPECT_THROW(toString(static_cast<Enum>(count)), std::out_of_range);
    EXPECT_THROW(toString(static_cast<Enum>(-1)), std::out_of_range);
}

TEST(Enumeration, WordsHaveTheseNumbers) {
    // Of the types of sensors those that a card can have.
    ExpectEnumerators<ThermalSensor::dev_types>("com.korv.bmc.Thermal.ThermalSensor.dev_types.",
                                                {{0, "UNKNOWN"},
                                                 {50, "CXL_CMB_COMP"},
                                                 {51, "CXL_CMB_CTRL"},
                                                 {52, "CXL_CMB_SPD"},
                                                 {53, "CXL_CMB_DRAM"},
                                                 {61, "GPU_COMP"},
                                                 {82, "NDC_ASIC"},
                                                 {83, "NDC_OPTICS"},
                                                 {85, "NIC_ASIC"},
                                                 {86, "NIC_OPTICS"},
                                                 {104, "HSC_MOS_PDB_TEMP"}},
                                                105, &ThermalSensor::convertdev_typesToString,
                                                &ThermalSensor::convertdev_typesFromString);
    ExpectEnumerators<Value::Unit>(
        "xyz.openbmc_project.Sensor.Value.Unit.",
        {{0, "Amperes"}, {2, "DegreesC"}, {8, "RPMS"}, {9, "Volts"}, {10, "Watts"}}, 11,
        &Value::convertUnitToString, &Value::convertUnitFromString);
    ExpectEnumerators<Accelerator::AcceleratorType>(
        "xyz.openbmc_project.Inventory.Item.Accelerator.AcceleratorType.",
        {{0, "ASIC"}, {1, "FPGA"}, {2, "GPU"}, {3, "Unknown"}}, 4,
        &Accelerator::convertAcceleratorTypeToString,
        &Accelerator::convertAcceleratorTypeFromString);
}

} // namespace
