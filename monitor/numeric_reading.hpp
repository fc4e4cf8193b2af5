/** What a numeric sensor's object says about its reading. */
#pragma once

#include "object_model.hpp"

#include <optional>
#include <string>

namespace monitor {

/** The reading of a sensor with the value interface, the probe interface or both. */
class NumericReading {
public:
    explicit NumericReading(const Object& object);

    /** The reading with at most three decimals, or "n/a". */
    std::string Text() const;

    /** "C", "W", the last word of any other unit, or empty. */
    const std::string& Unit() const { return unit; }

    /** "ok", or what is wrong with the reading: "unavailable" for an object that isn't available or
     *  whose probe says so, "not functional", "no reading" for the value that stands for none. */
    const std::string& Status() const { return status; }

private:
    std::optional<double> value;
    std::string unit;
    std::string status;
};

} // namespace monitor
