#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// What a line of a name list says: "table NAME", "column NAME" or "version N".
struct NameLine {
    enum class Kind { Table, Column, Version };
    Kind kind;
    CString name = {};
    int version = 0;
};

/// The lines of a name list except empty ones and comments, which begin with ';'.
class NameLines {
public:
    static constexpr int LONGEST = 65'536;  ///< bytes of a line; far above any name

    /// @param list  must outlive the reader
    explicit NameLines(std::istream& list);

    /// Reads the next line. @return false at the end, and when reading fails: the stream is then bad()
    bool Next();

    int Number() const { return m_nNumber; }  ///< of the line, from 1
    /// Without blanks at its ends and without the mark that other systems put in front of UTF-8. Only the start of a
    /// line that is too long.
    const CString& Text() const { return m_Text; }
    bool IsTooLong() const { return m_bTooLong; }
    /// @return nothing for any other line
    std::optional<NameLine> Line() const;

private:
    std::istream& m_List;
    std::string m_Bytes;
    CString m_Text;
    int m_nNumber = 0;
    bool m_bTooLong = false;
};

}  // namespace veltrane::detail
