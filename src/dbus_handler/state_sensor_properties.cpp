#include "dbus_handler/state_sensor_properties.hpp"

#include "common/utf8.hpp"
#include "vocabulary/ldid.hpp"

#include <vector>

namespace vantric {

namespace {

/** A list that is taken as it is if it has the right length. */
class MemberTexts {
public:
    MemberTexts(const std::vector<std::string>& texts, std::size_t count)
        : texts(texts.size() == count ? &texts : nullptr) {}

    std::string operator[](std::size_t member) const {
        return texts != nullptr ? ValidUtf8((*texts)[member]) : "Unavailable";
    }

private:
    const std::vector<std::string>* texts;
};

/** The three names of a state sensor. */
struct Names {
    std::string ldid;
    std::string friendly;
    std::string keyTarget;
};

Names NamesOf(const std::string& ldid, std::uint16_t instance) {
    if (instance == 0) {
        return {ldid, MakeFriendlyLdid(ldid), ldid};
    }
    const std::string port = std::to_string(instance);
    const std::string withPort = ldid + "-" + port;
    Names names{withPort, MakeFriendlyLdid(withPort), withPort};
    if (ldid.find("Embedded") != std::string::npos) {
        // An embedded NIC's LDID has the port first.
        const auto tail = ldid.rfind('.') + 1;
        names.ldid = ldid.substr(0, tail) + port + "-" + ldid.substr(tail);
    }
    return names;
}

const char* KeyTag(const std::string& path) {
    const auto holds = [&path](const char* part) { return path.find(part) != std::string::npos; };
    if (holds("/sensor/state/sensorid_ctrl1_")) {
        return "#sensorid_ctrl1_";
    }
    return holds("/sensor/state/sensorid_ctrl2_") ? "#sensorid_ctrl2_" : "#sensorid_";
}

} // namespace

StateSensorDetails BuildStateDetails(const StateSensorRequest& request, std::size_t count) {
    const MemberTexts names(request.memberNames, count);
    const MemberTexts stateSets(request.stateSetNames, count);
    const MemberTexts values(request.valueTexts, count);
    StateSensorDetails details;
    for (std::size_t member = 0; member < count; ++member) {
        details.insert_or_assign(names[member], std::make_tuple(stateSets[member], values[member]));
    }
    return details;
}

PropertyBag<bindings::StateSensor> BuildStateSensorProperties(const StateSensorRequest& request,
                                                              const std::string& path) {
    Names names = NamesOf(request.secondLdid, request.entityInstance);
    PropertyBag<bindings::StateSensor> bag;
    Put(bag, "LDID", std::move(names.ldid));
    Put(bag, "FriendlyLDID", std::move(names.friendly));
    Put(bag, "SensorID", std::uint32_t{request.sensorId});
    Put(bag, "StateSensorDetails", BuildStateDetails(request, request.memberCount));
    Put(bag, "Key", names.keyTarget + KeyTag(path) + std::to_string(request.sensorId));
    return bag;
}

} // namespace vantric
