// SPDX-License-Identifier: Apache-2.0
/** Turns the published objects into cards. */
#pragma once

#include "card.hpp"
#include "object_model.hpp"

#include <vector>

namespace monitor {

/** The cards by name, each with its sensors and states by id, numbers in the order of their value.
 *  A state sensor belongs to the inventory object that its path hangs from, a numeric sensor to the
 *  one that its association hangs from. Where there is no such object, a card without particulars
 *  stands for it, named after the path. */
std::vector<Card> BuildCards(const ObjectModel& model);

/** Drops the cards that aren't called so: the text is part of the name or the LDID, in capitals or
 *  not, and a number at its end is a whole one. */
void KeepCalled(std::vector<Card>& cards, const std::string& text);

} // namespace monitor
