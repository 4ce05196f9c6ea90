#pragma once

#include "veltrane/foundation/xraise.h"

namespace veltrane::detail {

/// The store, its start-up and its items show as one source in error locations.
inline constexpr XSource Here{L".\\xoption"};

}  // namespace veltrane::detail
