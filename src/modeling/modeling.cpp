#include "modeling/modeling.hpp"

#include "common/log.hpp"

#include <utility>

namespace vantric {

namespace {

/** The part of a sensor's record that modeling carries. */
__Sensor Reduce(const __Temp_sensors& record) {
    __Sensor sensor;
    sensor.sensorKind = record.sensorNeededFor;
    sensor.baseUnit = record.baseUnit;
    sensor.sensorId = record.sensorID;
    sensor.entityInstance = record.entityInstanceNumber;
    sensor.entityType = record.entityType;
    sensor.temperature = record.temperature;
    sensor.thresholdReadError = record.thresholdReadingError;
    sensor.upperFatal = record.upperThresholdFatal;
    sensor.upperCritical = record.upperThresholdCritical;
    sensor.upperWarning = record.upperThresholdWarning;
    sensor.normalMax = record.normalMax;
    sensor.normalMin = record.normalMin;
    sensor.lowerFatal = record.lowerThresholdFatal;
    sensor.lowerCritical = record.lowerThresholdCritical;
    sensor.lowerWarning = record.lowerThresholdWarning;
    sensor.name = record.auxSensorName;
    return sensor;
}

} // namespace

Modeling::Modeling(ModelingParameters parameters) : device(std::move(parameters)) {}

Modeling::~Modeling() {
    try {
        DeleteDBUSPaths(CLEAR_ALL);
    } catch (...) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Unknown error in Modeling destructor\n");
    }
}

void Modeling::ModelWithoutTree(const std::shared_ptr<__extractedData>& extractedData,
                                std::uint8_t controller) {
    AttachNumericSensors(extractedData->numericSensors, true, controller);
}

void Modeling::AttachNumericSensors(const NumericSensors& sensors, bool flat,
                                    std::uint8_t controller) {
    for (const auto& record : sensors) {
        __Sensor sensor = Reduce(*record);
        if (flat) {
            sensor.entityInstance = 0;
        }
        UpdateDbus(sensor, flat, controller);
    }
}

} // namespace vantric
