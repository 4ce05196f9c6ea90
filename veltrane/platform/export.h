#pragma once

/// Marks what the shared library offers to its users; everything else stays hidden inside it.
#define VELTRANE_API __attribute__((visibility("default")))

/// What host code does not bring along stands in veltrane; what only the library itself uses in veltrane::detail.
namespace veltrane::detail {}
