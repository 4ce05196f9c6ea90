#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

/// A configuration made up at random: single facts, each in one layer, and the sources that are written of them. Who
/// writes a source knows on which line each fact stands.
namespace origins {

enum class Layer { Host, StartUp, CommandLine, Registry, UserFile, BasicFile, Environment };

/// One value somewhere.
struct Fact {
    enum class Host { BeforeStart, AfterReading, IntoItem };
    enum class Word { Short, Long, Bare };

    Layer layer = Layer::BasicFile;
    std::string section = {};  ///< of files and registry, as spelled
    std::string key = {};      ///< as spelled; of a word and a host's value the long name of the option
    std::string text = {};
    int index = -1;                 ///< of a host's value
    Host host = Host::BeforeStart;  ///< when the host gives it
    Word word = Word::Long;
    bool hasValue = true;       ///< command line: whether the text follows as a word of its own
    char quote = 0;             ///< around the text in a file
    bool isOwnSection = false;  ///< starts a section although one of the name stands there
    bool isSpread = false;      ///< registry: as bytes over several lines
    int linesBefore = 0;        ///< that answer nothing
    bool isDeleted = false;     ///< holds the lines or words of something that is gone
};

using World = std::vector<Fact>;

/// A source as written: its text, and the entries of each section in order.
struct Written {
    struct Entry {
        std::string key;
        std::string text;
        int line = 0;
    };
    struct Section {
        std::string name;
        std::vector<Entry> entries;
    };
    std::string bytes;
    std::vector<Section> sections;
};

/// A word of the command line that names an option; "exit" instead of a deleted one.
struct Named {
    int word = 0;
    const Fact* fact = nullptr;
};

struct Sources {
    Written registry, userFile, basicFile;
    std::map<std::string, std::string> environment = {};
    std::vector<std::string> words = {};  ///< without the program
    std::vector<Named> named = {};
};

std::string Lower(std::string text);

/// @param folder  below which the files stand; it is the drive D:, too
World MakeWorld(std::mt19937_64& random, const std::string& folder);
Sources Write(const World& world, const std::string& tool);
/// The file name of the program without extension, as the last word of the world has it.
std::string ToolOf(const World& world);
/// One line for people.
std::string Describe(const Fact& fact);

}  // namespace origins
