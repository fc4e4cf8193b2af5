// SPDX-License-Identifier: Apache-2.0
/** The border between bytes from a card and text for D-Bus. */
#pragma once

#include <string>

namespace vantric {

/** Returns text as a D-Bus string can carry it. A NUL ends it. Each maximal run of bytes that
 *  begins a character but doesn't complete it, and each byte that begins none, becomes U+FFFD
 *  (Unicode, "U+FFFD Substitution of Maximal Subparts"); so do the noncharacters, which sd-bus
 *  refuses though they are well-formed. Any thread. */
std::string ValidUtf8(std::string text);

} // namespace vantric
