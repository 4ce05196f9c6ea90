#pragma once

#include <optional>
#include <vector>

#include "lspspot.h"
#include "lspworld.h"

// How the lines of a configuration are related.

namespace veltrane::config {

/// The part of a line at a position of a document.
struct LspSpot {
    PlacedLine placed;
    LinePart part = LinePart::Line;
    CString reference = {};  ///< name of the one that the position is in; empty for none
    TextRange range = {};    ///< of the reference, else of the part
};
/// @return nothing after the last line
std::optional<LspSpot> SpotAt(const LspView& view, const TextPosition& position);

/// The section of a line as INI files name it; nothing for a key of the registry that is not the tool's.
std::optional<CString> SectionOf(const LspAnalysis& analysis, const PlacedLine& placed);

/// The option to which a line gives a value.
struct LineOption {
    const XOptionDefinition* row;
    int index = -1;          ///< of one with several values; -1 where the line does not tell it, and no item does
    bool isInForce = false;  ///< whether the store has the value of this line
};
std::optional<LineOption> OptionOf(LspAnalysis& analysis, const PlacedLine& placed);

/// Whether a place is a line.
bool IsAt(const OptionOrigin& place, const PlacedLine& placed);
/// The line that a place names; nothing for a place that is not a line of a source.
std::optional<PlacedLine> LineAt(const LspAnalysis& analysis, const OptionOrigin& place);

/// The lines that give a section and a key in each source, those of the strongest first; without a key the headers.
/// Includes those that do not answer.
std::vector<PlacedLine> LinesOf(const LspAnalysis& analysis, const CString& section, const CString& key);

/// The lines that a reference in a value leads to, the one that gives its value first.
std::vector<PlacedLine> LinesOfReference(LspAnalysis& analysis, const PlacedLine& holder, const CString& name);

/// The lines of all values that refer to a name.
std::vector<PlacedLine> LinesReferringTo(const LspAnalysis& analysis, const CString& name);

}  // namespace veltrane::config
