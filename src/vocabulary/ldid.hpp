// SPDX-License-Identifier: Apache-2.0
/** The logical device identifier: what the platform calls a device. */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantric {

/** An LDID, such as NIC.Slot.3, NIC.Embedded.1, ProcAccelerator.Slot.5-1 or CXLMemory.Slot.2: a
 *  prefix that tells the class, the slot, and after a dash a port or an instance.
 *
 * Any text is one; what it doesn't tell, it isn't. */
class Ldid {
public:
    Ldid() = default;
    explicit Ldid(std::string text) : text(std::move(text)) {}

    /** The LDID of a device of a class (PcieDeviceClass): its prefix and the number. Nothing for a
     *  class that isn't served. */
    static std::optional<Ldid> Make(std::uint8_t deviceClass, std::uint16_t number);

    /** That of the accelerator in a slot. */
    static Ldid OfAccelerator(std::uint8_t slot);

    /** That of the board whose one endpoint speaks for several accelerators. */
    static Ldid OfBoard();

    const std::string& Text() const { return text; }

    bool IsEmbedded() const { return Holds("Embedded"); }
    bool IsEmbeddedNic() const { return Holds("NIC.Embedded."); }
    bool IsAccelerator() const { return Holds("ProcAccelerator.Slot."); }
    bool IsBoard() const { return Holds("UBB"); }

    /** The number between "Slot." and "-"; nothing if that isn't there. */
    std::optional<std::uint8_t> SlotBeforeDash() const;

    /** The LDID of a port of this device: NIC.Slot.3 gives NIC.Slot.3-1. */
    Ldid WithPort(std::uint16_t port) const { return Ldid(text + "-" + std::to_string(port)); }

    /** The same with the port before the device's number, which is how an embedded NIC's port is
     *  written: NIC.Embedded.1 gives NIC.Embedded.2-1. */
    Ldid WithPortFirst(std::uint16_t port) const;

private:
    bool Holds(std::string_view part) const { return text.find(part) != std::string::npos; }

    std::string text;
};

/** Returns the text for people of an LDID: NIC.Slot.3-1 gives "NIC in Slot 3 Port 1". An LDID of
 *  fewer than three parts is returned as it is. */
std::string MakeFriendlyLdid(std::string_view ldid);

} // namespace vantric
