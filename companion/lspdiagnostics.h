#pragma once

#include <vector>

#include <nlohmann/json.hpp>

#include "lspspot.h"
#include "lspworld.h"

namespace veltrane::config {

/// A finding and the line that it is about; that of a finding about a whole file is blank.
struct LineFinding {
    const LintRun::Placed* finding;
    PlacedLine placed;

    TextRange Range(const LineUnits& units) const { return RangeOf(placed, finding->part, units); }
    bool IsNeverRead() const;
};

/// Those of a source, line by line.
std::vector<LineFinding> FindingsIn(const LspAnalysis& analysis, const StartupSource& source);

/// A finding as the protocol tells it.
LspJson DiagnosticJson(const LineFinding& found, const LineUnits& units, const LspTool& tool);

/// All that lint finds in a source.
LspJson DiagnosticsOf(const LspAnalysis& analysis, const StartupSource& source, const LineUnits& units,
                      const LspTool& tool);

}  // namespace veltrane::config
