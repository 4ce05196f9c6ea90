#pragma once

#include <map>
#include <vector>

#include "startup.h"
#include "veltrane/platform/sources/sourcelines.h"

namespace veltrane::config {

struct Answer;

/// "read", "missing", "is a folder" and so on.
const wchar_t* ReadingName(SourceReading reading);

/// A file that options are read from, with all its lines.
struct StartupSource {
    OptionLayer layer;
    CString path;          ///< as the store asks for it
    SourceFileLines view;  ///< without lines for one in UTF-16 that has no mark
    bool isUnmarkedUtf16;
};

/// A line by its number; null for a number that is not of a line.
const SourceLine* FindLine(const SourceFileLines& view, int number);

/// The lines of one source, when they were read before; null else.
struct KnownLines {
    OptionLayer layer = OptionLayer::Host;
    const SourceFileLines* view = nullptr;
};

/// Those of a start-up, the weakest first.
std::vector<StartupSource> ReadSources(const XOption& options, const KnownLines& known = {});

/// Whether a source exists and cannot be read. /dev/null is an empty file.
bool IsUnreadable(const CString& path, const SourceFileLines& view);

/// The text in place of a value whose file cannot be read.
CString UnreadableText(const CString& file, const CString& fault);

/// What is wrong with a value that LostFamily has found, by its places.
CString LossNote(const std::vector<OptionPlace>& places);

/// Basic file, user file and registry of a start-up with all their lines, even those that the store could not use.
class StartupFiles {
public:
    explicit StartupFiles(Startup& startup);

    /// Why the file of a layer cannot be read; empty when it can, or is missing.
    CString FaultOf(OptionLayer layer) const;
    /// A line for each file that cannot be read.
    std::vector<CString> FaultTexts() const;
    /// Makes each file that cannot be read a finding, and adds it to the document and, if the text does not mention it,
    /// to standard error.
    void AddFaults(Answer& answer) const;
    /// What may have been meant when no file has the section of an option; empty when one has, or nothing is near.
    CString SectionHint(const XOptionDefinition& row) const;

    using Family = std::map<int, std::vector<OptionPlace>>;
    /// The values of an option that an index given twice has kept out of the store, each index with its places; none
    /// for any other option. A section that has the index again but not the key is a place without a text.
    Family LostFamily(const XOptionDefinition& row) const;

private:
    void AddValues(Family& family, const StartupSource& source, const XOptionDefinition& row) const;
    static void AddNumbered(Family& family, const SourceLine& line, OptionPlace place, int index);

    Startup& m_Startup;
    std::vector<StartupSource> m_Sources;
};

}  // namespace veltrane::config
