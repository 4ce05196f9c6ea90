#pragma once

#include <cstdint>

/// Lets operator new fail at a given allocation, in this program or, loaded by LD_PRELOAD, in any other. There the
/// environment tells which: TORTURE_FAIL_AT is its number, with TORTURE_FROM_THERE_ON all later ones fail too, and the
/// number of all allocations is written to TORTURE_COUNT_FILE at the end.
namespace torture {

/// @param number       of the allocation that fails, from 1
/// @param fromThereOn  whether all later ones fail too
void FailAt(std::int64_t number, bool fromThereOn) noexcept;
/// Ends the failing. @return whether an allocation has failed
bool EndFailing() noexcept;

}  // namespace torture
