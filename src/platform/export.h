#pragma once

/// Marks what the shared library offers to its users; everything else stays hidden inside it.
#define VELTRANE_API __attribute__((visibility("default")))
