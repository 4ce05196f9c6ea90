#pragma once

#include <string>
#include <vector>

#include "plaintext.h"
#include "veltrane/options/xoptiondefinition.h"

namespace veltrane::detail {

/// What may follow an option on the command line.
enum class ValueKind { None, Flag, TriState, Text, File, Folder, Database };

/// A row of the option table as plain UTF-8 text: no tabulators, no line ends, single blanks.
struct OptionText {
    const XOptionDefinition* row;
    std::string key;          ///< "create-views"
    std::string shortOption;  ///< "-cv"; may be empty
    std::string longOption;   ///< "--create-views"
    std::string value;        ///< "<directory>", "[true|false]"; empty when nothing follows
    std::string description;  ///< may be empty
    ValueKind kind;

    /// Whether the help describes it.
    bool HasSyntax() const { return row->szSyntax[0] != 0; }
};

/// The options below one title of the help. The title is without its colon, and empty after the last group.
struct OptionGroup {
    std::string title;
    std::vector<OptionText> options;
};

/// The option table in its own order; groups without options are left out.
/// @param tool  name of its program, for descriptions
std::vector<OptionGroup> GetOptionGroups(const std::string& tool);
std::vector<OptionText> GetOptionTexts(const std::string& tool = {});

/// Whether the tool has the option of the library.
bool HasOption(enumOption option);

/// "command, boolean", "text, several values": type and multiplicity of an option.
std::string KindOf(const XOptionDefinition& row);

/// Name of a section as a reader sees it: "<database>\FILES\<n>"; empty for the unnamed one and for none.
std::string SectionTitle(enumCfgSection section);
/// The sections that options are in, in the order of their values.
std::vector<enumCfgSection> GetOptionSections();

}  // namespace veltrane::detail
