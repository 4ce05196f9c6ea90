#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string_view>

#include "platform/cstring.h"

/// While one lives, a file that has answered a question answers the next ones as it was: for a run of questions that no
/// code of a host stands between, so that nobody can tell when in the run the file was read. An observer of the sources
/// stands between them, so while one is set every question looks anew.
class SourceSnapshot {
public:
    SourceSnapshot() noexcept;
    SourceSnapshot(const SourceSnapshot&) = delete;
    SourceSnapshot& operator=(const SourceSnapshot&) = delete;
    ~SourceSnapshot();
};

/// The bytes of a file; shared, as a question may go on while they are replaced.
struct FileBytes {
    std::shared_ptr<const char[]> data;
    std::size_t size = 0;

    std::string_view View() const noexcept { return {data.get(), size}; }
};

/// The configuration files that the questions of a snapshot have read; a missing one is kept as empty.
class KeptFiles {
public:
    /// Whether a file that is read now is to be kept.
    static bool AreWanted() noexcept;
    /// @return null when the file has to be read
    const FileBytes* Find(CStringView path) const;
    void Keep(CStringView path, FileBytes bytes);

private:
    struct Entry {
        CString path;
        FileBytes bytes;
    };
    std::array<Entry, 3> m_Entries;  // the two files of a store and the registry
    std::size_t m_nNext = 0;
};

KeptFiles& Kept();
