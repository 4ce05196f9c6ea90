#pragma once

#if __cplusplus < 202002L
#error "The Veltrane base library needs C++20: compile with -std=c++20 or later"
#endif

/// Marks what the shared library offers to its users; everything else stays hidden inside it.
#define VELTRANE_API __attribute__((visibility("default")))

/// Names that host code does not know already are in veltrane; those that only the library uses are in
/// veltrane::detail.
namespace veltrane::detail {

// Classes of the library hold standard containers, which have another layout in this mode: a host in this mode names a
// symbol that only a library in this mode has, so that one without does not link.
#ifdef _GLIBCXX_DEBUG
#ifdef VELTRANE_BUILDING
[[gnu::used]] VELTRANE_API inline const bool LIBRARY_HAS_GLIBCXX_DEBUG = true;
#else
VELTRANE_API extern const bool LIBRARY_HAS_GLIBCXX_DEBUG;
[[gnu::used]] inline const bool* const HOST_HAS_GLIBCXX_DEBUG = &LIBRARY_HAS_GLIBCXX_DEBUG;
#endif
#endif

}  // namespace veltrane::detail
