// SPDX-License-Identifier: Apache-2.0
/** The PDR repository of a terminus. */
#pragma once

#include "pdr/record.hpp"

#include <chrono>

namespace simulator {

/** Records in order, with handles from 1 on, and the time of their last change. */
class Repository {
public:
    explicit Repository(const TerminusDescription& terminus);

    /** Makes the records anew and moves the time of the last change on. */
    void Rebuild(const TerminusDescription& terminus);

    std::size_t Count() const { return records.size(); }

    /** Bytes of all records together. */
    std::size_t Size() const;
    /** Bytes of the largest record. */
    std::size_t Largest() const;

    /** A record with its common header; handle 0 stands for the first one. Null if there is no
     *  such record. */
    const Bytes* Find(std::uint32_t handle) const;
    /** The handle after a record's, 0 after the last one. */
    std::uint32_t Next(std::uint32_t handle) const;

    /** The time of the last change as timestamp104 (DSP0240). */
    Bytes UpdateTime() const;
    /** Moves the time of the last change on, by one microsecond. */
    void Touch() { updated += std::chrono::microseconds(1); }

private:
    std::vector<Bytes> records;
    std::chrono::sys_time<std::chrono::microseconds> updated;
};

} // namespace simulator
