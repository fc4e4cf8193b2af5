// SPDX-License-Identifier: Apache-2.0
/** libFuzzer's way to the target that FUZZ_TARGET names. */
#include "targets.hpp"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FuzzTarget target = fuzzTargets.at(std::getenv("FUZZ_TARGET"));
    target({data, size});
    return 0;
}
