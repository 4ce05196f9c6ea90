#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// Seconds since 1970-01-01 00:00:00 UTC.
[[nodiscard]] VELTRANE_API std::int64_t CurrentTime();

/// A time by the local clock (TZ), day and month names in English whatever the host's locale is.
/// @param pattern  text with %A (day of the week), %B (month), %d %H %M %S (two digits), %Y (four digits); any other
///                 '%' stays as it is
/// @return empty for a time that has no local date
[[nodiscard]] VELTRANE_API CString LocalTimeText(CStringView pattern, std::int64_t secondsSinceEpoch);

/// The current time as text, composed again only when the second or the time zone (TZ) has changed: for frequent time
/// stamps.
/// @code
/// if (stamp.Update()) StartLine(stamp.Text());
/// @endcode
class VELTRANE_API TimeStamp {
public:
    /// @param pattern  as for LocalTimeText; must live as long as the stamp
    explicit TimeStamp(const wchar_t* pattern) noexcept : m_Pattern(pattern) {}

    /// Reads the clock. @return whether the text has changed
    bool Update();
    const CString& Text() const noexcept { return m_Text; }

private:
    const wchar_t* m_Pattern;
    CString m_Text;
    std::int64_t m_nSecond = -1;
    std::optional<std::string> m_Zone;  // TZ; none when it is not set
};

}  // namespace veltrane
