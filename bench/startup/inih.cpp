// What a host would write by hand: two INI files read by inih into maps, every option asked once, the naming rules
// collected. It knows no index, no registry, no encoding and no help, and so gives the least that a start can take.
// Usage: startup_inih BASIC_FILE USER_FILE NAME OPTION...
#include <ini.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace {

using Section = std::map<std::string, std::string>;
using Configuration = std::map<std::string, Section>;

struct Rule {
    int version;
    std::string from;
    std::string to;
};

std::string LowerCase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
}

int Take(void* configuration, const char* section, const char* name, const char* value) {
    (*static_cast<Configuration*>(configuration))[LowerCase(section)].emplace(LowerCase(name), value);
    return 1;
}

class Options {
public:
    Options(const char* basic, const char* user, std::string name) : m_Name(LowerCase(std::move(name))) {
        if (ini_parse(basic, Take, &m_Files[1]) < 0 || ini_parse(user, Take, &m_Files[0]) < 0) std::abort();
        for (const char* kind : {"\\tablename rules\\", "\\columnname rules\\"}) ReadRules(m_Name + kind);
    }

    std::size_t Size() const { return m_Values.size() + m_Rules.size(); }

    void Read(const std::string& key) {
        for (const std::string& section : {std::string{"root"}, std::string{"user"}, std::string{"autodoc"}, m_Name}) {
            if (const std::string* const value = Find(section, key)) {
                m_Values[key] = Expanded(*value);
                return;
            }
        }
        if (const char* const value = std::getenv(key.c_str())) m_Values[key] = value;
    }

private:
    const std::string* Find(const std::string& section, const std::string& key) const {
        for (const Configuration& file : m_Files) {
            const auto found = file.find(section);
            if (found == file.end()) continue;
            const auto value = found->second.find(key);
            if (value != found->second.end()) return &value->second;
        }
        return nullptr;
    }

    std::string Expanded(std::string value) const {
        const std::string mark = "%name%";
        for (auto at = value.find(mark); at != value.npos; at = value.find(mark))
            value.replace(at, mark.size(), m_Name);
        return value;
    }

    void ReadRules(const std::string& family) {
        for (const Configuration& file : m_Files) {
            for (auto section = file.lower_bound(family); section != file.end() && section->first.starts_with(family);
                 ++section) {
                const int version = std::atoi(section->first.c_str() + family.size());
                for (const auto& [from, to] : section->second) m_Rules.push_back({version, from, Expanded(to)});
            }
        }
        std::ranges::stable_sort(m_Rules, {}, &Rule::version);
    }

    std::string m_Name;
    Configuration m_Files[2];  // the user's, the basic one
    std::map<std::string, std::string> m_Values;
    std::vector<Rule> m_Rules;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) return 2;
    Options options{argv[1], argv[2], argv[3]};
    for (int i = 4; i < argc; ++i) options.Read(argv[i]);
    return options.Size() > 0 ? 0 : 1;
}
