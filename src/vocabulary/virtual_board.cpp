#include "vocabulary/vocabulary.hpp"

namespace vantric {

const std::vector<std::pair<std::string, std::string>> virtualSensorLdids{
    {"UBB", "UBB.Integrated.1-1"},
    {"GPU_TOTAL_POWER", "UBB.Integrated.1-1"},
    {"IBC", "UBB.Integrated.1-1"},
    {"RETIMER_0_TEMP", "UBB.Integrated.1-1"},
    {"RETIMER_1_TEMP", "UBB.Integrated.1-1"},
    {"RETIMER_2_TEMP", "UBB.Integrated.1-1"},
    {"GPU0", "ProcAccelerator.Slot.24-1"},
    {"GPU1", "ProcAccelerator.Slot.28-1"},
    {"GPU2", "ProcAccelerator.Slot.27-1"},
    {"GPU3", "ProcAccelerator.Slot.23-1"},
    {"GPU4", "ProcAccelerator.Slot.22-1"},
    {"GPU5", "ProcAccelerator.Slot.26-1"},
    {"GPU6", "ProcAccelerator.Slot.25-1"},
    {"GPU7", "ProcAccelerator.Slot.21-1"},
};

const std::unordered_map<std::uint8_t, std::string> virtualInstanceSlots{
    {1, "24"}, {2, "28"}, {3, "27"}, {4, "23"}, {5, "22"}, {6, "26"}, {7, "25"}, {8, "21"},
};

} // namespace vantric
