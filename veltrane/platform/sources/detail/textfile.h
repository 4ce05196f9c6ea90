#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "veltrane/platform/files/nativefile.h"
#include "veltrane/platform/sources/detail/keptfiles.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// The text of a configuration file, read once and whole, as bytes to scan: without a mark at its start, and a file in
/// UTF-16 turned into UTF-8.
class TextFile {
public:
    /// Largest file that is read, a larger one is as an empty file: far above what a configuration or the export of a
    /// machine's registry takes, and a wrong name does not fill the memory.
    static constexpr std::size_t MAX_SIZE = std::size_t{256} << 20;

    /// Reads a file through the path mapping; what can not be read is an empty text. A file that changes meanwhile
    /// gives what was there.
    explicit TextFile(CStringView path);
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    std::string_view Text() const noexcept { return m_Text; }  ///< as long as this object
    /// Whether the text holds lone surrogates of UTF-16 in three-byte form, to be decoded as such.
    bool WithSurrogates() const noexcept { return m_WithSurrogates; }

private:
    void Read(CStringView path, KeptFiles* kept);
    /// @return false, with nothing taken from it, when the file is not small or not surely a regular file
    bool ReadSmall(const NativeFile& file);
    void Recode(std::string_view bytes);

    static constexpr std::size_t SMALL_SIZE = 16384;  // nearly every configuration file fits: no memory is asked for

    char m_SmallBytes[SMALL_SIZE];
    FileBytes m_Bytes;  // of a larger file, or of one that is kept
    std::string m_Converted;
    std::string_view m_Text;
    bool m_WithSurrogates = false;
};

}  // namespace veltrane::detail
