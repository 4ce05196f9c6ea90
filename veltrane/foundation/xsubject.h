#pragma once

#include <vector>

#include "veltrane/platform/sources/sourceplace.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// What an error is about, as far as the code that raised it or passed it on knows. Nobody has to search its texts.
struct ErrorSubject {
    CString option = {};                   ///< long name of the option that was to be read or retrieved
    CString argument = {};                 ///< the word of the command line, or the name, that is unknown or invalid
    CString reference = {};                ///< name of the reference that leads nowhere, back to itself or too deep
    int index = -1;                        ///< the index that is given twice, any int; else -1
    std::vector<OptionPlace> places = {};  ///< that are involved
};

}  // namespace veltrane
