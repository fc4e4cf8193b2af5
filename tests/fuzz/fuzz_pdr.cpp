/** Feeds records to the parsers of all PDR types, one after the other into the same endpoint. */
#include "chunks.hpp"
#include "pldm_cmds/scripted_endpoint.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Chunks records({data, size});
    ScriptedEndpoint endpoint;
    endpoint.Supports(2, {0xF1F1F000, 0xF1F2F000});
    while (!records.Empty()) {
        endpoint.HandlePDR(records.Next());
    }
    endpoint.cmds.GetExtractedData();
    return 0;
}
