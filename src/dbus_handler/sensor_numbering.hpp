/** The numbers that tell sensors of one type apart. */
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace vantric {

/** Counters of all devices together, and the memory of what each sensor was given: a sensor that
 *  goes and comes back keeps its number. Belongs to the main thread. */
struct SensorNumbering {
    /** One of the instance counters below. */
    using Counter = std::uint16_t SensorNumbering::*;

    std::uint16_t nicAsicInstance = 151;
    std::uint16_t nicOpticsInstance = 151;
    std::uint16_t ndcAsicInstance = 151;
    std::uint16_t ndcOpticsInstance = 151;
    std::uint16_t nicOtherInstance = 151;
    std::uint16_t cxlCompInstance = 0;
    std::uint16_t cxlCtrlInstance = 0;
    std::uint16_t cxlSpdInstance = 0;
    std::uint16_t cxlDramInstance = 0;
    std::uint16_t cxlOtherInstance = 0;
    std::uint16_t gpuCompInstance = 0;
    std::uint16_t gpuOtherInstance = 0;
    std::uint16_t procAccelNumber = 1;
    std::unordered_map<std::string, std::uint16_t> instanceNumbers; ///< by object path
    std::unordered_map<std::string, std::uint8_t> procAccelNumbers; ///< by probe key

    /** Returns the instance of the sensor at path: the one it has had, or the counter's next. */
    std::uint16_t InstanceOf(const std::string& path, Counter counter);

    /** Returns the number of an accelerator's probe in "System Board Proc Accel" names. */
    std::uint8_t ProcAccelNumberOf(const std::string& key);
};

} // namespace vantric
