// SPDX-License-Identifier: Apache-2.0
#include "pdr/record.hpp"

namespace simulator {

using simulator_link::PayloadWriter;

Pdr EncodeLocator(const TerminusLocator& locator) {
    return {PdrType::TerminusLocator, PayloadWriter()
                                          .Write(terminusHandle)
                                          .Write(static_cast<std::uint8_t>(locator.valid ? 1 : 0))
                                          .Write(locator.tid)
                                          .Write(locator.container)
                                          .Write(locator.type)
                                          .Write(static_cast<std::uint8_t>(locator.value.size()))
                                          .Write(std::span<const std::uint8_t>(locator.value))
                                          .Finish()};
}

} // namespace simulator
