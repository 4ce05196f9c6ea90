#pragma once

#include <exception>
#include <map>
#include <memory>
#include <vector>

#include "veltrane/config/xconfiguration.h"
#include "veltrane/config/xregistry.h"
#include "veltrane/options/xoptionorigin.h"

namespace veltrane::detail {

/// The values of a family by their index and, if wanted, their places, the basic file before the user file.
struct XOptionFamily {
    XMapInt2CString values = {};
    std::multimap<int, OptionOrigin> places = {};
    std::exception_ptr fault = {};  ///< reading ended at an index that is given twice; its second place is the last

    /// Whether the value of an index becomes an item: a value at -1 ends the retrieval, and an index given twice
    /// prevents it.
    bool Gives(int index) const { return !fault && (index < -1 || !places.contains(-1)); }
};

/// The configuration sources of a store and the order in which they are asked: a source with a value overrides those
/// before it. A source that start-up has not opened yet has nothing.
class XOptionSources {
public:
    std::unique_ptr<XRegistry> registry;
    std::unique_ptr<XConfiguration> userFile;
    std::unique_ptr<XConfiguration> basicFile;

    /// The value of a key from the strongest source that has one.
    /// @param assignEmpty  whether the basic file also answers for a missing or empty key
    /// @param places       receives each place that is asked, in the order of the questions, for Complete: the last one
    ///                     found has the value; may be null
    /// @return found; otherwise value keeps what it held
    bool GetKeyValue(CString& value, const CString& section, const CString& key, bool assignEmpty,
                     std::vector<OptionPlace>* places) const;

    /// GetKeyValue and, for a key of ROOT that has no text so far, the environment.
    void GetValue(CString& value, const CString& section, const CString& key, std::vector<OptionPlace>* places) const;

    /// Adds file and whole key to places without an answer.
    void Complete(std::vector<OptionPlace>& places) const;

    /// The values of a family from both files. @param withPlaces  whether their places are wanted
    XOptionFamily ReadFamily(const CString& section, const CString& pattern, bool withPlaces) const;

    /// The key names of each section of a form from both files. @return false when no file is open
    bool GetOptionNameSet(XMapInt2CString& names, const CString& sectionFormat) const;

    /// What each source says when asked alone: the strongest first, the environment last.
    /// @param withFiles  whether the two files are asked
    std::vector<OptionPlace> AskEach(const CString& section, const CString& key, bool withFiles) const;
    /// What each of the two files has for one value of a family.
    std::vector<OptionPlace> PlacesIn(const XOptionFamily& family, const CString& section, const CString& pattern,
                                      int index) const;

private:
    const XConfiguration* FileOf(OptionLayer layer) const;  // null unless the layer is an open file
    bool Has(const OptionLayerRow& row) const;
    bool Ask(OptionLayer layer, CString& value, const CString& section, const CString& key, bool assignEmpty,
             SourcePlace* place) const;
    bool AskNoting(OptionLayer layer, CString& value, const CString& section, const CString& key, bool assignEmpty,
                   std::vector<OptionPlace>* places) const;
    OptionPlace PlaceOf(OptionLayer layer, const CString& section, const CString& key) const;
};

/// The last place that was found, which has the value; null without one.
OptionPlace* LastFound(std::vector<OptionPlace>& places);
/// That place as an origin; the host without one. The text, which may be long, moves from the place to the origin.
OptionOrigin ReleaseOrigin(std::vector<OptionPlace>& places);

/// Whether options of a section are also looked for in the environment.
bool IsRootSection(const CString& section);

}  // namespace veltrane::detail
