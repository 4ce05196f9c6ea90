#include "veltrane/options/xowntable.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "veltrane/foundation/xraise.h"
#include "veltrane/options/detail/optionregistry.h"

namespace veltrane {

using namespace detail;

namespace {

struct FaultText {
    Fault fault;
    std::wstring_view format;  ///< of the name of the row, and of another one if the fault tells it
};

// clang-format off
constexpr FaultText FAULT_TEXTS[] = {
    {Fault::NameIsEmpty,                             L"The option <%s> cannot be registered: its name is empty!"},
    {Fault::NameBeginsWithAHyphen,                   L"The option <%s> cannot be registered: its names begin without a hyphen!"},
    {Fault::NameHasOtherThanLettersDigitsAndHyphens, L"The option <%s> cannot be registered: a name is made of letters, digits and hyphens!"},
    {Fault::HasSeveralTypes,                         L"The option <%s> cannot be registered: it has several types!"},
    {Fault::HasNoType,                               L"The option <%s> cannot be registered: it has no type!"},
    {Fault::ValueMayBeLeftOutButIsNoText,            L"The option <%s> cannot be registered: only the value of a text may be left out!"},
    {Fault::TabulatorsAreNotFromMinus1To16,          L"The option <%s> cannot be registered: its tabulators are from -1 to 16!"},
    {Fault::TextDoesNotFitItsColumn,                 L"The option <%s> cannot be registered: a text fills its column without an end!"},
    {Fault::IdHasNoNumber,                           L"The option <%s> cannot be registered: its id has no number!"},
    {Fault::IdIsInUse,                               L"The option <%s> cannot be registered: its id is in use!"},
    {Fault::NameIsInUse,                             L"The option <%s> cannot be registered: its name is in use!"},
    {Fault::ShortNameIsInUse,                        L"The option <%s> cannot be registered: its short name <%s> is in use!"},
    {Fault::ItsValuesWouldHaveTheKeyOf,              L"The option <%s> cannot be registered: the key of <%s> would be one of its values!"},
    {Fault::ItsKeyWouldBeAValueOf,                   L"The option <%s> cannot be registered: its key would be a value of <%s>!"},
    {Fault::SectionDoesNotExist,                     L"The option <%s> cannot be registered: its section does not exist!"},
    {Fault::SectionHasAnIndexValueHasNone,           L"The option <%s> cannot be registered: its section has an index, its value has none!"},
    {Fault::SectionNameIsEmpty,                      L"The section <%s> cannot be registered: its name is empty!"},
    {Fault::SectionNameDoesNotFitItsColumn,          L"The section <%s> cannot be registered: its name fills its column without an end!"},
    {Fault::SectionValueStandsForNone,               L"The section <%s> cannot be registered: its value stands for none!"},
    {Fault::SectionHasPercentOutsideOneIndex,        L"The section <%s> cannot be registered: a '%%' stands in one \"%%d\" only!"},
    {Fault::SectionIsBelowItself,                    L"The section <%s> stands below itself!"},
    {Fault::SectionValueOrNameIsInUse,               L"The section <%s> cannot be registered: its value or its name is in use!"},
    {Fault::SectionSharesItsIndexWith,               L"The section <%s> cannot be registered: its index and that of <%s> are one!"},
    {Fault::SectionIsNamedByAnUnknownOption,         L"The section <%s> cannot be registered: the option that names it is not known!"},
    {Fault::SectionIsNamedByAnOptionWithoutOneText,  L"The section <%s> cannot be registered: only an option with one text can name it!"},
    {Fault::SectionAboveDoesNotExist,                L"The section <%s> cannot be registered: the one above does not exist!"},
    {Fault::SectionIsBelowOneWithAnIndex,            L"The section <%s> cannot be registered: it stands below one with an index!"},
};
// clang-format on

constexpr bool FitsNames(const FaultText& text) {
    return XFormat<std::wstring_view>::Fits(text.format) ||
           XFormat<std::wstring_view, std::wstring_view>::Fits(text.format);
}
constexpr bool EachFaultHasAText() {
    for (int fault = 1; fault < FAULT_COUNT; ++fault) {
        if (std::ranges::count(FAULT_TEXTS, Fault{fault}, &FaultText::fault) != 1) return false;
    }
    return true;
}
static_assert(std::ranges::all_of(FAULT_TEXTS, FitsNames) && EachFaultHasAText());

std::wstring TextOf(const Refusal& refusal) {
    const FaultText& text = *std::ranges::find(FAULT_TEXTS, refusal.fault, &FaultText::fault);
    const XFormatArgument names[] = {XFormatArgument(refusal.name), XFormatArgument(refusal.other)};
    return FormatArguments(text.format, names);
}

void Check(const OwnTable& table) {
    constexpr XSite site = XSource{L".\\xowntable"}(L"OwnOptions::OwnOptions");
    if (OptionRegistry::HasStores()) throw MakeError(site, L"Options can be registered only before a store is made!");
    const LibraryRows known = OptionRegistry::Library();
    const LibraryRows& library = table.library.HasAll() ? known : table.library;
    if (!known.HasAll() && library != known) {
        throw MakeError(site, L"Another table has chosen other options of the library!");
    }
    std::vector<TableRows> tables = OptionRegistry::Tables();
    tables.front().present = library.View();
    tables.push_back({table.options, table.sections});
    // Rows that are there may need what a choice leaves out.
    const std::size_t first = library == known ? tables.size() : 2;
    for (std::size_t count = first; count <= tables.size(); ++count) {
        if (const Refusal refusal = CheckOwnTables(Tables{tables}.first(count))) {
            throw MakeError(site, L"%s", TextOf(refusal));
        }
    }
}

}  // namespace

OwnOptions::OwnOptions(const OwnTable& table) {
    Check(table);
    OptionRegistry::Add(this, table);
}

OwnOptions::~OwnOptions() {
    OptionRegistry::Remove(this);
}

}  // namespace veltrane
