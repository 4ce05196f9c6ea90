#pragma once

#include <cstdint>
#include <vector>

#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/sources/sourceplace.h"
#include "veltrane/platform/text/cstring.h"

// Where the values of a store come from. XOption returns these when origins are kept (XOption::KeepOrigins).

namespace veltrane {

/// One step from a key to its value.
struct OptionStep {
    enum class Kind : std::uint8_t {
        Given,      ///< the text that a source, a word or the host gave
        Reference,  ///< a reference that was looked up and replaced
        Folder,     ///< start-up has put the text below a folder
        Value       ///< the value; always the last step of an explanation without an error
    };
    Kind kind = Kind::Given;
    int depth = 0;           ///< of references inside the values of references, from 0
    CString reference = {};  ///< its name, without percent signs
    std::vector<OptionPlace> places =
        {};  ///< asked for it, in the order of the questions; none for a reference known already
    /// After the step: the value that holds the reference. Empty once the stages of a value take more than four million
    /// elements together.
    CString text = {};
};

/// How a value came about.
struct OptionExplanation {
    std::vector<OptionStep> steps;
    bool hasValue = false;
    CString value;
    CString error;  ///< message of the error that ended the steps: an unknown name, a cycle, a bound; empty without one
};

/// What the sources have for one value of an option.
struct OptionCandidates {
    /// Each source that has a value, the one in force first, then what it overrode, the strongest first.
    std::vector<OptionOrigin> candidates;
    /// Every place that was asked now, with or without an answer, the strongest layer first.
    std::vector<OptionPlace> places;
};

/// A naming rule and where it comes from.
struct OptionRule {
    enumOption option = eOptionTableNameRules;  ///< or eOptionColumnNameRules
    int version = 0;
    CString oldText;
    CString newText;
    OptionOrigin origin;    ///< the place of the new text
    bool isInForce = true;  ///< false: the user file has the version too, without this rule
};

/// One change that a rule makes to a name.
struct OptionRenaming {
    int rule = 0;  ///< number of the rule among those in force for the kind of name, from 0
    CString name;  ///< after the change
};

/// A file or folder that start-up looks at.
struct OptionLocation {
    enum class Kind : std::uint8_t { Registry, MetadataFolder, BasicFile, UserFile, Data, UserFolder };
    Kind kind = Kind::Registry;
    CString option;   ///< that names it; empty for the registry and the basic file
    CString path;     ///< as the store asks for it; empty when nothing is named
    CString spelled;  ///< as it is spelled on the disk, drives replaced; empty when the drive has no folder
    bool exists = false;
    CString key = {};  ///< the registry: that of the tool; empty before Initialize
    /// Whether start-up uses it: one of the two places of a user file, neither when only a file has named it.
    bool isInForce = true;
};

}  // namespace veltrane
