#pragma once

#include <list>
#include <string>
#include <vector>

#include "lint.h"
#include "veltrane/platform/files/internal/replacement.h"

// What lint mends itself: names that can only be misspelt, headers without their bracket and, if asked for, keys in the
// wrong section.

namespace veltrane::config {

/// One change of a line.
struct Mend {
    LintRun::Placed finding;
    CString text;  ///< that takes the place of the name; of a header without its bracket the same name; of a key in the
                   ///< wrong section the section that its line goes to
};

/// A file and its new content.
struct MendedFile {
    CString path;
    std::string bytes;  ///< as read
    std::string result;
    std::string diff;
};

/// The findings that can be mended with certainty.
std::vector<Mend> CertainMends(const LintRun& run, const Findings& findings);

/// The keys whose right section is certain and does not have them yet. Their values may come into force.
std::vector<Mend> MovesOfKeys(const LintRun& run, const Findings& findings);

/// While they live, the files have their new content for every reader. @param files  must outlive them
std::list<SourceReplacement> Replaced(const std::vector<MendedFile>& files);

/// Removes the mends that would cause a new finding, and makes the files of the rest.
/// @param before  all findings of the configuration
/// @throws Refusal  a file cannot be read, or cannot hold a name
std::vector<MendedFile> ProveMends(Startup& startup, const Findings& before, std::vector<Mend>& mends);

}  // namespace veltrane::config
