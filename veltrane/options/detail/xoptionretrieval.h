#pragma once

#include "veltrane/options/detail/xoptionexpansion.h"
#include "veltrane/options/detail/xoptionitems.h"
#include "veltrane/options/detail/xoptionorigins.h"
#include "veltrane/options/detail/xoptionsources.h"

namespace veltrane::detail {

/// Asks the sources of a store for options and stores the answers as items.
class XOptionRetrieval {
public:
    XOptionRetrieval(XOptionItems& items, XOptionSources& sources, XOptionOrigins& origins);

    /// Fills an option that has no item yet. @throws XException  as XOption::RetrieveOption
    void Retrieve(XOptionDefinition& definition);

    /// Stores a value and notes where it comes from.
    XOptionItem* Insert(XOptionDefinition& definition, const CString& value, int index, XKeptOrigin origin);
    /// Likewise a value that a layer gives without being asked.
    XOptionItem* Insert(XOptionDefinition& definition, const CString& value, int index, OptionLayer layer);

    /// Full name of a section; "%d" stays in it. The option that names the database is retrieved for it and, with
    /// isStoring, becomes an item.
    CString SectionName(enumCfgSection section, bool isStoring);

    /// The text of a key with its references replaced. @param kept  receives the origin and the answers; may be null
    CString Value(const CString& section, const CString& key, XKeptOrigin* kept);
    /// Replaces the references in a value of a section.
    /// @param kept  holds the origin with the text of the value; receives the answers; may be null
    void Expand(CString& value, const CString& section, XKeptOrigin* kept);
    /// Whether a text of ROOT gives a value while no file is open; an error counts as a value.
    bool GivesEarly(CString text);

private:
    void AddSubject(XException& error, const XOptionDefinition& definition, const CString& section);
    void RetrieveSingle(XOptionDefinition& definition, const CString& section);
    void RetrieveMultiple(XOptionDefinition& definition, const CString& section);
    class Expansion;
    CString SourceValue(const CString& section, const CString& key, XKeptOrigin* kept);
    CString ItemValue(const CString& key, std::vector<OptionPlace>* places);
    bool IsReadLater(const CString& name) const;

    XOptionItems& m_Items;
    XOptionSources& m_Sources;
    XOptionOrigins& m_Origins;
    bool m_bEarly = false;  // the question is what start-up got while no file was open
};

}  // namespace veltrane::detail
