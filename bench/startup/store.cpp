// The whole start of a host: store, three start-up steps, every option read once.
#include "veltrane/options/xoption.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

void ReadEveryOption(XOption& options) {
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        const CString name = row->szLongName;
        if (!row->IsSingle()) {
            for (auto* item = options.GetFirstOptionItem(name); item;) item = options.GetNextOptionItem(name);
        } else if (row->IsBoolean()) {
            options.GetOptionBoolean(name, -1);
        } else if (row->IsTrillian()) {
            options.GetOptionTrillian(name, -1);
        } else if (!row->IsMandatory() || row->eSection != eSectionNone) {
            options.GetOptionString(name, -1);
        }
    }
}

}  // namespace

// Usage: startup_store OPTION... ; startup_origins also keeps the origins of all values.
int main(int /*argc*/, char** /*argv*/) {
    XOption options;
    options.KeepOrigins(KEEP_ORIGINS);
    options.Initialize(L"/nowhere", L"startup_store", L"today", L"1.0", L"now");
    options.OpenConfiguration();
    options.ReadConfiguration();
    ReadEveryOption(options);
    return 0;
}
