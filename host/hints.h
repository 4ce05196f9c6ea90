#pragma once

#include "provenance.h"
#include "veltrane/foundation/xexception.h"

/// Appends to an error what only the host knows: the file and line that a bad value came from, the right spelling of an
/// option. The error's own text stays as it is.
void AddHints(XException& error, const Provenance& provenance);
