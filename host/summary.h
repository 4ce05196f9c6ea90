#pragma once

#include "veltrane/options/xoption.h"

/// Prints every option that has a value, one line each: name, index, value and where it came from.
void PrintSummary(XOption& options);

/// Prints every item of the store as one JSON object a line.
void PrintSummaryAsJson(XOption& options);
