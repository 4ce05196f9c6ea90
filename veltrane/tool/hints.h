#pragma once

#include "veltrane/foundation/xexception.h"

namespace veltrane {

/// Appends hints to an error: the file and line of a bad value, the right spelling of a name, the places where a
/// missing value was looked for, the option that names a missing folder. The error's own text stays as it is.
/// @code
/// } catch (XException& error) {
///     veltrane::AddHints(error);
///     error.Show();
/// }
/// @endcode
VELTRANE_API void AddHints(XException& error);

}  // namespace veltrane
