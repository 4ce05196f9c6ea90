#include "wrapped.h"

#include <algorithm>

#include "veltrane/platform/text/encoding.h"

namespace veltrane::config {

CString Blanks(int count) {
    return CString{L' ', std::max(count, 0)};
}

void AddWrapped(std::string& text, CString words, int margin, CString lead) {
    if (lead.IsEmpty()) lead = Blanks(margin);
    for (int used = std::max(margin, lead.GetLength()); used + words.GetLength() > LINE_WIDTH; used = margin) {
        const int last = words.Left(std::max(LINE_WIDTH - used, 0) + 1).ReverseFind(L' ');
        const int end = last > 0 ? last : words.Find(L' ');
        if (end <= 0) break;
        text += ToUtf8(lead + words.Left(end)) + '\n';
        lead = Blanks(margin);
        words = words.Mid(end + 1);
    }
    text += ToUtf8((lead + words).TrimRight()) + '\n';
}

}  // namespace veltrane::config
