// Input: a line with the separators, then two lines with a list each. What sets make of the lists, and of each
// other, is compared with plain loops.
#include <algorithm>
#include <iterator>
#include <vector>

#include "fuzz_input.h"
#include "fuzz_text.h"
#include "veltrane/collections/xsetint.h"
#include "veltrane/collections/xsetstring.h"
#include "veltrane/foundation/xstring.h"

using namespace veltrane;

namespace {

std::vector<Text> PiecesOf(const Text& text, const Text& separators) {
    std::vector<Text> pieces(1);
    for (const wchar_t element : text) {
        const bool isEnd = separators.find(element) != separators.npos;
        if (isEnd) pieces.emplace_back();
        if (!isEnd) pieces.back() += element;
    }
    return pieces;
}

std::vector<int> NumbersIn(const Text& text) {
    std::vector<int> numbers;
    for (const Text& piece : PiecesOf(text, L",")) {
        const int number = NumberAt(piece, 0).value_or(0);
        if (number > 0) numbers.push_back(number);
    }
    return numbers;
}

template <class Set>
auto ValuesOf(const Set& set) {
    std::vector<std::decay_t<decltype(set.GetConstRefAt(0))>> values;
    for (int i = 0; i < set.Size(); ++i) values.push_back(set.GetConstRefAt(i));
    return values;
}

void RequireNumbers(const Text& text, const Text& other) {
    const std::vector<int> numbers = NumbersIn(text);
    const std::vector<int> others = NumbersIn(other);
    XSetInt set;
    set.BuildSet(CString{text});
    REQUIRE(ValuesOf(set) == numbers);
    REQUIRE(set.GetMax() == (numbers.empty() ? -1 : *std::ranges::max_element(numbers)));
    XSetInt more;
    more.BuildSet(CString{other});
    set.Union(more);
    std::vector<int> all = numbers;
    all.insert(all.end(), others.begin(), others.end());
    std::ranges::sort(all);
    REQUIRE(ValuesOf(set) == all);
    for (const int number : all) REQUIRE(set.Find(number, XSetInt::Comp) >= 0);
    if (all.empty() || all.back() > 5000) return;
    XSetInt free;
    set.GetFreeNumbers(free);
    std::vector<int> gaps;
    for (int number = 1; number < all.back(); ++number) {
        if (!std::ranges::binary_search(all, number)) gaps.push_back(number);
    }
    REQUIRE(ValuesOf(free) == gaps);
}

void RequireFields(const Text& text) {
    const std::vector<Text> fields = PiecesOf(text, L",");
    for (std::size_t i = 0; i < fields.size(); ++i) {
        REQUIRE(GetArgument(static_cast<int>(i), CString{text}) == CString{fields[i]});
    }
    REQUIRE(GetArgument(static_cast<int>(fields.size()), CString{text}).IsEmpty());
}

// White space in front of a piece does not count, even if it is a separator.
std::vector<CString> NamesIn(const Text& text, const Text& separators) {
    std::vector<Text> pieces(1);
    bool isBlank = true;  // so far in the piece
    const CString trimmed = CString{text}.Trim();
    for (const wchar_t element : trimmed.View()) {
        if (isBlank && IsWhiteSpace(element)) continue;
        isBlank = separators.find(element) != separators.npos;
        if (isBlank) pieces.emplace_back();
        if (!isBlank) pieces.back() += element;
    }
    std::vector<CString> names;
    for (const Text& piece : pieces) {
        const CString name = CString{piece}.Trim();
        if (std::ranges::find(names, name) == names.end()) names.push_back(name);
    }
    return names;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input = InputText(data, size);
    const Text separators{FromUtf8(NextLine(input)).View()};
    const Text text{FromUtf8(NextLine(input)).View()};
    const Text other{FromUtf8(NextLine(input)).View()};
    RequireNumbers(text, other);
    RequireFields(text);
    XSetString set;
    set.InsertList(CString{text}, /*sort*/ false, CString{separators});
    std::vector<CString> names = NamesIn(text, separators);
    REQUIRE(ValuesOf(set) == names);
    XSetString more;
    more.InsertList(CString{other}, /*sort*/ true, CString{separators});
    std::vector<CString> others = NamesIn(other, separators);
    std::ranges::sort(others);
    REQUIRE(ValuesOf(more) == others);

    std::ranges::sort(names);
    std::vector<CString> expected;
    XSetString gone;
    gone.Sub(set, more);
    std::ranges::set_difference(names, others, std::back_inserter(expected));
    REQUIRE(ValuesOf(gone) == expected);
    XSetString both;
    both.Intersection(set, more);
    expected.clear();
    std::ranges::set_intersection(names, others, std::back_inserter(expected));
    REQUIRE(ValuesOf(both) == expected);
    return 0;
}
