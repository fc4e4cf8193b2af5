// SPDX-License-Identifier: Apache-2.0
/** The SCT: the platform's table of known PCIe devices and of the sensors of accelerators that
 *  count. */
#pragma once

#include "records/sensor.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <mutex>
#include <span>

namespace vantric {

/** What the process knows of the table.
 *
 * The table is read once, by the first accelerator whose read succeeds: a card that the table
 * doesn't know is a success too. It stays for the life of the process, also over a power off that
 * removes every device. A read that failed is tried again by the next inventory of any accelerator.
 * Any thread: sctMutex guards everything, the look-ups included, since one accelerator may look up
 * while another one repeats a failed read. */
class Sct {
public:
    /** The one that all accelerators share. */
    static Sct& OfProcess();

    Sct() = default;
    Sct(const Sct&) = delete;
    Sct& operator=(const Sct&) = delete;

    /** Reads the table for a card with this identity, unless it has been read. A failure is
     *  logged. May block for as long as the platform's library does. */
    void ReadOnce(const PciIdentity& ids);

    /** Whether a sensor id is one of those that count. False, with a log line, where no entry has
     *  been kept. */
    bool IsSensorInSCT(std::uint16_t sensorId) const;

private:
    static constexpr std::size_t entrySize = 232;
    using Entry = std::array<std::uint8_t, entrySize>;

    // With sctMutex held.
    int readSCT(const PciIdentity& ids);
    int addpciesctGPUdata(std::span<const std::uint8_t> entry);
    void printList() const;

    mutable std::mutex sctMutex;
    bool sctRead = false;                ///< never cleared
    std::forward_list<Entry> sctGpuList; ///< the entries kept; the last one added stands first
    std::uint16_t sctEntryCount = 0;     ///< entries of the table, while it is being read
    std::uint16_t sctAcceleratorCount = 0;
};

} // namespace vantric
