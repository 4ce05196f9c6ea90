#pragma once

#include "veltrane/platform/sources/optionlayer.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// Where the answer of a configuration source is, and its text there.
struct SourcePlace {
    CString file = {};     ///< as asked for; empty for the environment
    int line = 0;          ///< from 1; 0 where the answer has no line of its own
    CString section = {};  ///< the registry's is the whole key
    CString key = {};
    CString text = {};  ///< before its references are replaced
};

/// Where a value comes from: the layer and, as far as the layer has them, file, line, section, key and text.
struct OptionOrigin : SourcePlace {
    OptionLayer layer = OptionLayer::Host;
    int word = -1;  ///< command line: number of the word that names the option, the program being 0; else -1
};

/// A place that was asked for a value.
struct OptionPlace : OptionOrigin {
    bool found = false;  ///< an empty value in a file or in the environment counts as none
};

/// The place of a value that carries an index.
struct IndexedPlace {
    int index = 0;
    SourcePlace place = {};
};

}  // namespace veltrane
