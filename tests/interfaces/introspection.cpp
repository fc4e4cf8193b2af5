#include "interfaces/introspection.hpp"

#include <sstream>
#include <stdexcept>
#include <vector>

namespace vantric::test {

namespace {

/** The part of the introspection that belongs to one interface. */
std::string Section(const std::string& xml, const std::string& interface) {
    const auto begin = xml.find("<interface name=\"" + interface + "\">");
    if (begin == std::string::npos) {
        throw std::runtime_error("no interface " + interface);
    }
    return xml.substr(begin, xml.find("</interface>", begin) - begin);
}

/** The value of an attribute of the element on the line, or nothing. */
std::string Attribute(const std::string& line, const std::string& name) {
    const std::string head = ' ' + name + "=\"";
    const auto begin = line.find(head);
    if (begin == std::string::npos) {
        return "";
    }
    const auto value = begin + head.size();
    return line.substr(value, line.find('"', value) - value);
}

/** A property or signal, gathered from the lines of its elements. */
struct Member {
    std::string kind;
    std::string name;
    std::string types;
    std::string access;
    std::string changes = "change"; // D-Bus's own default
};

/** The members of an interface. sd-bus writes each element on a line of its own. */
std::vector<Member> Members(const std::string& section) {
    std::vector<Member> members;
    std::istringstream lines(section);
    for (std::string line; std::getline(lines, line);) {
        std::string element;
        std::istringstream(line) >> element;
        if (element == "<property" || element == "<signal" || element == "<method") {
            auto& member = members.emplace_back();
            member.kind = element.substr(1);
            member.name = Attribute(line, "name");
            member.types = Attribute(line, "type");
            member.access = Attribute(line, "access");
        } else if (element == "<arg" && !members.empty()) {
            members.back().types += Attribute(line, "type");
        } else if (Attribute(line, "name") == "org.freedesktop.DBus.Property.EmitsChangedSignal" &&
                   !members.empty()) {
            members.back().changes = Attribute(line, "value");
        }
    }
    return members;
}

} // namespace

std::string DescribeInterface(BusClient& client, const char* service, const std::string& path,
                              const std::string& interface) {
    std::string lines;
    for (const auto& member : Members(Section(client.Introspect(service, path), interface))) {
        lines += member.name + ' ';
        if (member.kind == "property") {
            lines += member.types + ' ' + member.access + ' ' + member.changes + ' ' +
                     client.GetProperty(service, path, interface.c_str(), member.name.c_str());
        } else {
            lines += member.kind + ' ' + member.types;
        }
        lines += '\n';
    }
    return lines;
}

} // namespace vantric::test
