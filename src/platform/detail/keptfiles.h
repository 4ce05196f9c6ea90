#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "platform/cstring.h"
#include "platform/detail/filestate.h"

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

/// The configuration files that were read last, for as long as they still are what would be read. Outside a snapshot
/// that is so while the state of a file, settled when it was read, has not changed.
class KeptFiles {
public:
    /// @return null when the file has to be read
    const FileBytes* Find(const CString& path);
    /// Whether a file in that state, or a missing one, is worth keeping.
    static bool IsWorthKeeping(const FileState& state, std::size_t size) noexcept;
    void Keep(const CString& path, std::string spelled, const FileState& state, FileBytes bytes);
    /// Forgets what is good for a snapshot only.
    void EndSnapshot();

private:
    struct Entry {
        CString path;
        std::string spelled;
        FileState state;
        FileBytes bytes;
        bool isOfSnapshot = false;
        bool isSettled = false;
    };
    std::array<Entry, 3> m_Entries;  // the two files of a store and the registry
    std::size_t m_nNext = 0;
};

KeptFiles& Kept();
