#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "veltrane/platform/files/nativefile.h"
#include "veltrane/platform/sources/sourcelines.h"

namespace veltrane::detail {

/// The text of a configuration file as bytes to scan: without a mark at its start, and UTF-16 turned into UTF-8.
/// Empty unless the reading was done. A file that changes meanwhile gives what was there.
class TextFile {
public:
    /// Largest file that is read: far above what a configuration or the export of a machine's registry takes, and a
    /// wrong name does not fill the memory.
    static constexpr std::size_t MAX_SIZE = std::size_t{256} << 20;

    TextFile() = default;
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    /// Reads a regular file to its end, whatever size it claims.
    /// @param error  of the opening, when there is no file
    void Read(const NativeFile& file, int error);
    /// Takes bytes that live longer than this object.
    void Take(std::string_view bytes);

    std::string_view Text() const noexcept { return m_Text; }
    /// Whether the text holds lone surrogates of UTF-16 in three-byte form, to be decoded as such.
    bool WithSurrogates() const noexcept { return m_WithSurrogates; }
    SourceReading Result() const noexcept { return m_Reading; }
    SourceEncoding Encoding() const noexcept { return m_Encoding; }

private:
    SourceReading ReadBytes(const NativeFile& file, std::size_t size);
    void MakeRoom(std::size_t room);

    std::unique_ptr<char[]> m_Bytes;  // not filled before they are read
    std::size_t m_nSize = 0;
    std::string m_Converted;
    std::string_view m_Text;
    bool m_WithSurrogates = false;
    SourceEncoding m_Encoding = SourceEncoding::Utf8;
    SourceReading m_Reading = SourceReading::Done;
};

}  // namespace veltrane::detail
