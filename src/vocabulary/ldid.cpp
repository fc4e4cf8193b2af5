// SPDX-License-Identifier: Apache-2.0
#include "vocabulary/ldid.hpp"

#include "vocabulary/device_classes.hpp"

#include <charconv>
#include <map>

namespace vantric {

namespace {

constexpr auto npos = std::string_view::npos;

const std::map<std::uint8_t, std::string> deviceLdidPrefixes{
    {PCIE_CLASS_NIC, "NIC.Slot."},
    {PCIE_CLASS_INFINIBAND, "InfiniBand.Slot."},
    {PCIE_CLASS_FIBRE_CHANNEL, "FC.Slot."},
    {PCIE_CLASS_ACCELERATOR, "ProcAccelerator.Slot."},
    {PCIE_CLASS_CXL_MEMORY, "CXLMemory.Slot."},
    {PCIE_CLASS_EMBEDDED_NIC, "NIC.Embedded."},
};

std::string FriendlyPrefix(std::string_view prefix) {
    if (prefix == "ProcAccelerator") {
        return "Proc Accelerator Controller";
    }
    if (prefix == "CXLMemory") {
        return "CXL Memory";
    }
    return std::string(prefix);
}

} // namespace

std::optional<Ldid> Ldid::Make(std::uint8_t deviceClass, std::uint16_t number) {
    const auto prefix = deviceLdidPrefixes.find(deviceClass);
    if (prefix == deviceLdidPrefixes.end()) {
        return std::nullopt;
    }
    return Ldid(prefix->second + std::to_string(number));
}

Ldid Ldid::OfAccelerator(std::uint8_t slot) {
    return Ldid("ProcAccelerator.Slot." + std::to_string(slot) + "-1");
}

Ldid Ldid::OfBoard() {
    return Ldid("UBB.Integrated.1-1");
}

std::optional<std::uint8_t> Ldid::SlotBeforeDash() const {
    constexpr std::string_view mark = "Slot.";
    const auto found = text.find(mark);
    if (found == npos) {
        return std::nullopt;
    }
    const auto digits = std::string_view(text).substr(found + mark.size());
    std::uint8_t slot = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), slot);
    const bool complete = end != digits.data() + digits.size() && *end == '-';
    return error == std::errc{} && complete ? std::optional(slot) : std::nullopt;
}

Ldid Ldid::WithPortFirst(std::uint16_t port) const {
    const auto tail = text.rfind('.') + 1;
    return Ldid(text.substr(0, tail) + std::to_string(port) + "-" + text.substr(tail));
}

std::string MakeFriendlyLdid(std::string_view ldid) {
    const auto firstDot = ldid.find('.');
    const auto secondDot = firstDot == npos ? npos : ldid.find('.', firstDot + 1);
    if (secondDot == npos) {
        return std::string(ldid);
    }
    if (ldid.find("UBB") != npos) {
        return "Integrated Universal baseboard of Instance 1";
    }
    const std::string prefix = FriendlyPrefix(ldid.substr(0, firstDot));
    const std::string_view tail = ldid.substr(secondDot + 1);
    const auto dash = tail.find('-');
    if (dash == npos) {
        return prefix + " in Slot " + std::string(tail);
    }
    const std::string before(tail.substr(0, dash));
    const std::string after(tail.substr(dash + 1));
    if (ldid.find("Embedded") != npos) {
        return "Embedded NIC " + before + " Port " + after;
    }
    const bool accelerator = ldid.find("ProcAccelerator") != npos;
    return prefix + " in Slot " + before + (accelerator ? " of Instance " : " Port ") + after;
}

} // namespace vantric
