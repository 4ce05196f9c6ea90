// Input: a line with the format, then the item.
#include <climits>

#include "fuzz_input.h"
#include "veltrane/platform/text/internal/indexformat.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

/// Whether a format has a place for the number that is not followed by a digit, which would be read with it.
bool IsReadableBack(const CString& format) {
    const CString one = FormatIndex(format, 1);
    const CString two = FormatIndex(format, 2);
    REQUIRE(one.GetLength() == two.GetLength());
    int at = 0;
    while (at < one.GetLength() && one[at] == two[at]) ++at;
    const wchar_t after = one[at + 1];
    return at < one.GetLength() && (after < L'0' || after > L'9');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input = InputText(data, size);
    const CString format = FromUtf8(NextLine(input));
    const CString item = FromUtf8(input);

    int index = 77;
    if (!MatchIndex(item, format, index)) REQUIRE(index == 77);
    if (format.Find(L"%d") < 0) REQUIRE(index == 77 && !MatchIndex(item, format, index));
    if (!IsReadableBack(format)) return 0;
    for (const int number : {0, 7, -1, INT_MAX, INT_MIN, index}) {
        int read = ~number;
        REQUIRE(MatchIndex(FormatIndex(format, number), format, read));
        REQUIRE(read == number);
    }
    return 0;
}
