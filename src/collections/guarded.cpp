#include "collections/guarded.h"

#include "platform/messagebox.h"

void ShowFailure(const wchar_t* message) noexcept try {
    AfxMessageBox(message);
} catch (...) {  // no way is left to tell the user
}
