#include "origins_world.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace origins {

namespace {

/// What the generator has to know of an option.
struct Choice {
    const char* name;
    const char* shortName;
    const char* section;  ///< "@" is the database's
    enum Kind { Text, Folder, Flag, Spool } kind;
};

constexpr Choice CHOICES[] = {
    {"create-views", "cv", "USER", Choice::Flag},
    {"quiet", "q", "USER", Choice::Flag},
    {"spool", "sp", "USER", Choice::Spool},
    {"dictionary-root", "dr", "ROOT", Choice::Text},
    {"logfile", "log", "ROOT", Choice::Text},
    {"data", "dat", "ROOT", Choice::Folder},
    {"changefile-root", "cr", "ROOT", Choice::Folder},
    {"logging", "", "ROOT", Choice::Folder},
    {"metadata", "m", "ROOT", Choice::Folder},
    {"config", "cfg", "USER", Choice::Folder},
    {"dictionary-name", "", "@", Choice::Text},
    {"role", "", "@", Choice::Text},
    {"registry", "", "@", Choice::Text},
    {"autodoc-title", "", "AUTODOC", Choice::Text},
    {"autodoc-index", "", "AUTODOC", Choice::Text},
};

constexpr const char* DATABASES[] = {"base", "root", "ROOT", "x\\ROOT", "p/e\\", "50%_a", "user", ""};

class Generator {
public:
    Generator(std::mt19937_64& random, const std::string& folder) : m_Random(random), m_Folder(folder) {}

    World Make() {
        MakeDatabase();
        for (const Choice& choice : CHOICES) MakeSingle(choice);
        MakeUserFile();
        MakeFamily("load-dictionary", "USER", "l");
        MakeFamily("obsolete-classes", m_Database, "");
        MakeSections("map-file");
        MakeSections("index-file");
        for (const char* key : {"ref1", "ref2"}) MakeReferenced(key);
        MakeHost();
        if (Percent(5)) AddWord({.key = "exe-name", .text = "Other.exe"});
        std::shuffle(m_World.begin(), m_World.end(), m_Random);
        // A bare name stands last: nothing in front of it may take it for its value.
        std::stable_partition(m_World.begin(), m_World.end(),
                              [](const Fact& fact) { return fact.word != Fact::Word::Bare; });
        for (Fact& fact : m_World) Decorate(fact);
        return m_World;
    }

private:
    int Below(int end) { return static_cast<int>(m_Random() % static_cast<unsigned>(end)); }
    bool Percent(int chance) { return Below(100) < chance; }
    template <class List>
    auto Pick(const List& list) {
        return list[static_cast<std::size_t>(Below(static_cast<int>(std::size(list))))];
    }

    void MakeDatabase() {
        m_Database = Pick(DATABASES);
        if (m_Database.empty() || Percent(60)) {
            Fact fact{.key = "name", .text = m_Database};
            fact.word = m_Database.empty() || Percent(50) ? Fact::Word::Bare : Fact::Word::Long;
            AddWord(fact);
        } else {
            const Layer layers[] = {Layer::Registry, Layer::UserFile, Layer::BasicFile, Layer::Environment};
            const Layer layer = Pick(layers);
            Add({.layer = layer, .section = "ROOT", .key = "name", .text = m_Database});
            if (layer == Layer::UserFile) Add({.section = "ROOT", .key = "name", .text = m_Database});
        }
        // Something weaker or too late that must not be shown as the origin.
        if (Percent(25)) Add({.section = "ROOT", .key = "name", .text = m_Database});
        if (m_Database != "" && Percent(25))
            Add({.layer = Layer::Registry, .section = "ROOT", .key = "name", .text = m_Database});
    }

    std::string TextOf(const Choice& choice) {
        if (choice.kind == Choice::Flag) return Percent(50) ? "true" : "False";
        if (choice.kind == Choice::Folder) return FolderText(choice.name);
        return FreeText();
    }

    std::string FreeText() {
        std::string text = "v" + std::to_string(++m_nTexts);
        constexpr const char* known[] = {"%exe-path%", "%exe-name%", "%ref1%", "%ref2%", "%HOMEX%"};
        constexpr const char* risky[] = {"%data%",  "%dictionary-root%", "%logfile%", "%name%",  "%role%",
                                         "%spool%", "%autodoc-title%",   "%nosuch%",  "%quiet%", "50%"};
        if (Percent(20)) text += Pick(known);
        if (Percent(6)) text += Pick(risky);
        if (Percent(5)) text = Pick(known);
        if (Percent(5)) text += "\\a b;c=d#";
        return text;
    }

    std::string FolderText(const std::string& name) {
        const std::string given = name == "metadata" ? "meta" : name == "data" ? "data" : "sub";
        if (name != "data" && Percent(40)) return given;
        if (Percent(2)) return "missing";
        if (Percent(10)) return "%exe-path%/" + given;
        return Percent(30) ? "D:\\" + given : m_Folder + "/" + given;
    }

    void MakeSingle(const Choice& choice) {
        const bool isOfDatabase = choice.section[0] == '@';
        const std::string section = isOfDatabase ? m_Database : choice.section;
        const int chance = choice.kind == Choice::Folder ? 12 : 25;
        const auto fact = [&](Layer layer) {
            const bool isEmpty = Percent(layer == Layer::Registry ? 15 : 4);
            return Fact{.layer = layer, .section = section, .key = choice.name, .text = isEmpty ? "" : TextOf(choice)};
        };
        if (Percent(isOfDatabase ? 97 : 2 * chance)) Add(fact(Layer::BasicFile));
        if (Percent(chance)) Add(fact(Layer::UserFile));
        if (Percent(chance)) Add(fact(Layer::Registry));
        if (Percent(chance)) Add(fact(Layer::Environment));
        if (Percent(5)) Add(fact(Layer::BasicFile));  // a second line
        for (int count = Percent(chance) ? 1 + Below(2) : 0; count > 0; --count) {
            Fact word{.key = choice.name, .text = TextOf(choice)};
            word.word = choice.shortName[0] && Percent(50) ? Fact::Word::Short : Fact::Word::Long;
            if (choice.kind == Choice::Spool && Percent(30)) word.text = "", word.hasValue = false;
            AddWord(word);
        }
    }

    void MakeUserFile() {
        if (Percent(30)) return;
        const std::string files[] = {m_Folder + "/user.ini", "D:\\user.ini", "rel.ini"};
        const std::string file = files[Percent(20) ? 2 : Below(2)];
        if (Percent(75)) {
            AddWord({.key = "ini", .text = file});
        } else {
            Add({.layer = Layer::Registry, .section = "USER", .key = "ini", .text = file});
        }
    }

    void MakeFamily(const std::string& option, const std::string& section, const std::string& shortName) {
        const bool isNumbers = option == "obsolete-classes";
        int next = Below(3);
        for (const Layer layer : {Layer::BasicFile, Layer::UserFile}) {
            for (int count = Percent(50) ? Below(4) : 0; count > 0; --count) {
                std::string key = option + "-" + std::to_string(next);
                if (Percent(10)) key = option + "-0" + std::to_string(next);
                if (Percent(20)) key = option.substr(0, 4 + static_cast<std::size_t>(Below(9)));
                next += Percent(3) ? 0 : 1 + Below(2);
                Add({.layer = layer, .section = section, .key = key, .text = isNumbers ? Number() : FreeText()});
            }
        }
        for (int count = !shortName.empty() && Percent(30) ? 1 + Below(3) : 0; count > 0; --count) {
            Fact word{.key = option, .text = FreeText()};
            word.word = Percent(50) ? Fact::Word::Short : Fact::Word::Long;
            AddWord(word);
        }
    }

    std::string Number() { return std::to_string(++m_nTexts) + ",7"; }

    void MakeSections(const std::string& option) {
        for (int index = Below(3), count = Percent(50) ? Below(4) : 0; count > 0; --count) {
            const Layer layer = Percent(50) ? Layer::BasicFile : Layer::UserFile;
            std::string name = (Percent(10) ? "0" : "") + std::to_string(index);
            name = (m_Database.empty() ? "" : m_Database + "\\") + (Percent(30) ? "files\\" : "FILES\\") + name;
            Add({.layer = layer, .section = name, .key = option, .text = Percent(5) ? "" : FreeText()});
            index += 1 + Below(2);
        }
        if (Percent(15)) AddWord({.key = option, .text = FreeText()});
    }

    void MakeReferenced(const std::string& key) {
        const char* const sections[] = {"ROOT", "USER", "AUTODOC"};
        Add({.section = "ROOT", .key = key, .text = "r" + std::to_string(++m_nTexts)});
        if (Percent(30)) Add({.layer = Layer::UserFile, .section = Pick(sections), .key = key, .text = FreeText()});
        if (Percent(30)) Add({.layer = Layer::Registry, .section = Pick(sections), .key = key, .text = "rr"});
        Add({.layer = Layer::Environment, .key = key, .text = "e" + key});
        Add({.layer = Layer::Environment, .key = "HOMEX", .text = "home"});
    }

    void MakeHost() {
        const char* const singles[] = {"logfile", "dictionary-root", "quiet", "logging", "autodoc-title"};
        constexpr Fact::Host times[] = {Fact::Host::BeforeStart, Fact::Host::AfterReading, Fact::Host::IntoItem};
        for (int count = Below(3); count > 0; --count) {
            Fact fact{.layer = Layer::Host, .key = Pick(singles), .text = "h" + std::to_string(++m_nTexts)};
            fact.host = Pick(times);
            if (fact.key == "logging") fact.text = m_Folder + "/sub";
            if (Percent(20)) fact.key = "load-dictionary", fact.index = Below(4);
            Add(fact);
        }
    }

    // How it is spelled.
    void Decorate(Fact& fact) {
        if (Percent(15)) fact.quote = Percent(50) ? '"' : '\'';
        fact.isOwnSection = Percent(4);
        fact.isSpread = Percent(15);
        fact.linesBefore = Percent(30) ? Below(3) : 0;
        if (fact.layer != Layer::Registry && fact.layer != Layer::UserFile && fact.layer != Layer::BasicFile) return;
        if (fact.section == "USER" && Percent(20)) fact.section = "uSer";
        if (Percent(10)) fact.key[0] = static_cast<char>(std::toupper(fact.key[0]));
    }

    void Add(const Fact& fact) { m_World.push_back(fact); }
    void AddWord(Fact fact) {
        fact.layer = Layer::CommandLine;
        Add(fact);
    }

    std::mt19937_64& m_Random;
    std::string m_Folder;
    std::string m_Database;
    World m_World;
    int m_nTexts = 0;
};

/// Counts lines while a text grows.
class Writer {
public:
    Written written;

    int Line(const std::string& text) {
        written.bytes += text + "\n";
        return ++m_nLines;
    }
    Written::Section& SectionOf(const Fact& fact, const std::string& header) {
        if (m_Current && Lower(m_Current->name) == Lower(fact.section) && !fact.isOwnSection) return *m_Current;
        Line("[" + header + "]");
        written.sections.push_back({fact.section, {}});
        return *(m_Current = &written.sections.back());
    }

private:
    int m_nLines = 0;
    Written::Section* m_Current = nullptr;
};

std::vector<const Fact*> FactsOf(const World& world, Layer layer) {
    std::vector<const Fact*> facts;
    for (const Fact& fact : world) {
        if (fact.layer == layer) facts.push_back(&fact);
    }
    return facts;
}

// By section, in the order in which the sections come first; those that start their own one come after.
std::vector<const Fact*> InSections(const World& world, Layer layer) {
    std::vector<const Fact*> facts = FactsOf(world, layer);
    std::map<std::string, int> first;
    int count = 0;
    for (const Fact* fact : facts) first.emplace(Lower(fact->section), count++);
    std::ranges::stable_sort(facts, {}, [&](const Fact* fact) {
        return std::pair{fact->isOwnSection ? 1 : 0, first[Lower(fact->section)]};
    });
    return facts;
}

Written WriteFile(const World& world, Layer layer) {
    Writer writer;
    writer.Line("; made up at random");
    writer.Line("lost=before the first section");
    for (const Fact* fact : InSections(world, layer)) {
        Written::Section& section = writer.SectionOf(*fact, fact->section);
        const char* const nothing[] = {"", "; logfile=comment", "no equals sign"};
        for (int i = 0; i < fact->linesBefore; ++i) writer.Line(nothing[i]);
        const bool isQuoted = fact->quote != 0;
        const std::string quote(isQuoted ? 1 : 0, fact->quote);
        const std::string line = fact->key + (isQuoted ? " = " : "=") + quote + fact->text + quote;
        if (fact->isDeleted) {
            writer.Line(";");
        } else {
            section.entries.push_back({fact->key, fact->text, writer.Line(line)});
        }
    }
    return writer.written;
}

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) escaped += c == '\\' ? "\\\\" : std::string(1, c);
    return "\"" + escaped + "\"";
}

Written WriteRegistry(const World& world, const std::string& tool) {
    Writer writer;
    writer.Line("Windows Registry Editor Version 5.00");
    for (const Fact* fact : InSections(world, Layer::Registry)) {
        const std::string path = "HKEY_LOCAL_MACHINE\\SOFTWARE\\VORNAK\\" + tool;
        Written::Section& section = writer.SectionOf(*fact, fact->section.empty() ? path : path + "\\" + fact->section);
        for (int i = 0; i < fact->linesBefore; ++i) writer.Line(i == 0 ? ";" : "\"logfile\"=broken");
        if (fact->isDeleted) {
            writer.Line(";");
        } else if (fact->isSpread) {
            section.entries.push_back({fact->key, fact->text, writer.Line(Escaped(fact->key) + "=hex(1):\\")});
            for (const char c : fact->text) {
                char bytes[16];
                std::snprintf(bytes, sizeof bytes, "  %02x,00,\\", static_cast<unsigned>(c));
                writer.Line(bytes);
            }
            writer.Line("  00,00");
        } else {
            const int line = writer.Line(Escaped(fact->key) + " = " + Escaped(fact->text));
            section.entries.push_back({fact->key, fact->text, line});
        }
    }
    return writer.written;
}

std::string SpelledOption(const Fact& fact) {
    if (fact.word == Fact::Word::Long) return "--" + fact.key;
    if (fact.key == "load-dictionary") return "-l";
    return "-" + std::string{std::ranges::find(CHOICES, fact.key, [](const Choice& choice) {
                                 return std::string{choice.name};
                             })->shortName};
}

void WriteWords(Sources& sources, const World& world) {
    auto& words = sources.words;
    bool isTaking = false;  // a bare name would become the value of the option in front
    for (const Fact* fact : FactsOf(world, Layer::CommandLine)) {
        sources.named.push_back({static_cast<int>(words.size()) + 1, fact});
        if (fact->isDeleted) {
            words.push_back("-e");
            if (fact->word != Fact::Word::Bare && fact->hasValue) words.push_back("true");
        } else if (fact->word == Fact::Word::Bare) {
            if (isTaking && !fact->text.empty()) words.push_back("--" + fact->key);
            words.push_back(fact->text);
        } else {
            words.push_back(SpelledOption(*fact));
            if (fact->hasValue) words.push_back(fact->text);
        }
        isTaking = fact->word != Fact::Word::Bare && !fact->hasValue;
    }
}

}  // namespace

std::string Lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

World MakeWorld(std::mt19937_64& random, const std::string& folder) {
    return Generator{random, folder}.Make();
}

std::string ToolOf(const World& world) {
    std::string tool = "Tool";
    for (const Fact& fact : world) {
        if (fact.layer == Layer::CommandLine && fact.key == "exe-name" && !fact.isDeleted) tool = "Other";
    }
    return tool;
}

Sources Write(const World& world, const std::string& tool) {
    Sources sources{WriteRegistry(world, tool), WriteFile(world, Layer::UserFile), WriteFile(world, Layer::BasicFile)};
    for (const Fact* fact : FactsOf(world, Layer::Environment)) {
        if (!fact->isDeleted) sources.environment[fact->key] = fact->text;
    }
    WriteWords(sources, world);
    return sources;
}

std::string Describe(const Fact& fact) {
    constexpr const char* LAYERS[] = {"host",      "start-up",   "command line", "registry",
                                      "user file", "basic file", "environment"};
    std::string text = std::string{LAYERS[static_cast<int>(fact.layer)]} + ": ";
    if (fact.layer == Layer::Host) text += std::to_string(static_cast<int>(fact.host)) + " ";
    if (!fact.section.empty()) text += "[" + fact.section + "] ";
    text += fact.key + "=" + fact.text;
    if (fact.index >= 0) text += " index " + std::to_string(fact.index);
    if (fact.isOwnSection) text += " (own section)";
    return text + (fact.isDeleted ? " (deleted)" : "");
}

}  // namespace origins
