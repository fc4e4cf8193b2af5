#include "dbus_handler/friendly_ldid.hpp"

namespace vantric {

namespace {

constexpr auto npos = std::string_view::npos;

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
    const std::string behind(tail.substr(dash + 1));
    if (ldid.find("Embedded") != npos) {
        return "Embedded NIC " + before + " Port " + behind;
    }
    const bool accelerator = ldid.find("ProcAccelerator") != npos;
    return prefix + " in Slot " + before + (accelerator ? " of Instance " : " Port ") + behind;
}

} // namespace vantric
