#pragma once

#include <cstdlib>
#include <memory>

#include "veltrane/platform/text/encoding.h"

namespace veltrane {

/// The file of the running program, links resolved; empty when it cannot be found, for example because it was deleted.
[[nodiscard]] inline CString GetProgramFile() {  // inline: only programs that call it load what it needs of the system
    const std::unique_ptr<char, decltype(&std::free)> file{realpath("/proc/self/exe", nullptr), std::free};
    return file ? FromUtf8(file.get()) : CString{};
}

}  // namespace veltrane
