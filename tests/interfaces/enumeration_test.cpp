/** The enumerators: their numbers inside the program and their texts on the bus. */
#include <com/korv/bmc/Thermal/ThermalSensor/server.hpp>
#include <xyz/openbmc_project/Inventory/Item/Accelerator/server.hpp>
#include <xyz/openbmc_project/Sensor/Value/server.hpp>

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace {

using sdbusplus::server::com::korv::bmc::thermal::ThermalSensor;
using sdbusplus::server::xyz::openbmc_project::inventory::item::Accelerator;
using sdbusplus::server::xyz::openbmc_project::sensor::Value;

/** Checks that the words are the enumerators, in this order and no more of them. */
template <typename Enum>
void ExpectEnumerators(const std::string& prefix, const std::string& words,
                       std::string (*toString)(Enum),
                       std::optional<Enum> (*fromString)(const std::string&)) {
    std::istringstream stream(words);
    std::string word;
    int number = 0;
    for (; stream >> word; ++number) {
        EXPECT_EQ(prefix + word, toString(static_cast<Enum>(number)));
        EXPECT_EQ(static_cast<Enum>(number), fromString(prefix + word)) << word;
        EXPECT_EQ(std::nullopt, fromString(word));
    }
    EXPECT_THROW(toString(static_cast<Enum>(number)), std::out_of_range);
    EXPECT_THROW(toString(static_cast<Enum>(-1)), std::out_of_range);
}

TEST(Enumeration, SensorTypes) {
    ExpectEnumerators<ThermalSensor::dev_types>(
        "com.korv.bmc.Thermal.ThermalSensor.dev_types.",
        "UNKNOWN CHASSIS_AMBIENT NODE_AMBIENT CPU CPU_DTS CPU_MARGIN CPU1_VR_CTRL CPU1_VR_PSTAGE "
        "CPU2_VR_CTRL CPU2_VR_PSTAGE CPU3_VR_CTRL CPU3_VR_PSTAGE CPU4_VR_CTRL CPU4_VR_PSTAGE "
        "DIMM_CPU1 DIMM_CPU1_VR_CTRL DIMM_CPU1_VR_PSTAGE DIMM_CPU2 DIMM_CPU2_VR_CTRL "
        "DIMM_CPU2_VR_PSTAGE DIMM_CPU3 DIMM_CPU3_VR_CTRL DIMM_CPU3_VR_PSTAGE DIMM_CPU4 "
        "DIMM_CPU4_VR_CTRL DIMM_CPU4_VR_PSTAGE HDD HDD_FRONT HDD_MID HDD_REAR PCIESSD_CARD "
        "PCIESSD_DRIVE PCIESSD_DRIVE_FRONT PCIESSD_DRIVE_REAR SSD SSD_REAR VBOOTM_COMPONENT_NVME "
        "CPU_PWR_ALL DIMM_PWR_ALL FAN_PWR_AUX FAN_PWR_MAIN SYS_PWR_INPUT_AC SYS_PWR_OUTPUT_DC "
        "BBU_PACKAGE BBU_PCB_TEMP BOOTM_AMBIENT BOOTM_COMPONENT BOOTM_COMPONENT_NVME CHIPSET "
        "COMPUTE_BOARD_PWR CXL_CMB_COMP CXL_CMB_CTRL CXL_CMB_SPD CXL_CMB_DRAM CXL_CMM_COMP "
        "CXL_CMM_CTRL CXL_CMM_SPD CXL_CMM_DRAM DDM_PDB_TEMP DDM_POWER FPGA_COMP GPU_COMP GPU_ASIC "
        "GPU_BOARD_FAN_PWR GPU_BOARD_RETIMER GPU_BOARD_PWR GPU_BOARD_TEMP GPU_BOARD_EXHAUST "
        "GPU_PWR GPU_BOARD_TLIMIT GPU_BOARD_SWITCH GPU_BOARD_FPGA GPU_BOARD_CX7 GPU_BOARD_CX8 "
        "GPU_BOARD_HMC GPU_BOARD_AMBIENT GPU_BOARD_HSC ICA_OFFSET_CONTROL MDOT2 MiniRAIDC_Battery "
        "MiniRAIDC_Controller NDC_AMBIENT NDC_ASIC NDC_OPTICS NIC_AMBIENT NIC_ASIC NIC_OPTICS "
        "PCI_AUX_PWR PCI_MAIN_PWR PCI_SDK PCI_BOARD_SWITCH PCI_BOARD_RETIMER RAIDC_BATTERY "
        "RAIDC_CONTROLLER PHY_EXHAUST PHY_PCI_INLET PSU_AC_INPPWR PSU_AC_INPVOL PSU_AMBIENT "
        "PSU_COMP_TEMP PSU_DC_OUTPWR PSU_EXHAUST STORAGE_PWR NVDIMM_BATTERY HSC_MOS_PDB_TEMP",
        &ThermalSensor::convertdev_typesToString, &ThermalSensor::convertdev_typesFromString);
    EXPECT_EQ(50, static_cast<int>(ThermalSensor::dev_types::CXL_CMB_COMP));
    EXPECT_EQ(61, static_cast<int>(ThermalSensor::dev_types::GPU_COMP));
    EXPECT_EQ(85, static_cast<int>(ThermalSensor::dev_types::NIC_ASIC));
    EXPECT_EQ(104, static_cast<int>(ThermalSensor::dev_types::HSC_MOS_PDB_TEMP));
}

TEST(Enumeration, Units) {
    ExpectEnumerators<Value::Unit>(
        "xyz.openbmc_project.Sensor.Value.Unit.",
        "Amperes CFM DegreesC Joules Meters Percent PercentRH Pascals RPMS Volts Watts",
        &Value::convertUnitToString, &Value::convertUnitFromString);
}

TEST(Enumeration, Accelerators) {
    ExpectEnumerators<Accelerator::AcceleratorType>(
        "xyz.openbmc_project.Inventory.Item.Accelerator.AcceleratorType.", "ASIC FPGA GPU Unknown",
        &Accelerator::convertAcceleratorTypeToString,
        &Accelerator::convertAcceleratorTypeFromString);
}

} // namespace
