#pragma once

#include <cstdlib>
#include <memory>

#include "veltrane/platform/text/encoding.h"

namespace veltrane {

/// The file of the program that runs, links resolved; empty when it cannot be found, as one that was deleted.
[[nodiscard]] inline CString GetProgramFile() {  // inline: what it asks of the system, only those load who call it
    const std::unique_ptr<char, decltype(&std::free)> file{realpath("/proc/self/exe", nullptr), std::free};
    return file ? FromUtf8(file.get()) : CString{};
}

}  // namespace veltrane
