// SPDX-License-Identifier: Apache-2.0
/** libFuzzer's way to the conversation. */
#include "conversation.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TalkToInput({data, size});
    return 0;
}
