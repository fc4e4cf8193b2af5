/** Takes the input for a FRU table and for a timestamp. */
#include "pldm_cmds/scripted_endpoint.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    ScriptedEndpoint endpoint;
    vantric::CheckFRURecordTypeAndParse(input, endpoint.Data(), 9);
    vantric::convertToTimestamp104(input);
    return 0;
}
