#include "modeling/modeling.hpp"

#include "common/log.hpp"
#include "modeling/tree_builder.hpp"

#include <utility>

namespace vantric {

Modeling::Modeling(ModelingParameters parameters, Publisher& publisher)
    : device(std::move(parameters)), publisher(publisher) {}

Modeling::~Modeling() {
    try {
        tree.FreeTree();
        DeleteDBUSPaths(CLEAR_ALL);
    } catch (...) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Unknown error in Modeling destructor\n");
    }
}

void Modeling::CreatePDRTree(const std::shared_ptr<__extractedData>& extractedData,
                             std::uint8_t controller) {
    if (!extractedData) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Extracted data is null\n");
        return;
    }
    if (controller == 2) {
        ModelSecondController(*extractedData);
        return;
    }
    DeleteDBUSPaths(CLEAR_SENSORS);
    tree.FreeTree();
    portCount = 0;
    if (!BuildTree(tree, extractedData->entityAssociations)) {
        return;
    }
    AttachNumericSensors(extractedData->numericSensors, false, 1);
    AttachStateSensors(extractedData->stateSensors, false, 1);
    WalkTree();
}

void Modeling::ModelWithoutTree(const std::shared_ptr<__extractedData>& extractedData,
                                std::uint8_t controller) {
    if (!extractedData) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Extracted data is null\n");
        return;
    }
    AttachNumericSensors(extractedData->numericSensors, true, controller);
    AttachStateSensors(extractedData->stateSensors, true, controller);
}

void Modeling::ModelSecondController(const __extractedData& extractedData) {
    AttachNumericSensors(extractedData.numericSensors, false, 2);
    AttachStateSensors(extractedData.stateSensors, false, 2);
}

std::string Modeling::InventoryRoot() const {
    return device.inventoryBase + std::to_string(device.slot);
}

ControllerTag Modeling::Tag(std::uint8_t controller) const {
    return device.multipleControllers ? TagOfController(controller) : CONTROLLER_UNTOLD;
}

} // namespace vantric
