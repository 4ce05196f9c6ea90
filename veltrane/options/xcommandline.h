#pragma once

#include <memory>
#include <vector>

#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/text/cstring.h"

/// Walks the arguments of the process and gives them as pairs of option definition and value text.
/// @code
/// XCommandLine line;
/// CString value;
/// for (auto* option = line.GetFirst(value); option; option = line.GetNext(value)) Use(*option, value);
/// @endcode
class VELTRANE_API XCommandLine {
public:
    /// Reads the arguments of the process as they are now; has none when they cannot be read.
    XCommandLine();
    XCommandLine(const XCommandLine&) = default;
    XCommandLine& operator=(const XCommandLine&) = default;  ///< same arguments, same position
    ~XCommandLine();

    /// Starts over and gives the first pair.
    XOptionDefinition* GetFirst(CString& value);

    /// The next pair: a row of the option table and the value given for it, a flag's default value when none was given.
    /// An argument that stands alone is the database name.
    /// @return null, with value empty, when all arguments are used up
    /// @throws XException  unknown option; flag with a wrong word (value then holds it); option without its value
    XOptionDefinition* GetNext(CString& value);

    /// Number of the argument that names the option given last, the program being 0; that of a database name itself.
    int GetArgumentNumber() const noexcept { return m_nNamed; }

private:
    bool Advance();
    bool ReadValue(CString& value);

    std::shared_ptr<const std::vector<CString>> m_Arguments;
    int m_nArguments;
    int m_nCurrent = 0;  // the argument used last; the program itself is 0
    int m_nNamed = 0;
};
