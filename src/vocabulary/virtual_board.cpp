#include "vocabulary/vocabulary.hpp"

namespace vantric {

const std::vector<std::pair<std::string, Ldid>> virtualSensorLdids{
    {"UBB", Ldid::OfBoard()},
    {"GPU_TOTAL_POWER", Ldid::OfBoard()},
    {"IBC", Ldid::OfBoard()},
    {"RETIMER_0_TEMP", Ldid::OfBoard()},
    {"RETIMER_1_TEMP", Ldid::OfBoard()},
    {"RETIMER_2_TEMP", Ldid::OfBoard()},
    {"GPU0", Ldid::OfAccelerator(24)},
    {"GPU1", Ldid::OfAccelerator(28)},
    {"GPU2", Ldid::OfAccelerator(27)},
    {"GPU3", Ldid::OfAccelerator(23)},
    {"GPU4", Ldid::OfAccelerator(22)},
    {"GPU5", Ldid::OfAccelerator(26)},
    {"GPU6", Ldid::OfAccelerator(25)},
    {"GPU7", Ldid::OfAccelerator(21)},
};

const std::map<std::uint8_t, std::uint8_t> virtualInstanceSlots{
    {1, 24}, {2, 28}, {3, 27}, {4, 23}, {5, 22}, {6, 26}, {7, 25}, {8, 21},
};

} // namespace vantric
