#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

#include "veltrane/platform/files/internal/nativefile.h"
#include "veltrane/platform/text/cstring.h"

// A file that is changed on the disk, either completely or not at all.

namespace veltrane::config {

/// A configuration file as it was read, for writing it again. A link is followed to its file.
class EditFile {
public:
    /// Reads a file; one that does not exist is empty and is created when it is written.
    /// @throws Refusal  it is not a regular file of one name and at most 256 MiB that can be read; ".." below a drive
    explicit EditFile(const CString& path);

    const CString& Path() const { return m_Path; }  ///< as it was given
    const std::string& Bytes() const { return m_Bytes; }
    bool Exists() const { return static_cast<bool>(m_File); }

    /// Replaces the bytes that were read: a new file with the same owner, rights and access list takes the name once it
    /// is completely on the disk.
    /// @throws Refusal  the file has changed since it was read, or another process changes it; no right, no room. The
    /// file is then as before, and nothing is left beside it.
    void Write(std::string_view bytes);

private:
    void RequireUnchanged() const;

    CString m_Path;
    std::string m_Name;         // of the system, in full
    detail::NativeFile m_File;  // that was read
    struct stat m_Status = {};
    std::string m_Bytes;
};

}  // namespace veltrane::config
