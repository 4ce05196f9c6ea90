// How two configurations in force differ.
#include <algorithm>
#include <set>
#include <tuple>

#include "askedoption.h"
#include "commands.h"
#include "errorjson.h"
#include "machine.h"
#include "places.h"
#include "printable.h"
#include "veltrane/platform/text/internal/indexformat.h"

namespace veltrane::config {

namespace {

/// One of the two that are compared.
struct Side {
    CString name;
    bool isDocument;
    Machine machine;
};

/// The same question, or rule, on both sides.
struct Difference {
    CString label;
    Json json;  // what it is about
    const Held* left;
    const Held* right;
    bool isMoved = false;             // of a rule that comes at another position
    std::pair<bool, int> group = {};  // of rules: those of columns come last, and by version
};

/// Reads both sides; their errors go into the answer.
class Sides {
public:
    Sides(Answer& answer, const Request& request, const CString& tool)
        : m_Answer(answer), m_Request(request), m_Tool(tool) {}

    Side ReadFile(const std::string& file, const char* which) {
        const CString name = L"<" + detail::Printable(FromUtf8(file)) + L">";
        Side side{name, /*isDocument*/ true, ReadMachine(ReadDocument(file), name)};
        m_Answer.document[which] = {{"document", file}, {"startup", side.machine.hasFailed ? "failed" : "ok"}};
        if (side.machine.hasFailed) AddFault(name, L"start-up failed there; values that it did not read are missing");
        return side;
    }

    Side Start(const std::vector<CString>& arguments, const CString& name, const char* which) {
        Startup startup{m_Tool, arguments, FromUtf8(m_Request.version)};
        const Request all{.program = {}, .version = {}, .command = "show", .options = {{"--all", ""}}, .words = {}};
        Answer shown = Show(all, startup);
        shown.document["schema"] = 1;
        shown.document["startup"] = startup.errors.empty() ? "ok" : "failed";
        Json words = Json::array();
        for (const CString& word : arguments) words.push_back(ToUtf8(word));
        m_Answer.document["tool"] = ToUtf8(startup.tool);
        m_Answer.document[which] = {{"arguments", std::move(words)}, {"startup", shown.document["startup"]}};
        AddErrors(startup, shown, name);
        return {name, /*isDocument*/ false, ReadMachine(shown.document, name)};
    }

private:
    void AddErrors(const Startup& startup, const Answer& shown, const CString& name) {
        for (const CString& text : startup.ErrorTexts()) AddFault(name, L"error: " + text);
        for (const XException& error : startup.errors) m_Answer.document["errors"].push_back(ErrorJson(error));
        m_Answer.hasFindings = m_Answer.hasFindings || shown.hasFindings;
        m_Answer.errorText += shown.errorText;
        if (!shown.document.contains("unreadable")) return;
        for (const Json& file : shown.document["unreadable"]) m_Answer.document["unreadable"].push_back(file);
    }

    void AddFault(const CString& side, const CString& text) {
        m_Answer.hasFindings = true;
        m_Answer.errorText += m_Request.program + ": " + ToUtf8(side + L": " + text) + '\n';
    }

    Answer& m_Answer;
    const Request& m_Request;
    const CString& m_Tool;
};

// As a document has it: bytes that are not valid UTF-8 are U+FFFD there.
std::string Documented(const CString& text) {
    return Json(ToUtf8(text)).dump(-1, ' ', /*ensure_ascii*/ false, Json::error_handler_t::replace);
}

// Facts of the program itself: its paths, its version and the time.
bool IsOfHost(const CString& name, const Held& held) {
    const XOptionDefinition* const row = FindOptionDefinition(name);
    const bool isFact = row && row->eSection == eSectionNone && held.layer == LayerName(OptionLayer::Host);
    return isFact || (row && row->eOption == eOptionMetadata && held.layer == LayerName(OptionLayer::StartUp));
}

// Options that only say where the sources are.
bool IsOfSources(const CString& name) {
    const XOptionDefinition* const row = FindOptionDefinition(name);
    return row && (row->eOption == eOptionMetadata || row->eOption == eOptionIni || row->eOption == eOptionConfig);
}

/// The rules of one side that keep their order on the other: the longest ascending series of positions.
std::set<std::size_t> LongestAscent(const std::vector<std::size_t>& positions) {
    std::vector<std::size_t> last;  // of a series of each length, the one that ends lowest
    std::vector<std::size_t> before(positions.size());
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const auto longer =
            std::ranges::lower_bound(last, positions[i], {}, [&](std::size_t k) { return positions[k]; });
        before[i] = longer == last.begin() ? i : longer[-1];
        if (longer == last.end()) {
            last.push_back(i);
        } else {
            *longer = i;
        }
    }
    std::set<std::size_t> kept;
    for (std::size_t length = last.size(), i = length ? last.back() : 0; length > 0; --length, i = before[i])
        kept.insert(i);
    return kept;
}

class Comparison {
public:
    Comparison(const Request& request, const Side& left, const Side& right)
        : m_Left(left), m_Right(right), m_HasPlaces(request.Has("--places")), m_HasHost(request.Has("--all")) {}

    std::vector<Difference> Run() {
        CompareValues();
        const std::size_t count = m_All.size();
        CompareRules();
        std::ranges::stable_sort(m_All.begin() + static_cast<std::ptrdiff_t>(count), m_All.end(), {},
                                 &Difference::group);
        return std::move(m_All);
    }

private:
    using Rule = Machine::Rule;

    bool IsSame(const Held& left, const Held& right) const {
        const bool isAlike = left.text == right.text || (!left.means.IsEmpty() && left.means == right.means);
        const bool isOneDocument = m_Left.isDocument != m_Right.isDocument;
        if (!isAlike && (!isOneDocument || Documented(left.text) != Documented(right.text))) return false;
        const auto placeOf = [](const Held& held) { return std::tuple(held.layer, held.file, held.line); };
        return !m_HasPlaces || placeOf(left) == placeOf(right);
    }

    // In the order of the options on the left; those that only the right knows come last.
    void CompareValues() {
        std::vector<CString> names = m_Left.machine.names;
        const std::set<CString> known{names.begin(), names.end()};
        for (const CString& name : m_Right.machine.names) {
            if (!known.contains(name)) names.push_back(name);
        }
        for (const CString& name : names) {
            const XOptionDefinition* const row = FindOptionDefinition(name);
            const bool isAsked = m_HasPlaces || m_HasHost || !IsOfSources(name);
            if (isAsked && (!row || !IsRule(*row))) CompareValuesOf(name);
        }
    }

    void CompareValuesOf(const CString& name) {
        std::map<std::optional<int>, std::pair<const Held*, const Held*>> both;
        const auto add = [&](const Machine& machine, auto member) {
            for (auto at = machine.values.lower_bound({name, {}});
                 at != machine.values.end() && at->first.first == name; ++at)
                both[at->first.second].*member = &at->second;
        };
        using Pair = std::pair<const Held*, const Held*>;
        add(m_Left.machine, &Pair::first);
        add(m_Right.machine, &Pair::second);
        for (const auto& [index, pair] : both) {
            const auto [left, right] = pair;
            const bool isOfHost = (!left || IsOfHost(name, *left)) && (!right || IsOfHost(name, *right));
            if ((isOfHost && !m_HasHost) || (left && right && IsSame(*left, *right))) continue;
            Json json{{"name", ToUtf8(name)}};
            if (index) json["index"] = *index;
            m_All.push_back({index ? name + FormatText(L"[%d]", *index) : name, std::move(json), left, right});
        }
    }

    static auto KeyOf(const Rule& rule) { return std::tuple(!rule.isTable, rule.version, rule.oldText); }

    // A rule's partner on the other side replaces the same text in the same version; if there are several, they are
    // paired in turn.
    std::vector<const Rule*> Partners() const {
        std::map<decltype(KeyOf(Rule{})), std::vector<const Rule*>> rest;
        const std::vector<Rule>& others = m_Right.machine.rules;
        for (auto rule = others.rbegin(); rule != others.rend(); ++rule) rest[KeyOf(*rule)].push_back(&*rule);
        std::vector<const Rule*> partners;
        for (const Rule& rule : m_Left.machine.rules) {
            std::vector<const Rule*>& same = rest[KeyOf(rule)];
            partners.push_back(same.empty() ? nullptr : same.back());
            if (!same.empty()) same.pop_back();
        }
        return partners;
    }

    void CompareRules() {
        const std::vector<const Rule*> partners = Partners();
        std::vector<std::size_t> positions;
        for (const Rule* const partner : partners) {
            if (partner) positions.push_back(static_cast<std::size_t>(partner - m_Right.machine.rules.data()));
        }
        const std::set<std::size_t> kept = LongestAscent(positions);
        const std::set<const Rule*> found{partners.begin(), partners.end()};
        std::size_t number = 0;  // among those with a partner
        for (std::size_t i = 0; i < partners.size(); ++i) {
            const Rule& rule = m_Left.machine.rules[i];
            const Rule* const partner = partners[i];
            const bool isMoved = partner && !kept.contains(number++);
            if (!partner || isMoved || !IsSame(rule.held, partner->held))
                Add(rule, &rule.held, partner ? &partner->held : nullptr, isMoved);
        }
        for (const Rule& rule : m_Right.machine.rules) {
            if (!found.contains(&rule)) Add(rule, nullptr, &rule.held, /*isMoved*/ false);
        }
    }

    void Add(const Rule& rule, const Held* left, const Held* right, bool isMoved) {
        const wchar_t* const kind = rule.isTable ? L"TABLENAME" : L"COLUMNNAME";
        m_All.push_back(
            {FormatText(L"rule %s %d", CString{kind}, rule.version) + L" " + detail::Printable(rule.oldText),
             {{"kind", rule.isTable ? "table" : "column"}, {"version", rule.version}, {"old", ToUtf8(rule.oldText)}},
             left,
             right,
             isMoved,
             {!rule.isTable, rule.version}});
    }

    const Side& m_Left;
    const Side& m_Right;
    bool m_HasPlaces;
    bool m_HasHost;
    std::vector<Difference> m_All;
};

CString HeldText(const Side& side, const Difference& difference, const Held* held) {
    if (!held) return L"-";
    const bool isPlain = !held->text.IsEmpty() && held->text != L"-";
    CString text = isPlain ? detail::Printable(held->text) : L"'" + held->text + L"'";
    if (!held->means.IsEmpty() && held->means != held->text) text += L", means " + held->means;
    if (held->position > 0) text = L"-> " + text;
    if (difference.isMoved) text += FormatText(L", number %d", held->position);
    const CString file = side.isDocument ? detail::Printable(held->file) : DisplayPath(held->file);
    const CString place = held->file.IsEmpty() ? held->layer : CString{FormatText(L"%s:%d", file, held->line)};
    return text + L" (" + place + L")";
}

Json HeldJson(const Held* held) {
    if (!held) return nullptr;
    Json json{{"value", ToUtf8(held->text)}};
    if (!held->means.IsEmpty()) json["means"] = ToUtf8(held->means);
    if (held->position > 0) json["position"] = held->position;
    json["origin"] = {{"layer", ToUtf8(held->layer)}};
    if (held->file.IsEmpty()) return json;
    json["origin"]["file"] = ToUtf8(held->file);
    json["origin"]["line"] = held->line;
    return json;
}

void AddDifferences(Answer& answer, std::vector<Difference> all, const Side& left, const Side& right) {
    answer.document["differences"] = Json::array();
    Columns columns;
    for (Difference& difference : all) {
        columns.Add({difference.label, HeldText(left, difference, difference.left),
                     HeldText(right, difference, difference.right)});
        difference.json["left"] = HeldJson(difference.left);
        difference.json["right"] = HeldJson(difference.right);
        answer.document["differences"].push_back(std::move(difference.json));
    }
    columns.Print(answer);
    answer.AddLine(
        FormatText(L"%d %s", static_cast<int>(all.size()), all.size() == 1 ? L"difference" : L"differences"));
    answer.hasFindings = answer.hasFindings || !all.empty();
}

}  // namespace

Answer Diff(const Request& request, const CString& tool, const std::vector<std::vector<CString>>& commandLines) {
    std::vector<std::vector<CString>> lines = commandLines;
    if (lines.empty() && request.words.size() == 1) lines.emplace_back();
    if (request.words.size() + lines.size() != 2)
        throw Refusal{
            L"diff compares two configurations; give each as a command line of the tool, after a '--' of its own, or "
            L"as a document of 'show --all --format json'"};
    Answer answer;
    answer.document["errors"] = Json::array();
    Sides sides{answer, request, tool};
    constexpr const char* keys[] = {"left", "right"};
    std::vector<Side> both;
    for (const std::string& file : request.words) both.push_back(sides.ReadFile(file, keys[both.size()]));
    for (const std::vector<CString>& line : lines) {
        const CString name = lines.size() == 1 ? L"command line"
                             : both.empty()    ? L"first command line"
                                               : L"second command line";
        both.push_back(sides.Start(line, name, keys[both.size()]));
    }
    AddDifferences(answer, Comparison{request, both[0], both[1]}.Run(), both[0], both[1]);
    return answer;
}

}  // namespace veltrane::config
