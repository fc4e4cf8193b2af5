/** Texts that D-Bus can't carry as they are neither hide other objects nor get lost. */
#include "system/cards_expected.hpp"

namespace vantric::test {
namespace {

class Texts : public SharedServer<Texts> {
public:
    static constexpr auto scenario = "texts.yaml";
};

/** Digits that go on from 0 to 9. */
std::string Digits(std::size_t count) {
    std::string digits;
    while (digits.size() < count) {
        digits += static_cast<char>('0' + digits.size() % 10);
    }
    return digits;
}

const std::string bad = "\xEF\xBF\xBD"; // U+FFFD
const std::string longest = "A text as long as a field can be: " + Digits(221);

TEST_F(Texts, OfFirmwareAndFru) {
    ExpectShown({
        {"Nic/Slot/1",
         {{"Inventory.FirmwareVersion", "2"}, // up to the first NUL of UTF-16
          {"FRU.Model", ""},
          {"FRU.PN", ""},
          {"FRU.SN", ""},
          {"FRU.Vendor", ""},
          {"FRU.Name", ""},
          {"FRU.Version", "A2"},
          {"FRU.Description", longest}}},
        {"Nic/Slot/2", {{"Inventory.FirmwareVersion", ""}, {"FRU.Model", ""}}},
        {"Nic/Slot/3", {{"Inventory.FirmwareVersion", "v" + bad + "1" + bad}}},
        {"Nic/Slot/4", {{"Inventory.FirmwareVersion", longest}}},
        {"Nic/Slot/5", {{"Inventory.FirmwareVersion", ""}}},
    });
}

TEST_F(Texts, OfSensors) {
    const std::vector<std::string> names{
        "A" + bad + "B",
        bad + "A" + bad,
        "Wärme 😀",
        "A" + bad + "B" + bad,
        "A",
        "Temperature Sensor 6",
        "A\x07\x7F"
        "B",
        Digits(382),
        "L" + bad + "fter",
        "Fan",
        Digits(96),
    };
    std::vector<Expected> table{
        {"Nic/Slot/1/sensor/state/sensorid_20",
         {{"StateSensor.StateSensorDetails", R"({"Lä": ("Link State", "Disconnected"), ")" + bad +
                                                 R"(": ("Health State", "Normal")})"}}}};
    for (std::size_t i = 0; i < names.size(); ++i) {
        table.push_back(
            {"temperature/NIC_Slot_1_sensorid_" + std::to_string(i + 1),
             {{"ProbeObj.ProbeLocation", names[i]}, {"Value.Value", std::to_string(31 + i)}}});
    }
    ExpectShown(table);
}

} // namespace
} // namespace vantric::test
