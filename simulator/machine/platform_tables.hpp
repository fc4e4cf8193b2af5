// SPDX-License-Identifier: Apache-2.0
/** The platform's tables as bytes. */
#pragma once

#include "machine/machine.hpp"

namespace simulator {

/** What is wrong with a delivered endpoint table, if anything. */
enum class TableFlaw {
    None,
    BadState,    /**< the discovery isn't complete */
    BadSource,   /**< neither of the first two words makes it acceptable */
    NotAttached, /**< the callback's record says that no table follows */
    Empty,       /**< no entries */
    Garbage,     /**< entries of noise */
};

/** A table delivery: u32 attached flag, then the endpoint table with an entry for each endpoint of
 *  each plugged card. */
Bytes EncodeTableDelivery(const Machine& machine, TableFlaw flaw);

/** Groups of the PCIe table: one more than the highest that a card names. */
std::uint32_t CatalogGroups(const Machine& machine);
/** Records of the fullest group. */
std::uint32_t CatalogCapacity(const Machine& machine);
/** The records of one group, of 98 bytes each. */
Bytes EncodeCatalogGroup(const Machine& machine, std::uint32_t group);

/** The accelerator table: entries of 232 bytes. */
Bytes EncodeAccelerators(const Machine& machine);

} // namespace simulator
