// Names, tables and bodies that do not compile: each marked line is refused, and the compiler shows what its mark says.
#include "veltrane/tool/tool.h"

using namespace veltrane;

constexpr XOptionDefinition ROWS[] = {OptionRow(OwnOption(1, eString | eSingle), eSectionRoot, L"", L"unit", -1)};
constexpr OwnTable OWN{ROWS};
constexpr XOptionDefinition ROLES[] = {OptionRow(OwnOption(1, eString), eSectionRoot, L"", L"role", -1)};
constexpr OwnTable LEAN{.options = ROLES, .library = BASE_ROWS.With<"spool">()};
static_assert(FitsLibrary<LEAN>());
constexpr XOptionDefinition TAKEN[] = {ROWS[0], OptionRow(OwnOption(2, eString), eSectionRoot, L"", L"logging", -1)};
constexpr XConfigSection BELOW[] = {SectionRow(OwnSection(1), OwnSection(2), L"SUB")};
constexpr OwnTable IN_USE{TAKEN};
constexpr OwnTable NOWHERE{.sections = BELOW};
constexpr XOptionDefinition LOAD[] = {OptionRow(OwnOption(1, eString | eSingle), eSectionUser, L"", L"load", -1)};
constexpr OwnTable BEGINS{LOAD};
constexpr XOptionDefinition LONG[] = {
    {OwnOption(1, eString), eSectionRoot, {'l', 'o', 'n', 'g'}, L"filled", {}, -1, {}}};
constexpr OwnTable FILLED{LONG};

// clang-format off
constexpr XOptionDefinition WIDE[] = {ROWS[0], OptionRow(OwnOption(2, eString), eSectionRoot, L"wide", L"a", -1)};  // refused: Fault::TextDoesNotFitItsColumn
constexpr OwnTable OF_WIDE{WIDE};

static_assert(FitsLibrary<IN_USE>());   // refused: Fault::NameIsInUse, veltrane::detail::Spelled<'l', 'o', 'g', 'g', 'i', 'n', 'g'>
static_assert(FitsLibrary<NOWHERE>());  // refused: Fault::SectionAboveDoesNotExist, veltrane::detail::Spelled<'S', 'U', 'B'>
static_assert(FitsLibrary<BEGINS>());   // refused: Fault::ItsKeyWouldBeAValueOf, veltrane::detail::Spelled<'l', 'o', 'a', 'd'>, veltrane::detail::Spelled<'l', 'o', 'a', 'd', '-',
static_assert(FitsLibrary<OF_WIDE>());  // refused
static_assert(FitsLibrary<FILLED>());   // refused: Fault::TextDoesNotFitItsColumn, veltrane::detail::Spelled<'f', 'i', 'l', 'l', 'e', 'd'>
void Ask(XOption& store) {
    const TypedOptions<OWN> options{store};
    options.Get<"unit">();
    options.Get<"logfile">();
    options.Get<"unti">();              // refused: DidYouMean<'u', 'n', 'i', 't'>
    options.Get<"map-flie">(1);         // refused: DidYouMean<'m', 'a', 'p', '-', 'f', 'i', 'l', 'e'>
    options.Get<"autodoc-nonpersistent-class-property-fil">();  // refused: 'f', 'i', 'l', 'e'>
    options.Get<"nonsense">();          // refused: NoOptionIsCalled<veltrane::detail::Spelled<'n', 'o', 'n', 's',
    Get<"unit">(store);                 // refused: NoOptionIsCalled<veltrane::detail::Spelled<'u', 'n', 'i', 't'>
    options.Has<"log">();               // refused: NoOptionIsCalled<veltrane::detail::Spelled<'l', 'o', 'g'>
    options.Get<"--unit">();            // refused: DidYouMean<'u', 'n', 'i', 't'>
    options.Get<"">();                  // refused: NotAName<veltrane::detail::Spelled<>
    options.Get<"\xC3\xBCnit">();       // refused: , 'n', 'i', 't'>
    Get<"map-file">(store);             // refused: HasSeveralValues<veltrane::detail::Spelled<'m', 'a', 'p', '-', 'f',
    options.Origin<"index-file">();     // refused: HasSeveralValues<veltrane::detail::Spelled<'i', 'n', 'd', 'e', 'x',
    All<"name">(store);                 // refused: HasOneValue<veltrane::detail::Spelled<'n', 'a', 'm', 'e'>
    options.Get<"role">(1);             // refused: HasOneValue<veltrane::detail::Spelled<'r', 'o', 'l', 'e'>
    options.GetText<"quiet">();         // refused: HasNoText<veltrane::detail::Spelled<'q', 'u', 'i', 'e', 't'>
    Get<"role", LEAN>(store, 1);
    Get<"spool", LEAN>(store);
    Get<"registry", LEAN>(store);       // refused: IsLeftOut<veltrane::detail::Spelled<'r', 'e', 'g', 'i', 's', 't', 'r', 'y'>
    Get<"spoil", LEAN>(store);          // refused: DidYouMean<'s', 'p', 'o', 'o', 'l'>
    BASE_ROWS.With<"unit">();           // refused: NotOfTheLibrary<veltrane::detail::Spelled<'u', 'n', 'i', 't'>
    BASE_ROWS.With<"spol">();           // refused: DidYouMean<'s', 'p', 'o', 'o', 'l'>
    RunTool({}, [](auto&) {});          // refused: the body takes the tool
    BASE_ROWS.Without<"data">();        // refused: StartUpNeeds<veltrane::detail::Spelled<'d', 'a', 't', 'a'>
}
// clang-format on
