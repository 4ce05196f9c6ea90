#pragma once

#include <cstdint>

/// The memory of this program, or of the one that this is loaded in front of (LD_PRELOAD): operator new can be made to
/// fail at a given allocation. For a program of others the environment says which: TORTURE_FAIL_AT is its number, with
/// TORTURE_FROM_THERE_ON all from it on fail, and the number of all goes to TORTURE_COUNT_FILE at the end.
namespace torture {

/// Lets the allocation of a number, from 1, fail: that one alone, or all from it on.
void FailAt(std::int64_t number, bool fromThereOn) noexcept;
/// Ends the failing. @return whether an allocation has failed
bool EndFailing() noexcept;

}  // namespace torture
