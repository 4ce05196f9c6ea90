#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "veltrane/platform/export.h"
#include "veltrane/platform/sources/sourcereading.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// A piece of a file, counted in stored bytes, including a mark at the start.
struct SourceRange {
    std::uint32_t start = 0;
    std::uint32_t length = 0;

    std::uint32_t End() const noexcept { return start + length; }
    /// The piece itself. @param bytes  of the whole file
    std::string_view In(std::string_view bytes) const noexcept { return bytes.substr(start, length); }
};

/// One line of a configuration file and what it means.
struct SourceLine {
    enum class Kind {
        Blank,
        Comment,
        Header,        ///< the first line of a registry file
        Section,       ///< or the key of a registry
        Entry,         ///< a value with its name
        Continuation,  ///< of the entry before it
        Removal,       ///< of a value or a key of a registry
        Ignored,       ///< no meaning; the reason says why
    };
    /// Why a line is ignored, or does not answer although it is an entry or a section.
    enum class Reason {
        None,
        BeforeFirstSection,
        NoEquals,
        EmptyKey,
        HeaderWithoutBracket,  ///< a section all the same, which ends with its line
        DuplicateSection,      ///< or an entry in one: only the first section of the name answers
        DuplicateKey,          ///< only the first of the section answers
        BadHeader,             ///< the file is not a registry export; given for each of its lines
        MalformedKey,          ///< of a registry: not closed, or an empty name inside
        OtherRoot,
        MalformedValue,
        NoCurrentKey,  ///< a value after a line that is not a key
        ReplacedLater,
        RemovedLater,
        UnaskableName,  ///< it holds a NUL, which no question can
        Other,
    };

    int number = 0;  ///< from 1; CR LF ends one line
    Kind kind = Kind::Blank;
    Reason reason = Reason::None;
    bool answers = false;  ///< of an entry: whether it answers a question; of a section: whether its entries can
    CString section =
        {};            ///< as spelled; of a registry the path below the machine's root, for OtherRoot the whole path
    CString key = {};  ///< of a comment, and of a line without '=' in an INI file, its whole text
    bool isQuoted = false;  ///< whether the value of an INI file stands in a pair of quotes
    CString value =
        {};  ///< whole, as a question gives it: without blanks and quotes around it, references not replaced

    SourceRange place = {};       ///< the line, without its end
    std::uint32_t endLength = 0;  ///< bytes of its end; 0 for a last line without one
    /// Of an INI file: the place of a section's name or of what key holds, and the place of the value, which for an
    /// empty value is after the blanks. Empty for lines without them.
    SourceRange namePlace = {};
    SourceRange valuePlace = {};
};

struct SourceFileLines {
    CString path;  ///< as spelled on the disk; empty for a path that cannot exist
    SourceReading reading = SourceReading::Done;
    SourceEncoding encoding = SourceEncoding::Utf8;
    bool hasWindows1252 = false;  ///< some bytes are not valid UTF-8 and are read as Windows-1252
    /// Length of the list of all sections, with one element after each name. A reader with room for 2048 elements sees
    /// the first 2046 of a list longer than 2047.
    int sectionListLength = 0;
    std::vector<SourceLine> lines;  ///< all of them, in order
};

/// Reads an INI file line by line. An entry answers if GetPrivateProfileStringW gives its value for its section and
/// key. @return no lines unless the file was read
VELTRANE_API SourceFileLines ReadProfileLines(const CString& path);

/// Reads a registry file likewise. An entry answers if RegQueryValueExW gives its value.
VELTRANE_API SourceFileLines ReadRegistryLines(const CString& path);

/// The text of a piece of a file, character by character as the readers take it. @param bytes  without the mark
VELTRANE_API CString DecodeSource(std::string_view bytes, SourceEncoding encoding);

}  // namespace veltrane
