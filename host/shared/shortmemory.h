#pragma once

namespace veltrane::detail {

/// From now on a program that gets no memory writes one line on standard error and ends with this exit code: at once
/// where memory is asked for, by std::set_new_handler(); and where it would be aborted, as an error cannot be thrown,
/// or nobody catches it, for want of memory.
void EndWhereMemoryIsShort(int exitCode) noexcept;

}  // namespace veltrane::detail
