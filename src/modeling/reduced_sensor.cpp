#include "modeling/reduced_sensor.hpp"

namespace vantric {

__Sensor ReduceSensor(const __Temp_sensors& record) {
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

} // namespace vantric
