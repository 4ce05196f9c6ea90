#pragma once

#include "json.h"
#include "veltrane/foundation/xexception.h"

namespace veltrane::config {

/// An error of the store: reasons from the outermost on, message, remarks, locations.
Json ErrorJson(int number, const CString& location, const CString& message);
Json ErrorJson(const XException& error);

}  // namespace veltrane::config
