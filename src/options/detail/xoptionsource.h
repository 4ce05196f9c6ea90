#pragma once

#include "foundation/xraise.h"

/// The store, its start-up and its items show as one source in error locations.
inline constexpr XSource Here{L".\\xoption"};
