#pragma once

#include <vector>

#include "lint.h"
#include "lsptext.h"

// Where the parts of a line of a source stand in its text.

namespace veltrane::config {

/// A line of one of the sources.
struct PlacedLine {
    const StartupSource* source;
    const SourceLine* line;

    bool operator==(const PlacedLine&) const = default;
};

struct ReferenceSpan {
    CString name;
    TextRange range;  ///< with its percent signs
};

/// How positions in a source are counted.
struct LineUnits {
    ColumnUnit unit;
    /// The text as the client has it, which then counts a mark at its start, too; null when the source is not open.
    const DocumentText* text;
};

/// The range of a part of a line; the whole line where it has no such part, or only its text would tell.
TextRange RangeOf(const PlacedLine& placed, LinePart part, const LineUnits& units);

std::vector<ReferenceSpan> ReferencesIn(const PlacedLine& placed, const LineUnits& units);

bool Holds(const TextRange& range, const TextPosition& position);

}  // namespace veltrane::config
