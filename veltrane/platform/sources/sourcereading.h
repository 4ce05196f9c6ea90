#pragma once

namespace veltrane {

/// How the reading of a configuration file went.
enum class SourceReading {
    Done,
    Missing,
    Folder,
    NotRegular,  ///< a pipe or a device: not read
    TooLarge,    ///< more than 256 MiB
    Failed,      ///< no right, or a reason that may be temporary
};

enum class SourceEncoding { Utf8, Utf8WithMark, Utf16LittleEndian, Utf16BigEndian };

}  // namespace veltrane
