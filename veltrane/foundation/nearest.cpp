#include "veltrane/foundation/nearest.h"

namespace veltrane {

CString Nearest(const CString& name, const std::vector<CString>& texts) {
    const CString folded = CString{name}.MakeLower();
    NearestText search{folded.View()};
    CString nearest;
    for (const CString& text : texts) {
        if (text != name && search.IsNearer(CString{text}.MakeLower().View())) nearest = text;
    }
    return nearest;
}

}  // namespace veltrane
