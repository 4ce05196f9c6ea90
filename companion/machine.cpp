#include "machine.h"

#include <fstream>
#include <limits>

#include <nlohmann/json.hpp>

#include "printable.h"
#include "request.h"

namespace veltrane::config {

namespace {

constexpr std::size_t LARGEST_DOCUMENT = std::size_t{16} << 20;  // bytes; the sample's takes 1/400
constexpr int DEEPEST = 16;                                      // levels; answers have half of that
constexpr int MOST_MEMBERS = 64;  // of an object, whose names are searched one by one; answers have a dozen

/// Reads a document, which may hold anything.
class MachineReader {
public:
    MachineReader(const Json& document, const CString& name) : m_Document(document), m_Name(name) {}

    Machine Read() {
        const int schema = Number(m_Document, "schema");
        if (schema != 1) throw Refusal{FormatText(L"%s has schema %d; this program reads schema 1", m_Name, schema)};
        const Json& options = List(m_Document, "options");
        const Json& rules = List(m_Document, "rules");
        m_Machine.hasFailed = Text(m_Document, "startup") != L"ok";
        ForEach(options, "options", [this](const Json& option) { ReadOption(option); });
        ForEach(rules, "rules", [this](const Json& rule) { ReadRule(rule); });
        return std::move(m_Machine);
    }

private:
    [[noreturn]] void Refuse(const std::string& field) const {
        throw Refusal{FormatText(L"%s is not an answer of 'show --all --format json': '%s%s' is missing or wrong",
                                 m_Name, FromUtf8(m_Where), FromUtf8(field))};
    }

    const Json* Find(const Json& object, const char* field) const {
        if (!object.is_object()) Refuse(field);
        const auto found = object.find(field);
        return found == object.end() ? nullptr : &*found;
    }

    const Json& Typed(const Json& object, const char* field, bool (Json::*isOfType)() const noexcept) const {
        const Json* const found = Find(object, field);
        if (!found || !(found->*isOfType)()) Refuse(field);
        return *found;
    }
    const Json& List(const Json& object, const char* field) const { return Typed(object, field, &Json::is_array); }
    CString Text(const Json& object, const char* field) const {
        return FromUtf8(Typed(object, field, &Json::is_string).get_ref<const std::string&>());
    }
    int Number(const Json& object, const char* field) const {
        const auto number = Typed(object, field, &Json::is_number_integer).get<double>();
        using Limits = std::numeric_limits<int>;
        if (number < Limits::min() || number > Limits::max()) Refuse(field);
        return static_cast<int>(number);
    }
    bool Flag(const Json& object, const char* field) const {
        return Typed(object, field, &Json::is_boolean).get<bool>();
    }

    template <class Body>
    void ForEach(const Json& list, const std::string& name, Body body) {
        for (std::size_t i = 0; i < list.size(); ++i) {
            m_Where = name + '[' + std::to_string(i) + "].";
            body(list[i]);
        }
    }

    void ReadPlace(const Json& place, Held& held) const {
        held.layer = Text(place, "layer");
        if (!Find(place, "file")) return;
        held.file = Text(place, "file");
        held.line = Number(place, "line");
    }

    void ReadOption(const Json& option) {
        const CString name = Text(option, "name");
        if (m_Machine.names.empty() || m_Machine.names.back() != name) m_Machine.names.push_back(name);
        const Json* const value = Find(option, "value");
        if (value && value->is_null()) return;
        Held held{Text(option, "value")};
        if (Find(option, "means")) held.means = Text(option, "means");
        for (const Json& candidate : List(option, "candidates")) {
            if (Flag(candidate, "wins")) ReadPlace(candidate, held);
        }
        Machine::Key key{name, {}};
        if (Find(option, "index")) key.second = Number(option, "index");
        if (!m_Machine.values.emplace(std::move(key), std::move(held)).second) Refuse("name");
    }

    void ReadRule(const Json& rule) {
        const CString kind = Text(rule, "kind");
        if (kind != L"table" && kind != L"column") Refuse("kind");
        Machine::Rule read{kind == L"table", Number(rule, "version"), Text(rule, "old"), {Text(rule, "new")}};
        if (!Flag(rule, "in_force")) return;
        const Json* const origin = Find(rule, "origin");
        if (!origin) Refuse("origin");
        ReadPlace(*origin, read.held);
        read.held.position = ++m_Positions[{read.isTable, read.version}];
        m_Machine.rules.push_back(std::move(read));
    }

    const Json& m_Document;
    CString m_Name;
    std::string m_Where;  // "options[3]."
    Machine m_Machine;
    std::map<std::pair<bool, int>, int> m_Positions;  // of the last rule of each kind and version
};

std::string ReadBytes(const std::string& file, const CString& name) {
    std::ifstream stream{file, std::ios::binary};
    std::string bytes;
    char piece[1 << 16];
    while (stream.read(piece, sizeof piece), stream.gcount() > 0) {
        bytes.append(piece, static_cast<std::size_t>(stream.gcount()));
        if (bytes.size() > LARGEST_DOCUMENT) throw Refusal{FormatText(L"%s is larger than 16 MiB", name)};
    }
    if (!stream.eof()) throw Refusal{FormatText(L"%s cannot be read", name)};
    return bytes;
}

/// Stops reading a text that cannot be an answer, before it costs memory or time.
class ShapeGuard {
public:
    explicit ShapeGuard(const CString& name) : m_Name(name) {}

    bool operator()(int depth, Json::parse_event_t event, const Json& /*parsed*/) {
        if (depth > DEEPEST)
            throw Refusal{FormatText(L"%s is nested too deeply for an answer of this program", m_Name)};
        if (event == Json::parse_event_t::object_start) m_Members[depth + 1] = 0;
        if (event == Json::parse_event_t::key && ++m_Members[depth] > MOST_MEMBERS)
            throw Refusal{FormatText(L"%s has an object with too many members for an answer of this program", m_Name)};
        return true;
    }

private:
    CString m_Name;
    int m_Members[DEEPEST + 2] = {};  // of the open object of each depth
};

}  // namespace

Machine ReadMachine(const Json& document, const CString& name) {
    return MachineReader{document, name}.Read();
}

Json ReadDocument(const std::string& file) {
    const CString name = L"<" + detail::Printable(FromUtf8(file)) + L">";
    const std::string bytes = ReadBytes(file, name);
    try {
        return Json::parse(bytes, ShapeGuard{name});
    } catch (const Json::parse_error& error) {
        throw Refusal{FormatText(L"%s is not a JSON document: error at byte %d", name, static_cast<int>(error.byte))};
    } catch (const Json::exception&) {
        throw Refusal{FormatText(L"%s contains a number that is too large", name)};
    }
}

}  // namespace veltrane::config
