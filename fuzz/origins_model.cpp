#include "origins_model.h"

#include <algorithm>
#include <cstdlib>

namespace origins {

namespace {

enum Kind { Text, Flag, Optional, Several };

/// In the order in which a start reads them; "@" is the database's section.
struct Row {
    const char* name;
    const char* section;  ///< empty: never read
    Kind kind;
    bool isMandatory;
};

constexpr Row ROWS[] = {
    {"create-views", "USER", Flag, false},
    {"quiet", "USER", Flag, false},
    {"exit", "USER", Flag, false},
    {"spool", "USER", Optional, false},
    {"name", "ROOT", Text, true},
    {"dictionary-root", "ROOT", Text, false},
    {"data", "ROOT", Text, false},
    {"changefile-root", "ROOT", Text, false},
    {"logfile", "ROOT", Text, false},
    {"logging", "ROOT", Text, false},
    {"ini", "USER", Text, false},
    {"metadata", "ROOT", Text, false},
    {"config", "USER", Text, false},
    {"exe-path", "", Text, true},
    {"exe-name", "", Text, true},
    {"load-dictionary", "USER", Several, false},
    {"dictionary-name", "@", Text, true},
    {"role", "@", Text, true},
    {"registry", "@", Text, true},
    {"autodoc-index", "AUTODOC", Text, false},
    {"autodoc-title", "AUTODOC", Text, false},
    {"obsolete-classes", "@", Several, false},
    {"map-file", "@FILES", Several, false},
    {"index-file", "@FILES", Several, false},
};

const Row* RowOf(const std::string& name) {
    const auto row = std::ranges::find(ROWS, name, [](const Row& known) { return std::string{known.name}; });
    return row == std::end(ROWS) ? nullptr : row;
}

bool IsFolder(const std::string& option) {
    return option == "metadata" || option == "config" || option == "changefile-root" || option == "logging";
}

bool IsSame(const std::string& left, const std::string& right) {
    return Lower(left) == Lower(right);
}

bool IsAbsolute(const std::string& path) {
    return path.starts_with('/') || path.find(':') != path.npos;
}

std::string Join(const std::string& folder, const std::string& name) {
    if (folder.empty()) return name;
    const std::size_t separator = folder.find_last_of("/\\");
    return folder + (separator == folder.npos ? '\\' : folder[separator]) + name;
}

// The number of an item "PREFIXnumber"; false without one.
bool NumberBehind(const std::string& item, const std::string& prefix, int& number) {
    if (!item.starts_with(prefix)) return false;
    const std::string digits = item.substr(prefix.size());
    if (digits.empty() || digits.find_first_not_of("0123456789") != digits.npos) return false;
    number = std::atoi(digits.c_str());
    return true;
}

}  // namespace

Model::Model(const World& world, const std::string& folder)
    : m_World(world), m_Folder(folder), m_Tool(ToolOf(world)), m_Sources(Write(world, m_Tool)) {}

void Model::Run() {
    const auto host = [this](Fact::Host when) {
        for (const Fact& fact : m_World) {
            if (fact.layer != Layer::Host || fact.host != when || fact.isDeleted) continue;
            const Origin origin{Layer::Host, {}, 0, {}, {}, fact.text};
            if (when != Fact::Host::IntoItem) {
                Insert(fact.key, fact.text, fact.index, origin);
            } else if (Item* const item = Find(fact.key, fact.index)) {
                const bool isChanged = item->value != fact.text;
                item->value = fact.text;
                if (isChanged) item->given.push_back(origin);
            }
        }
    };
    host(Fact::Host::BeforeStart);
    for (const auto& [name, value] : {std::pair{"exe-path", m_Folder}, std::pair{"exe-name", std::string{"Tool.exe"}}})
        Insert(name, value, -1, {Layer::Host, {}, 0, {}, {}, value});
    ParseWords();
    m_bRegistry = true;
    ResolveMetadata();
    ResolveFolder("config", "configuration");
    ResolveFolder("changefile-root", "changefile");
    ResolveFolder("logging", "log");
    m_bDataKnownEarly = [this] {
        if (const Item* const data = Find("data", -1)) return !data->value.empty();
        const std::vector<Origin> asked = Ask("ROOT", "data", /*withFiles*/ false);
        return std::ranges::any_of(asked, [](const Origin& origin) { return !origin.text.empty(); });
    }();
    OpenFiles();
    for (const Row& row : ROWS) {
        if (row.section[0]) Retrieve(row.name);
    }
    host(Fact::Host::AfterReading);
    host(Fact::Host::IntoItem);
}

Item* Model::Find(const std::string& option, int index) {
    for (Item& item : m_Items) {
        if (item.option == option && (index < 0 || item.index == index)) return &item;
    }
    return nullptr;
}

void Model::Insert(const std::string& option, const std::string& value, int index, const Origin& origin) {
    Item* item = RowOf(option)->kind == Several ? nullptr : Find(option, -1);
    if (!item) item = &m_Items.emplace_back(Item{option, index, {}, {}});
    item->value = value;
    item->given.push_back(origin);
}

void Model::ParseWords() {
    for (const Named& named : m_Sources.named) {
        const Fact& fact = *named.fact;
        int index = -1;
        if (fact.isDeleted) {
            Insert("exit", "true", -1, {Layer::CommandLine, {}, 0, {}, {}, "true", named.word});
            continue;
        }
        if (RowOf(fact.key)->kind == Several) {
            index = 0;
            for (const Item& item : m_Items) {
                if (item.option == fact.key) index = std::max(index, item.index + 1);
            }
        }
        Insert(fact.key, Expand(fact.text, "", 0), index, {Layer::CommandLine, {}, 0, {}, {}, fact.text, named.word});
    }
}

void Model::ResolveMetadata() {
    Retrieve("metadata");
    const std::string given = ItemText("metadata");
    if (!IsAbsolute(given)) {
        const std::string folder = Join(ItemText("exe-path"), given.empty() ? ".metadata" : given);
        Insert("metadata", folder, -1, {Layer::StartUp, {}, 0, {}, {}, folder});
    }
    if (!Exists(ItemText("metadata"))) throw Failure("no metadata");
}

void Model::ResolveFolder(const std::string& option, const std::string& byDefault) {
    Retrieve(option);
    const std::string given = ItemText(option);
    if (!IsAbsolute(given)) {
        Retrieve("data");
        const std::string data = ItemText("data");
        if (data.empty()) return;
        if (!Exists(data)) throw Failure("no data");
        const std::string folder = Join(data, given.empty() ? byDefault : given);
        Insert(option, folder, -1, {Layer::StartUp, {}, 0, {}, {}, folder});
        if (given.empty()) return;
    }
    if (!Exists(ItemText(option))) throw Failure("no " + option);
}

// The folders that the program of the check makes.
bool Model::Exists(const std::string& path) const {
    std::string below = path;
    std::ranges::replace(below, '\\', '/');
    if (below.starts_with(m_Folder)) below = below.substr(m_Folder.size());
    if (below.starts_with("D:")) below = below.substr(2);
    const char* const known[] = {"", "/.metadata", "/meta", "/data", "/sub", "/data/sub", "/data/configuration"};
    return std::ranges::find(known, below) != std::end(known);
}

void Model::OpenFiles() {
    Retrieve("ini");
    std::string file = ItemText("ini");
    if (!file.empty() && !IsAbsolute(file)) {
        const std::string folder = ItemText("config");
        if (folder.empty() || !Exists(folder)) throw Failure("no config");
        file = Join(folder, file);
    }
    if (file.find("missing") != file.npos) throw Failure("no user file");
    m_UserName = file;
    m_BasicName = Lower(Join(ItemText("metadata"), m_Tool + ".ini"));
}

void Model::Retrieve(const std::string& option) {
    const Row& row = *RowOf(option);
    if (Find(option, -1)) return;
    const std::string section = row.section[0] == '@' ? (Retrieve("name"), Section(option)) : Section(option);
    if (row.kind == Several) {
        std::vector<Found> family = Family(option, section);
        std::ranges::stable_sort(family, {}, &Found::index);
        for (const Found& found : family)
            Insert(option, Expand(found.origin.text, section, 0), found.index, found.origin);
        return;
    }
    const std::string value = Value(section, option, 0);
    if (value.empty() && row.isMandatory) throw Failure("no " + option);
    if (value.empty()) return;
    Insert(option, value, -1, Ask(section, option, /*withFiles*/ true).front());
}

std::string Model::Section(const std::string& option) const {
    const Row& row = *RowOf(option);
    if (row.section[0] != '@') return row.section;
    const std::string own = row.section + 1;
    const Item* const name = Find("name", -1);
    const std::string database = name ? name->value : Value("ROOT", "name", 0);
    return own.empty() ? database : database.empty() ? own : database + "\\" + own;
}

// Each source's own answer, the one that counts first.
std::vector<Origin> Model::Ask(const std::string& section, const std::string& key, bool withFiles) const {
    std::vector<Origin> answers = AskRegistry(section, key);
    for (const Layer layer : {Layer::UserFile, Layer::BasicFile}) {
        if (!withFiles) continue;
        for (const Origin& origin : AskFile(layer, section, key)) answers.push_back(origin);
    }
    if (section != "ROOT") return answers;
    const auto variable = m_Sources.environment.find(key);
    if (variable == m_Sources.environment.end() || variable->second.empty()) return answers;
    const Origin origin{Layer::Environment, {}, 0, {}, key, variable->second};
    const bool isHidden = answers.empty() || !answers.front().text.empty();
    answers.insert(isHidden ? answers.end() : answers.begin(), origin);
    return answers;
}

std::vector<Origin> Model::AskFile(Layer layer, const std::string& section, const std::string& key) const {
    const std::string& file = layer == Layer::UserFile ? m_UserName : m_BasicName;
    const Written& written = layer == Layer::UserFile ? m_Sources.userFile : m_Sources.basicFile;
    if (file.empty()) return {};
    if (section.empty()) {
        std::string names;
        for (const Written::Section& known : written.sections) {
            if (!known.name.empty()) names += (names.empty() ? "" : ",") + known.name;
        }
        if (names.empty()) return {};
        return {{layer, file, 0, section, key, names}};
    }
    for (const Written::Section& known : written.sections) {
        if (!IsSame(known.name, section)) continue;
        for (const Written::Entry& entry : known.entries) {
            if (!IsSame(entry.key, key)) continue;
            if (entry.text.empty()) return {};
            return {{layer, file, entry.line, section, key, entry.text}};
        }
        return {};
    }
    return {};
}

// A value that is set again replaces the one before, a key that comes again goes on.
std::vector<Origin> Model::AskRegistry(const std::string& section, const std::string& key) const {
    std::vector<Origin> answer;
    if (!m_bRegistry) return answer;
    const auto pathOf = [this](const std::string& name) {
        const std::string path = "SOFTWARE\\VORNAK\\" + m_Tool + (name.empty() ? "" : "\\" + name);
        return path;
    };
    const auto withoutEnd = [](const std::string& path) {
        return path.ends_with('\\') ? path.substr(0, path.size() - 1) : path;
    };
    for (const Written::Section& known : m_Sources.registry.sections) {
        if (!IsSame(withoutEnd(pathOf(known.name)), withoutEnd(pathOf(section)))) continue;
        for (const Written::Entry& entry : known.entries) {
            if (IsSame(entry.key, key))
                answer = {{Layer::Registry, m_Folder + "/registry.reg", entry.line, pathOf(section), key, entry.text}};
        }
    }
    return answer;
}

std::vector<Model::Found> Model::Family(const std::string& option, const std::string& section) const {
    std::vector<Found> found;
    AddFamily(found, Layer::BasicFile, option, section);
    AddFamily(found, Layer::UserFile, option, section);
    return found;
}

void Model::AddFamily(std::vector<Found>& found, Layer layer, const std::string& option,
                      const std::string& section) const {
    const std::string& file = layer == Layer::UserFile ? m_UserName : m_BasicName;
    const Written& written = layer == Layer::UserFile ? m_Sources.userFile : m_Sources.basicFile;
    if (file.empty()) return;
    const bool isOfSections = option == "map-file" || option == "index-file";
    std::vector<std::string> names;
    const auto first =
        std::ranges::find_if(written.sections, [&](const auto& known) { return IsSame(known.name, section); });
    if (isOfSections || section.empty()) {
        for (const Written::Section& known : written.sections) names.push_back(Lower(known.name));
    } else if (first != written.sections.end()) {
        for (const Written::Entry& entry : first->entries) names.push_back(Lower(entry.key));
    }
    if (section.empty() && !isOfSections) return;
    const std::string prefix = isOfSections ? Lower(section) + "\\" : option + "-";
    for (const std::string& name : names) {
        int index = 0;
        if (!NumberBehind(name, prefix, index)) {
            if (isOfSections || !(prefix + "%d").starts_with(name)) continue;
            for (const Found& known : found) index = std::max(index, known.index + 1);
        }
        if (std::ranges::find(found, index, &Found::index) != found.end()) throw Failure("index twice");
        const auto answer = isOfSections ? AskFile(layer, name, option) : AskFile(layer, section, name);
        if (!answer.empty()) found.push_back({index, answer.front()});
    }
}

std::string Model::Value(const std::string& section, const std::string& key, int depth) const {
    if (depth > 60) throw Failure("circle");
    const std::vector<Origin> answers = Ask(section, key, /*withFiles*/ true);
    std::string value = answers.empty() ? "" : answers.front().text;
    if (value.empty() && section == "ROOT") value = ItemText(key);
    return Expand(value, section, depth);
}

std::string Model::Expand(std::string value, const std::string& section, int depth) const {
    for (;;) {
        const std::size_t begin = value.find('%');
        const std::size_t end = begin == value.npos ? begin : value.find('%', begin + 1);
        if (end == value.npos) return value;
        const std::string name = value.substr(begin + 1, end - begin - 1);
        std::string text = Value(section, name, depth + 1);
        if (text.empty() && section != "ROOT") text = Value("ROOT", name, depth + 1);
        if (text.empty() && !section.empty()) text = Value("", name, depth + 1);
        value = value.substr(0, begin) + text + value.substr(end + 1);
        if (value.size() > 100'000) throw Failure("too long");
    }
}

std::string Model::ItemText(const std::string& key) const {
    const Row* const row = RowOf(key);
    if (!row || row->kind == Flag || row->kind == Several) throw Failure("no text: " + key);
    const Item* const item = Find(key, -1);
    if (!item && row->isMandatory) throw Failure("mandatory: " + key);
    if (row->kind == Optional) return !item ? "false" : item->value.empty() ? "true" : item->value;
    return item ? item->value : "";
}

bool Model::IsTooLateForFiles(const std::string& option) const {
    if (option == "metadata") return true;
    return m_bDataKnownEarly && IsFolder(option);
}

std::vector<Origin> Model::Candidates(const std::string& option, int index) const {
    std::vector<Origin> all;
    const auto add = [&](const Origin& origin) {
        const bool isKnown = std::ranges::any_of(
            all, [&](const Origin& known) { return known.layer == origin.layer && known.word == origin.word; });
        if (!isKnown) all.push_back(origin);
    };
    if (const Item* const item = Find(option, index)) {
        add(item->given.back());
        for (auto given = item->given.rbegin(); given != item->given.rend(); ++given) {
            if (given->layer < Layer::Registry) add(*given);
        }
    }
    const Row& row = *RowOf(option);
    if (!row.section[0]) return all;
    try {
        const std::string section = Section(option);
        if (row.kind != Several) {
            if (IsFolder(option)) {
                for (const Origin& origin : Ask(section, option, /*withFiles*/ false)) add(origin);
            }
            for (const Origin& origin : Ask(section, option, !IsTooLateForFiles(option))) add(origin);
            return all;
        }
        for (const Found& found : Family(option, section)) {
            if (found.index == index) add(found.origin);
        }
    } catch (const Failure&) {  // a weaker source with a fault of its own ends the list
    }
    return all;
}

std::vector<std::string> Model::SingleOptions() {
    std::vector<std::string> names;
    for (const Row& row : ROWS) {
        if (row.kind != Several) names.emplace_back(row.name);
    }
    return names;
}

bool Model::HasBareKeys(const std::string& option) const {
    for (const Fact& fact : m_World) {
        if (fact.key.size() < option.size() && option.starts_with(Lower(fact.key))) return true;
    }
    return false;
}

}  // namespace origins
