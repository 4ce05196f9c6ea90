// Starts a store on configurations made up at random and compares it, with the origins of all values, with a model.
// Usage: origins_store [COUNT [SEED]]. A configuration that fails is made smaller as long as it fails, and printed.
#include <unistd.h>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "origins_model.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/sources/snapshot.h"
#include "veltrane/platform/sources/winreg.h"
#include "veltrane/platform/text/encoding.h"

using namespace origins;
using veltrane::FromUtf8;
using veltrane::ToUtf8;

namespace {

/// How often what was checked.
struct Counts {
    long starts = 0, failedStarts = 0, origins = 0, candidates = 0, explanations = 0, deletions = 0, exempt = 0;
};

class Folder {
public:
    Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "veltrane-origins-XXXXXX").string();
        if (!mkdtemp(name.data())) std::abort();
        m_Path = std::filesystem::canonical(name);
        for (const char* folder : {".metadata", "meta", "sub", "data/sub", "data/configuration", "empty"})
            std::filesystem::create_directories(m_Path / folder);
        for (const char* folder : {".metadata", "meta", "sub"}) {
            for (const char* tool : {"tool.ini", "other.ini"})
                std::filesystem::create_symlink(m_Path / "basic.ini", m_Path / folder / tool);
        }
        for (const char* folder : {"sub", "data/sub", "data/configuration"})
            std::filesystem::create_symlink(m_Path / "user.ini", m_Path / folder / "rel.ini");
        std::filesystem::current_path(m_Path / "empty");
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }

    std::string Path() const { return m_Path.string(); }
    void Write(const char* name, const std::string& bytes) const {
        std::ofstream{m_Path / name, std::ios::binary} << bytes;
    }

private:
    std::filesystem::path m_Path;
};

struct Wrong : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::string Text(const Origin& origin) {
    constexpr const char* LAYERS[] = {"host",      "start-up",   "command line", "registry",
                                      "user file", "basic file", "environment"};
    return std::string{LAYERS[static_cast<int>(origin.layer)]} + " " + Lower(origin.file) + ":" +
           std::to_string(origin.line) + " [" + Lower(origin.section) + "] " + Lower(origin.key) + " word " +
           std::to_string(origin.word) + " <" + origin.text + ">";
}

Origin Narrow(const veltrane::OptionOrigin& origin) {
    return {static_cast<Layer>(origin.layer),
            ToUtf8(origin.file),
            origin.line,
            ToUtf8(origin.section),
            ToUtf8(origin.key),
            ToUtf8(origin.text),
            origin.word};
}

std::vector<Origin> Narrow(const std::vector<veltrane::OptionOrigin>& origins) {
    std::vector<Origin> narrow;
    for (const veltrane::OptionOrigin& origin : origins) narrow.push_back(Narrow(origin));
    return narrow;
}

void ExpectSame(const std::string& what, const std::string& is, const std::string& expected) {
    if (is != expected) throw Wrong(what + ":\n    is       " + is + "\n    expected " + expected);
}

/// A store and a model on the same world.
class Run {
public:
    Run(const World& world, const Folder& folder) : m_World(world), m_Model(world, folder.Path()) {
        const Sources& sources = m_Model.TheSources();
        folder.Write("registry.reg", sources.registry.bytes);
        folder.Write("user.ini", sources.userFile.bytes);
        folder.Write("basic.ini", sources.basicFile.bytes);
        for (const auto& [name, text] : sources.environment) setenv(name.c_str(), text.c_str(), 1);
        std::vector<CString> words{L"tool"};
        for (const std::string& word : sources.words) words.push_back(FromUtf8(word));
        veltrane::SetArguments(words);
        m_Store.KeepOrigins(true);
        const std::string expected = Catch<Failure>([&] { m_Model.Run(); });
        const std::string error = Catch<XException>([&] { Start(folder); });
        if (expected.empty() != error.empty()) throw Wrong("fails <" + error + ">, expected <" + expected + ">");
        isStarted = error.empty();
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    ~Run() {
        for (const auto& [name, text] : m_Model.TheSources().environment) unsetenv(name.c_str());
    }

    void Compare(Counts& counts) {
        const veltrane::detail::SourceSnapshot snapshot;  // a thousand questions, and nobody writes
        auto item = m_Model.Items().begin();
        for (auto* is = First(); is; is = Next(), ++item) {
            if (item == m_Model.Items().end()) throw Wrong("an item too many");
            CompareItem(*is, *item, counts);
        }
        if (item != m_Model.Items().end()) throw Wrong("no item " + item->option);
        for (const std::string& option : Model::SingleOptions()) CompareCandidates(option, -1, counts);
        for (int index = 0; index < 6; ++index) CompareCandidates("load-dictionary", index, counts);
    }

    std::vector<Origin> CandidatesOf(const std::string& option, int index) {
        return Narrow(m_Store.GetOptionCandidates(FromUtf8(option), index).candidates);
    }
    const Model& TheModel() const { return m_Model; }

    bool isStarted = false;

private:
    template <class Error, class Action>
    static std::string Catch(Action action) {
        try {
            action();
        } catch (const Failure& error) {
            return error.what();
        } catch (const XException& error) {
            return ToUtf8(error.GetMessage());
        }
        return {};
    }

    void Start(const Folder& folder) {
        GiveOfHost(Fact::Host::BeforeStart);
        m_Store.Initialize(FromUtf8(folder.Path()), L"Tool.exe", L"", L"", L"");
        for (const wchar_t* fact : {L"compile-time", L"version-info", L"datetime"}) m_Store.DeleteOption(fact);
        m_Store.OpenConfiguration();
        m_Store.ReadConfiguration();
        GiveOfHost(Fact::Host::AfterReading);
        GiveOfHost(Fact::Host::IntoItem);
    }

    void GiveOfHost(Fact::Host when) {
        for (const Fact& fact : m_World) {
            if (fact.layer != Layer::Host || fact.host != when || fact.isDeleted) continue;
            if (when != Fact::Host::IntoItem) {
                m_Store.InsertOptionItem(FromUtf8(fact.key), FromUtf8(fact.text), fact.index);
            } else if (auto* item = m_Store.GetOptionItem(FromUtf8(fact.key), fact.index)) {
                item->SetOptionValue(FromUtf8(fact.text));
            }
        }
    }

    // The items in store order, without the marks of a walk.
    XOptionItem* First() {
        m_Items.clear();
        for (auto* item = m_Store.GetFirstOptionItem(L""); item; item = m_Store.GetNextOptionItem(L""))
            m_Items.push_back(item);
        m_nItem = 0;
        return Next();
    }
    XOptionItem* Next() { return m_nItem < m_Items.size() ? m_Items[m_nItem++] : nullptr; }

    void CompareItem(const XOptionItem& is, const Item& item, Counts& counts) {
        CString option;
        is.GetOptionName(option);
        const std::string name = item.option + " " + std::to_string(item.index);
        ExpectSame("item", ToUtf8(option) + " " + std::to_string(is.GetOptionIndex()), name);
        ExpectSame("value of " + name, ToUtf8(is.GetOptionValue()), item.value);
        const Origin origin = Narrow(m_Store.GetOptionOrigin(&is));
        ExpectSame("origin of " + name, Text(origin), Text(item.given.back()));
        ++counts.origins;
        if (m_Store.GetOptionItem(option, item.index) != &is) return;  // another with the same index stands in front
        CompareCandidates(item.option, item.index, counts);
        CompareExplanation(is, option, item.index, counts);
    }

    void CompareCandidates(const std::string& option, int index, Counts& counts) {
        const std::vector<Origin> expected = m_Model.Candidates(option, index);
        const std::vector<Origin> is = CandidatesOf(option, index);
        const std::string what = "candidates of " + option + " " + std::to_string(index);
        ExpectSame(what, Texts(is), Texts(expected));
        counts.candidates += static_cast<long>(is.size());
    }

    static std::string Texts(const std::vector<Origin>& origins) {
        std::string text;
        for (const Origin& origin : origins) text += "\n        " + Text(origin);
        return text;
    }

    void CompareExplanation(const XOptionItem& is, const CString& option, int index, Counts& counts) {
        const auto explanation = m_Store.ExplainOption(option, index);
        const std::string what = "explanation of " + ToUtf8(option);
        const auto& last = explanation.steps.back();
        if (last.kind != veltrane::OptionStep::Kind::Value) throw Wrong(what + " has no value");
        const CString value = is.IsString() ? m_Store.GetOptionString(option, index) : is.GetOptionValue();
        ExpectSame(what, ToUtf8(last.text), ToUtf8(value));
        // The step in front has come to the value already.
        const auto& steps = explanation.steps;
        const auto whole =
            std::find_if(steps.rbegin() + 1, steps.rend(), [](const auto& step) { return step.depth == 0; });
        if (whole == steps.rend()) throw Wrong(what + " has no steps");
        ExpectSame(what + ", before its end", ToUtf8(whole->text), ToUtf8(is.GetOptionValue()));
        ++counts.explanations;
    }

    const World& m_World;
    Model m_Model;
    XOption m_Store;
    std::vector<XOptionItem*> m_Items;
    std::size_t m_nItem = 0;
};

bool MovesTheSources(const std::string& option) {
    for (const char* name : {"ini", "name", "data", "metadata", "config", "exe-name", "exe-path"}) {
        if (option == name) return true;
    }
    return false;
}

/// Whether a value cannot be deleted from its source alone: others would change with it, or it is a list of the file.
bool IsExempt(const Item& item, const Model& model, const World& world) {
    const Origin& origin = item.given.back();
    const auto isOfHost = [&](const Fact& fact) { return fact.layer == Layer::Host && fact.key == item.option; };
    if (std::ranges::any_of(world, isOfHost)) return true;  // it may give the same value again
    if (origin.layer <= Layer::StartUp || MovesTheSources(item.option) || item.option == "exit") return true;
    if (origin.layer == Layer::BasicFile || origin.layer == Layer::UserFile) {
        return origin.line == 0 || model.HasBareKeys(item.option);
    }
    return item.index >= 0;  // words of one option share their numbers
}

std::string Below(const std::string& section) {
    return section.empty() ? section : "\\" + section;
}

/// The world without a source's answer: all lines of the key in the sections of that name, or the word.
World Without(const World& world, const Origin& origin, const Fact* word) {
    World without = world;
    const std::string key = "SOFTWARE\\VORNAK\\" + ToolOf(world);
    for (std::size_t i = 0; i < world.size(); ++i) {
        const Fact& fact = world[i];
        if (fact.layer != origin.layer) continue;
        if (fact.layer == Layer::CommandLine) {
            without[i].isDeleted |= &fact == word;
        } else if (Lower(fact.key) == Lower(origin.key)) {
            const std::string section = fact.layer == Layer::Registry ? key + Below(fact.section) : fact.section;
            const bool isThere = fact.layer == Layer::Environment || Lower(origin.section) == Lower(section);
            without[i].isDeleted |= isThere;
        }
    }
    return without;
}

bool IsSamePlace(const Origin& left, const Origin& right) {
    return Text(left) == Text(right);
}

// What was next is in force now, or is completed by start-up, or there is nothing.
void ExpectNext(Run& run, const Item& before, const std::vector<Origin>& candidates) {
    const std::vector<Origin> now = run.CandidatesOf(before.option, before.index);
    const std::size_t next = !now.empty() && now[0].layer == Layer::StartUp ? 1 : 0;
    if (candidates.size() == 1) {
        if (now.size() > next)
            throw Wrong("a value after the last candidate of " + before.option + ": " + Text(now[next]));
    } else if (now.size() <= next || !IsSamePlace(now[next], candidates[1])) {
        throw Wrong("next candidate of " + before.option + ": " + Text(candidates[1]) + "\n    is " +
                    (now.size() > next ? Text(now[next]) : "none"));
    }
}

void CheckDeletions(const World& world, const Folder& folder, Counts& counts, std::mt19937_64& random) {
    struct Winner {
        Item item;
        std::vector<Origin> candidates;
        const Fact* word = nullptr;
    };
    std::vector<Winner> winners;
    {
        Run run(world, folder);
        for (const Item& item : run.TheModel().Items()) {
            const Origin& origin = item.given.back();
            if (IsExempt(item, run.TheModel(), world)) {
                ++counts.exempt;
                continue;
            }
            Winner winner{item, run.CandidatesOf(item.option, item.index)};
            for (const Named& named : run.TheModel().TheSources().named) {
                if (named.word == origin.word) winner.word = named.fact;
            }
            winners.push_back(winner);
        }
    }
    std::shuffle(winners.begin(), winners.end(), random);
    if (winners.size() > 3) winners.resize(3);
    for (const Winner& winner : winners) {
        const World without = Without(world, winner.item.given.back(), winner.word);
        Run run(without, folder);
        ++counts.starts;
        if (!run.isStarted) continue;
        run.Compare(counts);
        ExpectNext(run, winner.item, winner.candidates);
        ++counts.deletions;
    }
}

/// @return what is wrong; empty for nothing
std::string Check(const World& world, const Folder& folder, std::uint64_t seed, Counts& counts) {
    std::mt19937_64 random{seed};
    try {
        bool isStarted = false;
        {
            Run run(world, folder);
            isStarted = run.isStarted;
            if (isStarted) run.Compare(counts);
        }
        ++counts.starts;
        if (!isStarted) ++counts.failedStarts;
        if (isStarted) CheckDeletions(world, folder, counts, random);
    } catch (const Wrong& wrong) {
        return wrong.what();
    } catch (const XException& error) {
        return "error: " + ToUtf8(error.GetMessage());
    }
    return {};
}

void Report(World world, std::string wrong, const Folder& folder, std::uint64_t seed) {
    Counts counts;
    for (std::size_t i = world.size(); i-- > 0;) {
        World smaller = world;
        smaller.erase(smaller.begin() + static_cast<std::ptrdiff_t>(i));
        const std::string still = Check(smaller, folder, seed, counts);
        if (still.empty()) continue;
        wrong = still;
        world = smaller;
    }
    std::printf("seed %llu: %s\n", static_cast<unsigned long long>(seed), wrong.c_str());
    for (const Fact& fact : world) std::printf("    %s\n", Describe(fact).c_str());
    const Sources sources = Write(world, ToolOf(world));
    std::printf("--- basic file\n%s--- user file\n%s--- registry\n%s--- command line\n",
                sources.basicFile.bytes.c_str(), sources.userFile.bytes.c_str(), sources.registry.bytes.c_str());
    for (const std::string& word : sources.words) std::printf(" <%s>", word.c_str());
    std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
    const long count = argc > 1 ? std::atol(argv[1]) : 300;
    const std::uint64_t first = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    const auto begin = std::chrono::steady_clock::now();
    const std::string temporary = std::filesystem::temp_directory_path().string();
    clearenv();
    setenv("TMPDIR", temporary.c_str(), 1);
    const Folder folder;
    veltrane::SetDriveFolder(L'D', FromUtf8(folder.Path()));
    veltrane::SetRegistryFile(FromUtf8(folder.Path() + "/registry.reg"));
    Counts counts;
    int failures = 0;
    for (long i = 0; i < count && failures < 3; ++i) {
        const std::uint64_t seed = first + static_cast<std::uint64_t>(i);
        std::mt19937_64 random{seed};
        const World world = MakeWorld(random, folder.Path());
        const std::string wrong = Check(world, folder, seed, counts);
        if (wrong.empty()) continue;
        ++failures;
        Report(world, wrong, folder, seed);
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    std::printf(
        "%ld configurations from seed %llu: %ld starts (%ld end with an error, as they have to), %ld origins, "
        "%ld candidates, %ld explanations, %ld deletions, %ld values exempt from deletion, %d failures, %.1f s\n",
        count, static_cast<unsigned long long>(first), counts.starts, counts.failedStarts, counts.origins,
        counts.candidates, counts.explanations, counts.deletions, counts.exempt, failures, taken.count());
    return failures == 0 ? 0 : 1;
}
