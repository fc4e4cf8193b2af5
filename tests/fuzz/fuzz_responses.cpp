/** Answers the commands of an inventory and of two monitor cycles with the chunks of the input. */
#include "chunks.hpp"
#include "pldm_cmds/scripted_endpoint.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Chunks responses({data, size});
    ScriptedEndpoint endpoint;
    endpoint.transport.respond = [&responses](const Bytes&) {
        return responses.Empty() ? NoAnswer(3) : Answer{.status = 0, .bytes = responses.Next()};
    };
    auto& cmds = endpoint.cmds;
    cmds.GetPLDMTypes();
    endpoint.Supports(2, {0xF1F2F000}); // so that an early mistake doesn't end it all
    cmds.GetFWParameters();
    if (cmds.GetFRUMetaData() == 0) {
        cmds.GetFRUContents();
    }
    cmds.GetPLDMVersions(255);
    cmds.GetSupportedCmds(255);
    cmds.SelectPLDMVersions();
    cmds.GetTID();
    cmds.GetPDRRepositoryInfo(1);
    cmds.SetNumericeSensorEnable();
    for (int cycle = 0; cycle < 2; ++cycle) {
        vantric::ReadingMap readings;
        vantric::StateChangeMap changes;
        cmds.GetAllSensorReading(readings);
        cmds.GetStateSensorReading(changes);
        cmds.GetPDRRepositoryInfo(0);
    }
    return 0;
}
