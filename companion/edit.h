#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "veltrane/platform/sources/sourcelines.h"

// Changes of the text of an INI file, line by line. All other bytes stay.

namespace veltrane::config {

/// Bytes of a file and their replacement.
struct EditPiece {
    SourceRange place;
    std::string bytes;  ///< in the encoding of the file
};

/// An INI file in memory and what is to be changed in it. The changes do not overlap, and places and lines are those of
/// the file as it was.
class FileEdit {
public:
    /// @param path  by which the readers know the file; it may not exist
    FileEdit(const CString& path, std::string bytes);

    const CString& Path() const { return m_Path; }
    const std::string& Bytes() const { return m_Bytes; }
    const SourceFileLines& View() const { return m_View; }
    const SourceLine& Line(int number) const { return m_View.lines[static_cast<std::size_t>(number) - 1]; }

    bool HasLine(int number) const { return number > 0 && number <= static_cast<int>(m_View.lines.size()); }
    /// The first header that answers and whose name fits; null without one.
    template <class Fits>
    const SourceLine* FindHeader(Fits fits) const {
        const auto header = std::ranges::find_if(m_View.lines, [&](const SourceLine& line) {
            return line.kind == SourceLine::Kind::Section && line.answers && fits(line.section);
        });
        return header == m_View.lines.end() ? nullptr : &*header;
    }
    /// The last entry of a section; its header when it has none.
    const SourceLine& LastEntry(const SourceLine& header) const;

    // Each throws a Refusal, with nothing changed, for a text that could not be read back from the file.

    /// Replaces a text within a line, such as a key or the name of a section.
    void Replace(const SourceRange& place, const CString& text);
    /// Gives an entry another value, in quotes if the readers would otherwise remove a part of it.
    void SetValue(const SourceLine& entry, const CString& value);
    /// Puts lines after the one of a number, with an end like those of their neighbours; after 0 in front of all. A
    /// file without an end at its last line stays without one.
    void InsertAfter(int number, const std::vector<CString>& lines);
    /// Removes a line with its end; a file without an end at its last line stays without one.
    void Remove(const SourceLine& line);

    bool IsChanged() const { return !m_Pieces.empty(); }
    /// The changes in the order of the file.
    std::vector<EditPiece> Pieces() const;
    /// The file after the changes.
    std::string Result() const;
    /// The changes as `diff -u` shows them, UTF-16 as UTF-8. Empty without changes.
    std::string Diff(const std::string& name) const;

private:
    bool IsUtf16() const {
        using enum SourceEncoding;
        return m_View.encoding == Utf16LittleEndian || m_View.encoding == Utf16BigEndian;
    }
    std::uint32_t StartOfText() const;
    std::string Encoded(const CString& text) const;
    std::string EndNear(int number) const;
    bool EndsWithoutEnd() const { return !m_View.lines.empty() && m_View.lines.back().endLength == 0; }

    CString m_Path;
    std::string m_Bytes;
    SourceFileLines m_View;
    std::vector<EditPiece> m_Pieces;
};

/// A value as an entry of a file holds it: in quotes if the readers would otherwise remove blanks or quotes.
CString QuotedValue(const CString& value);

/// Why a value could not be read back from an entry; null when it can.
const wchar_t* ReasonAgainstValue(const CString& value);
/// @throws Refusal  no entry can hold the value
void RequireValue(const CString& value);

}  // namespace veltrane::config
