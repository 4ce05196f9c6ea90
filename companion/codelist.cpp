#include "codelist.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "nametext.h"
#include "veltrane/platform/text/encoding.h"

namespace veltrane::config {

std::vector<std::string> SplitList(std::string list) {
    std::ranges::replace(list, ',', ' ');
    std::istringstream words{list};
    return {std::istream_iterator<std::string>{words}, {}};
}

const LintRow* FindLint(CString name) {
    const std::string wanted = ToUtf8(name.MakeUpper());
    const auto* const row = std::ranges::find(LINTS, std::string_view{wanted}, &LintRow::name);
    return row == std::end(LINTS) ? nullptr : row;
}

// "5" and "C5" are not codes.
CString NearestCode(CString name) {
    name.MakeUpper();
    CString padded = L"C0" + name.Right(1);
    if (name.GetLength() < 3 && FindLint(padded)) return padded;
    return NearestRow(name, LINTS, &LintRow::name);
}

}  // namespace veltrane::config
