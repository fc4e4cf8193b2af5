/** From a numeric sensor as its PDR describes it to what modeling carries of it. */
#pragma once

#include "records/extracted_data.hpp"
#include "records/sensor.hpp"

namespace vantric {

/** The part of a sensor's record that modeling carries, as it stands in the record. */
__Sensor ReduceSensor(const __Temp_sensors& record);

} // namespace vantric
