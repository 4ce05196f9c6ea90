#pragma once

#include <optional>
#include <vector>

#include "edit.h"

// One value of an option in an INI file: its line, how it is changed, and the proof that nothing else is.

namespace veltrane::config {

/// The value that a file is asked for.
struct OptionKey {
    CString section;                   ///< full name; "%d" stands for the index of a family whose sections carry it
    CString key;                       ///< name of the option
    std::optional<int> index = {};     ///< none for a single option
    std::vector<CString> weaker = {};  ///< files that are read before and share the indexes

    bool HasIndexInSection() const { return index && section.Find(L"%d") >= 0; }
};

/// The line that answers for a value; null when none does.
const SourceLine* FindAnswer(const FileEdit& edit, const OptionKey& key);

/// Gives a value another text: in the line that answers, else in a new one after the last entry of the section that
/// answers, else in a new section at the end. @return number of the line afterwards
/// @throws Refusal  no line of the file can hold the text
int SetOption(FileEdit& edit, const OptionKey& key, const CString& value);

/// Removes the line that answers, or all lines of its key in the sections of that name. @return the lines, as they were
std::vector<SourceLine> UnsetOption(FileEdit& edit, const OptionKey& key, bool withAll);

/// Reads the changed file with the library's own readers: the wanted value is there, and every other section, key and
/// index answers as before.
/// @param after  the file with the changes made
/// @param value  nothing for one that is removed
/// @param line   that was changed, or is new
/// @throws Refusal  something else has changed, or the value is not read back
void ProveChange(const FileEdit& edit, const FileEdit& after, const OptionKey& key, const std::optional<CString>& value,
                 const SourceLine& line);

}  // namespace veltrane::config
