/** What a device asks of its endpoint over its life, in the order of the inputs of fuzz_responses.
 */
#pragma once

#include "pldm_cmds/scripted_endpoint.hpp"

/** An inventory and two monitor cycles, whatever the answers are. */
inline void TalkTo(ScriptedEndpoint& endpoint) {
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
}
