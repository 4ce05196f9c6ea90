#include "veltrane/collections/guarded.h"

#include "veltrane/platform/process/messagebox.h"

namespace veltrane::detail {

void ShowFailure(const wchar_t* message) noexcept try {
    AfxMessageBox(message);
} catch (...) {  // there is no way left to tell the user
}

}  // namespace veltrane::detail
