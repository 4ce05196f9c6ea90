#pragma once

namespace veltrane {

/// How the reading of a configuration file went.
enum class SourceReading {
    Done,
    Missing,
    Folder,
    NotRegular,  ///< a pipe or a device: it is left alone
    TooLarge,    ///< more than 256 MiB
    Failed,      ///< no right, or for a reason that may pass
};

enum class SourceEncoding { Utf8, Utf8WithMark, Utf16LittleEndian, Utf16BigEndian };

}  // namespace veltrane
