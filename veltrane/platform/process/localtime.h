#pragma once

#include <cstdint>

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// Seconds since 1970-01-01 00:00:00 UTC.
VELTRANE_API std::int64_t CurrentTime();

/// A time by the local clock (TZ), day and month names in English whatever the host's locale is.
/// @param pattern  text with %A (day of the week), %B (month), %d %H %M %S (two digits), %Y (four digits); any other
///                 '%' stays as it is
/// @return empty for a time that has no local date
VELTRANE_API CString LocalTimeText(CStringView pattern, std::int64_t secondsSinceEpoch);

}  // namespace veltrane
