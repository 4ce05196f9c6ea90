#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "origins_world.h"

/// What a store has to hold after a start with a world, and where each value comes from: written from the rules alone,
/// as a plain walk over lists.
namespace origins {

struct Origin {
    Layer layer = Layer::Host;
    std::string file = {};  ///< one of the names that the sources have; empty for none
    int line = 0;
    std::string section = {};
    std::string key = {};
    std::string text = {};
    int word = -1;
};

struct Item {
    std::string option;
    int index = -1;
    std::string value;
    std::vector<Origin> given;  ///< all that it got, the newest last
};

/// The value of a key of a world leads nowhere, round in a circle or to no folder.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Model {
public:
    Model(const World& world, const std::string& folder);

    /// The start. @throws Failure  with the items up to there in place
    void Run();

    const std::vector<Item>& Items() const { return m_Items; }
    std::vector<Origin> Candidates(const std::string& option, int index) const;
    /// Names of the options that the model knows and that have one value.
    static std::vector<std::string> SingleOptions();
    /// Whether an index of the option was given to a key without one.
    bool HasBareKeys(const std::string& option) const;
    const Sources& TheSources() const { return m_Sources; }
    std::string BasicFile() const { return m_BasicName; }
    std::string UserFile() const { return m_UserName; }

private:
    struct Found {
        int index = -1;
        Origin origin;
    };

    Item* Find(const std::string& option, int index);
    const Item* Find(const std::string& option, int index) const {
        return const_cast<Model*>(this)->Find(option, index);
    }
    void Insert(const std::string& option, const std::string& value, int index, const Origin& origin);
    void ParseWords();
    void ResolveMetadata();
    void ResolveFolder(const std::string& option, const std::string& byDefault);
    void OpenFiles();
    void Retrieve(const std::string& option);

    std::string Section(const std::string& option) const;
    std::vector<Origin> Ask(const std::string& section, const std::string& key, bool withFiles) const;
    std::vector<Origin> AskFile(Layer layer, const std::string& section, const std::string& key) const;
    std::vector<Origin> AskRegistry(const std::string& section, const std::string& key) const;
    std::vector<Found> Family(const std::string& option, const std::string& section) const;
    void AddFamily(std::vector<Found>& found, Layer layer, const std::string& option, const std::string& section) const;

    std::string Value(const std::string& section, const std::string& key, int depth) const;
    std::string Expand(std::string value, const std::string& section, int depth) const;
    std::string ItemText(const std::string& key) const;
    bool Exists(const std::string& path) const;
    bool IsTooLateForFiles(const std::string& option) const;

    const World& m_World;
    std::string m_Folder;
    std::string m_Tool;
    Sources m_Sources;
    std::vector<Item> m_Items;
    std::string m_BasicName, m_UserName;  ///< empty until they are open
    bool m_bRegistry = false;
    bool m_bDataKnownEarly = false;
};

}  // namespace origins
