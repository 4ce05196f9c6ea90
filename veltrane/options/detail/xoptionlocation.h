#pragma once

#include "veltrane/foundation/xraise.h"

namespace veltrane::detail {

/// Error locations show the store, its start-up and its items as one source.
inline constexpr XSource Here{L".\\xoption"};

}  // namespace veltrane::detail
