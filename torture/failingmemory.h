#pragma once

#include <cstdint>

/// The memory of this program: operator new can be made to fail at a given allocation.
namespace torture {

/// Lets the allocation of a number, from 1, fail: that one alone, or all from it on.
void FailAt(std::int64_t number, bool fromThereOn) noexcept;
/// Ends the failing. @return whether an allocation has failed
bool EndFailing() noexcept;

}  // namespace torture
