// SPDX-License-Identifier: Apache-2.0
#include "system/bus_dump.hpp"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <functional>
#include <regex>
#include <stdexcept>

namespace vantric::test {

namespace {

constexpr auto serviceName = "com.korv.zenth.vantricd";
const std::string sensorsRoot = "/xyz/openbmc_project/sensors";
const std::string inventoryRoot = "/xyz/openbmc_project/inventory/system";
const std::string otherInterfaces = "org.freedesktop.DBus.";

/** Calls take() with the fields of each line, which stand two spaces or more apart. Lines that
 * begin with a space go on with the line before. */
void ReadLines(const std::filesystem::path& file,
               const std::function<void(const std::vector<std::string>&)>& take) {
    std::ifstream in(file);
    if (!in) {
        throw std::runtime_error("no file " + file.string());
    }
    std::vector<std::string> fields;
    int number = 0;
    int begin = 0;
    const auto flush = [&] {
        try {
            if (!fields.empty()) {
                take(fields);
            }
        } catch (const std::runtime_error& e) {
            throw std::runtime_error(file.string() + ':' + std::to_string(begin) + ": " + e.what());
        }
        fields.clear();
    };
    for (std::string line; std::getline(in, line);) {
        ++number;
        if (line.empty() || line[0] == '#') {
            continue;
        }
        if (line[0] != ' ') {
            flush();
            begin = number;
        }
        static const std::regex gap(" {2,}");
        const auto text = line.substr(line.find_first_not_of(' '));
        std::copy(std::sregex_token_iterator(text.begin(), text.end(), gap, -1), {},
                  std::back_inserter(fields));
    }
    flush();
}

/** Adds fields such as "Value=41". */
void AddValues(std::map<std::string, std::string>& values, const std::string& field) {
    const auto equals = field.find('=');
    if (equals == std::string::npos) {
        throw std::runtime_error("\"" + field + "\" has no value");
    }
    values[field.substr(0, equals)] = field.substr(equals + 1);
}

std::string Short(const std::string& path) {
    const auto& root = path.starts_with(sensorsRoot) ? sensorsRoot : inventoryRoot;
    return path.substr(root.size() + 1);
}

std::string Whole(const std::string& path) {
    const bool sensor = path.starts_with("temperature/") || path.starts_with("power/");
    return (sensor ? sensorsRoot : inventoryRoot) + '/' + path;
}

/** A value as it stands in a file: a string without quotation marks, and as \xNN what has a meaning
 *  there or can't be seen. */
std::string Written(const std::string& value, const std::string& type) {
    const auto text = type == "s" ? value.substr(1, value.size() - 2) : value;
    std::string written;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const bool edge = i == 0 || i + 1 == text.size() || text[i - 1] == ' ';
        if (c < ' ' || c == 0x7F || c == '$' || c == '*' || c == '\\' || (c == ' ' && edge)) {
            constexpr auto digits = "0123456789abcdef";
            written += {'\\', 'x', digits[c / 16], digits[c % 16]};
        } else {
            written += static_cast<char>(c);
        }
    }
    return written;
}

/** Whether a text is the expected one, in which a * stands for anything. */
bool Matches(const std::string& text, const std::string& expected) {
    const auto star = expected.find('*');
    return star == std::string::npos
               ? text == expected
               : text.size() + 1 >= expected.size() && text.starts_with(expected.substr(0, star)) &&
                     text.ends_with(expected.substr(star + 1));
}

/** The members of an interface in their order on the bus, a line for each. */
std::string MembersIn(const std::string& xml, const std::string& interface) {
    const auto begin = xml.find("<interface name=\"" + interface + "\">");
    const auto section = xml.substr(begin, xml.find("</interface>", begin) - begin);
    static const std::regex part(
        R"re(<(property|signal|method) name="(\w+)"(?: type="(.+)" access="(\w+)")?>)re"
        R"re(|<annotation name="[\w.]+\.(\w+)" value="(\w+)"/>|<arg type="(.+)"/>)re");
    std::string members;
    for (std::sregex_iterator at(section.begin(), section.end(), part), end; at != end; ++at) {
        const auto group = [&at](int number) { return (*at)[number].str(); };
        if (!group(1).empty()) {
            members += '\n' + group(2) + "  " + (group(1) == "property" ? group(3) : group(1)) +
                       (group(4).empty() ? "" : "  " + group(4));
        } else {
            members += "  " + (group(5).empty() ? group(7) : group(5) + ' ' + group(6));
        }
    }
    return members;
}

} // namespace

BusDump::BusDump(const std::filesystem::path& file) {
    ReadInterfaces(file.parent_path() / "interfaces.bus");
    ReadObjects(file);
}

void BusDump::ReadInterfaces(const std::filesystem::path& file) {
    ReadLines(file, [this, interface = std::string()](const auto& fields) mutable {
        const auto& name = fields.front();
        if (name == "interface") {
            interface = fields.at(1);
            interfaces[interface];
        } else if (name == "kind") {
            auto& kind = kinds[fields.at(1)];
            for (auto field = fields.begin() + 2; field != fields.end(); ++field) {
                if (interfaces.contains(*field)) {
                    kind.interfaces.push_back(*field);
                } else {
                    AddValues(kind.values, *field);
                }
            }
        } else {
            auto& known = interfaces.at(interface);
            known.members += '\n' + name;
            for (auto field = fields.begin() + 1; field != fields.end(); ++field) {
                if (field->starts_with('=')) {
                    known.values[name] = field->substr(1);
                } else {
                    known.members += "  " + *field;
                }
            }
            if (fields.at(1) != "signal") {
                known.types[name] = fields[1];
            }
        }
    });
}

void BusDump::ReadObjects(const std::filesystem::path& file) {
    Values with;
    ReadLines(file, [&](const auto& fields) {
        if (fields.front() == "with") {
            with.clear();
            std::for_each(fields.begin() + 1, fields.end(),
                          [&](const auto& field) { AddValues(with, field); });
            return;
        }
        if (fields.size() < 2 || !kinds.contains(fields[1])) {
            throw std::runtime_error("no kind of object");
        }
        Object object{fields[1], {}};
        std::for_each(fields.begin() + 2, fields.end(),
                      [&](const auto& field) { AddValues(object.values, field); });
        for (const auto& [name, value] : object.values) {
            if (std::isupper(static_cast<unsigned char>(name[0])) != 0 &&
                !HasProperty(object.kind, name)) {
                throw std::runtime_error("no property " + name);
            }
        }
        object.values.insert(with.begin(), with.end());
        if (!objects.emplace(fields[0], object).second) {
            throw std::runtime_error("an object twice");
        }
    });
}

bool BusDump::HasProperty(const std::string& kind, const std::string& name) const {
    return std::ranges::any_of(kinds.at(kind).interfaces, [&](const auto& interface) {
        return interfaces.at(interface).types.contains(name);
    });
}

std::string BusDump::Expected(const std::string& name, const std::string& path,
                              const Object& object) const {
    if (name == "end") {
        return path.substr(std::min(path.rfind("sensorid_"), path.size()));
    }
    if (name == "id") {
        return path.substr(path.find_last_not_of("0123456789") + 1);
    }
    const auto& kind = kinds.at(object.kind);
    for (const auto* values : {&object.values, &kind.values}) {
        if (const auto found = values->find(name); found != values->end()) {
            return Expanded(found->second, path, object);
        }
    }
    for (const auto& interface : kind.interfaces) {
        const auto& values = interfaces.at(interface).values;
        if (const auto found = values.find(name); found != values.end()) {
            return Expanded(found->second, path, object);
        }
    }
    return "nothing";
}

std::string BusDump::Expanded(const std::string& text, const std::string& path,
                              const Object& object) const {
    static const std::regex variable("\\$(\\w+)");
    std::string expanded;
    auto rest = text.begin();
    for (std::sregex_iterator at(text.begin(), text.end(), variable), end; at != end; ++at) {
        expanded.append(rest, (*at)[0].first);
        expanded += Expected((*at)[1].str(), path, object);
        rest = (*at)[0].second;
    }
    return expanded.append(rest, text.end());
}

const std::string& BusDump::KindOf(const Interfaces& seen) const {
    const auto found = std::ranges::find_if(kinds, [&](const auto& kind) {
        const auto& names = kind.second.interfaces;
        return std::ranges::is_permutation(names, seen, {}, {},
                                           [](const auto& one) { return one.first; });
    });
    static const std::string none = "(no kind has these interfaces)";
    return found == kinds.end() ? none : found->first;
}

BusDump::Sides BusDump::Compare(const std::string& path, const Object& object,
                                const Interfaces& seen) const {
    Sides difference;
    for (const auto& [interface, properties] : seen) {
        for (const auto& [name, value] : properties) {
            const auto& types = interfaces.at(interface).types;
            const auto type = types.find(name);
            const auto written = Written(value, type == types.end() ? "" : type->second);
            const auto expected = Expected(name, path, object);
            if (!Matches(written, expected)) {
                difference.expected += "  " + name + '=' + expected;
                difference.seen += "  " + name + '=' + written;
            }
        }
    }
    return difference;
}

BusDump::Sides BusDump::CompareMembers(BusClient& client, const std::string& path,
                                       const Object& object) const {
    const auto xml = client.Introspect(serviceName, Whole(path));
    for (const auto& name : kinds.at(object.kind).interfaces) {
        const auto& expected = interfaces.at(name).members;
        const auto seen = MembersIn(xml, name);
        if (expected != seen) {
            return {"  interface  " + name + expected, "  interface  " + name + seen};
        }
    }
    return {};
}

std::string BusDump::Difference(BusClient& client) const {
    std::map<std::string, Interfaces> seen;
    try {
        for (const auto& root : {sensorsRoot, inventoryRoot}) {
            for (auto& [path, shown] : client.GetManagedObjects(serviceName, root)) {
                std::erase_if(shown, [](const auto& interface) {
                    return interface.first.starts_with(otherInterfaces);
                });
                seen.emplace(Short(path), std::move(shown));
            }
        }
    } catch (const std::runtime_error& e) {
        return e.what(); // no daemon on the bus, now
    }
    std::string text;
    const auto tell = [&text](const std::string& path, const Sides& difference) {
        if (!(difference == Sides{})) {
            text += path + "\n  expected" + difference.expected + "\n  seen    " + difference.seen +
                    '\n';
        }
    };
    for (const auto& [path, object] : objects) {
        const auto found = seen.find(path);
        if (found == seen.end()) {
            tell(path, {"  " + object.kind, "  no object"});
        } else if (const auto& kind = KindOf(found->second); kind != object.kind) {
            tell(path, {"  " + object.kind, "  " + kind});
        } else {
            tell(path, Compare(path, object, found->second));
        }
    }
    for (const auto& [path, shown] : seen) {
        if (!objects.contains(path)) {
            const auto& kind = KindOf(shown);
            const auto values =
                kinds.contains(kind) ? Compare(path, {kind, {}}, shown).seen : std::string();
            tell(path, {"  no object", "  " + kind + values});
        }
    }
    if (text.empty()) {
        for (const auto& [path, object] : objects) {
            tell(path, CompareMembers(client, path, object));
        }
    }
    return text;
}

} // namespace vantric::test
