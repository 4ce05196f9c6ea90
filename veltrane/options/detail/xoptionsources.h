#pragma once

#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "veltrane/config/xconfiguration.h"
#include "veltrane/config/xregistry.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xoptionorigin.h"

namespace veltrane::detail {

/// Where the values of a family stand: the places of each index, the basic file before the user file.
struct XOptionFamily {
    std::multimap<int, OptionOrigin> places;
    std::optional<XException> fault = {};  ///< the error that has ended the reading

    /// Whether a value of an index becomes an item: one at -1 ends a retrieval, an index given twice keeps all away.
    bool Gives(int index) const { return !fault && (index < -1 || !places.contains(-1)); }
};

/// The configuration sources of a store and the one order in which they are asked: each that has a value overrides the
/// ones before. A source that start-up has not made yet has nothing.
class XOptionSources {
public:
    std::unique_ptr<XRegistry> registry;
    std::unique_ptr<XConfiguration> userFile;
    std::unique_ptr<XConfiguration> basicFile;

    /// The value of a key from the strongest source that has one.
    /// @param assignEmpty  whether the basic file answers for a missing or empty key, too
    /// @param origin       receives where the value stands; may be null
    /// @param places       receives each place that is asked, in the order of the questions, for Complete; may be null
    /// @return found; otherwise value keeps what it held
    bool GetKeyValue(CString& value, const CString& section, const CString& key, bool assignEmpty,
                     OptionOrigin* origin = nullptr, std::vector<OptionPlace>* places = nullptr) const;

    /// GetKeyValue and, for a key of ROOT that has no text so far, the environment.
    void GetValue(CString& value, const CString& section, const CString& key, OptionOrigin* origin = nullptr,
                  std::vector<OptionPlace>* places = nullptr) const;

    /// Puts in full what was asked without an answer.
    void Complete(std::vector<OptionPlace>& places) const;

    /// An origin and the index of the value that has it.
    using IndexedOrigin = std::pair<int, OptionOrigin>;

    /// The values of a family from both files.
    /// @param origins  receives where each stands, in the order of reading; may be null
    /// @throws XException  an index that is given twice; origins then ends with the second one
    bool GetKeyValueSet(XMapInt2CString& values, const CString& section, const CString& pattern,
                        std::vector<IndexedOrigin>* origins = nullptr) const;

    /// Where the values of a family stand in both files.
    XOptionFamily ReadFamily(const CString& section, const CString& pattern) const;

    /// The key names of each section of a form from both files. @return false when no file is open
    bool GetOptionNameSet(XMapInt2CString& names, const CString& sectionFormat) const;

    /// What each source says of a key, for its own: the strongest first, the environment last.
    /// @param withFiles  whether the two files are asked
    std::vector<OptionPlace> AskEach(const CString& section, const CString& key, bool withFiles) const;
    /// What each of the two files has for one value of a family.
    std::vector<OptionPlace> PlacesIn(const XOptionFamily& family, const CString& section, const CString& pattern,
                                      int index) const;

private:
    template <class Ask>
    bool AskFiles(Ask ask) const;
    bool Has(OptionLayer layer) const;
    bool AskLayer(OptionLayer layer, CString& value, const CString& section, const CString& key, bool assignEmpty,
                  OptionOrigin* origin) const;
    OptionPlace AskAlone(OptionLayer layer, const CString& section, const CString& key) const;
    OptionPlace PlaceOf(OptionLayer layer, const CString& section, const CString& key) const;
};

/// Whether options of a section are looked for in the environment, too.
bool IsRootSection(const CString& section);

}  // namespace veltrane::detail
