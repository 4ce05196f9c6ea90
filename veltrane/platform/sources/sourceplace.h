#pragma once

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// Where an answer of a configuration source stands, and the answer as it stands there.
struct SourcePlace {
    CString file = {};     ///< as asked for; empty for the environment
    int line = 0;          ///< from 1; 0 where the answer has no line of its own
    CString section = {};  ///< the registry's is the whole key
    CString key = {};
    CString text = {};  ///< before its references are replaced
};

/// The place of a value that carries an index.
struct IndexedPlace {
    int index = 0;
    SourcePlace place = {};
};

}  // namespace veltrane
