// Tables of a tool that do not compile: each marked line is refused, the others are not.
#include "veltrane/options/xowntable.h"

using namespace veltrane;

constexpr enumOption TEXT = OwnOption(1, eString | eSingle);
constexpr enumOption TEXTS = OwnOption(2, eString);

consteval XOptionDefinition Option(std::wstring_view name, enumOption id = TEXT,
                                   enumCfgSection section = eSectionRoot) {
    return OptionRow(id, section, L"", name, -1);  // within
}
consteval XConfigSection Section(std::wstring_view name, enumCfgSection parent = eSectionUnnamed, int number = 1) {
    return SectionRow(OwnSection(number), parent, name);  // within
}

template <std::size_t Options, std::size_t Sections = 1>
struct Table {
    XOptionDefinition options[Options];
    XConfigSection sections[Sections] = {Section(L"OWN")};
    consteval bool Fits() const { return FitsLibrary({options, sections}); }  // within
};
template <class Row, std::size_t Width>
consteval Row Filled(Row row, wchar_t (Row::*column)[Width]) {
    for (wchar_t& element : row.*column) element = L'x';
    return row;
}
constexpr auto OWN = OwnSection(1);
constexpr auto SECOND = OwnSection(2);

// clang-format off
constexpr auto r1 = Option(L"");                                                       // refused
constexpr auto r2 = Option(L"a b");                                                    // refused
constexpr auto r3 = Option(L"a=b");                                                    // refused
constexpr auto r4 = Option(L"-a");                                                     // refused
constexpr auto r5 = OptionRow(TEXT, eSectionRoot, L"-", L"a", 2);                      // refused
constexpr auto r6 = Option(L"a", OwnOption(1, eSingle));                               // refused
constexpr auto r7 = Option(L"a", OwnOption(1, eString | eBoolean | eSingle));          // refused
constexpr auto r8 = Option(L"a", OwnOption(1, eBoolean | eSingle | eValueOptional));   // refused
constexpr auto r9 = Option(L"a", OwnOption(1, eIList | eValueOptional));               // refused
constexpr auto r10 = OptionRow(TEXT, eSectionRoot, L"", L"a", -2);                     // refused
constexpr auto r11 = OptionRow(TEXT, eSectionRoot, L"", L"a", 17);                     // refused
constexpr auto r12 = Section(L"");                                                     // refused
constexpr auto r13 = Section(L"A\\%s");                                                // refused
constexpr auto r14 = Section(L"A\\%d\\%d");                                            // refused
constexpr auto r15 = Section(L"A", OWN);                                               // refused
constexpr auto r16 = SectionRow(eSectionNone, OWN, L"A");                              // refused
constexpr Table<1> t16{Option(L"quiet")}; static_assert(t16.Fits());                                           // refused
constexpr Table<1> t17{OptionRow(TEXT, eSectionRoot, L"q", L"a", 2)}; static_assert(t17.Fits());               // refused
constexpr Table<2> t18{Option(L"a"), Option(L"b", OwnOption(1, eBoolean))}; static_assert(t18.Fits());         // refused
constexpr Table<1> t19{Option(L"a", enumOption{0x41})}; static_assert(t19.Fits());                             // refused
constexpr Table<1> t20{Option(L"a", TEXT, OwnSection(9))}; static_assert(t20.Fits());                          // refused
constexpr Table<1> t21{Option(L"exit-code", TEXTS, eSectionUser)}; static_assert(t21.Fits());                  // refused
constexpr Table<1> t22{Option(L"load", TEXT, eSectionUser)}; static_assert(t22.Fits());                        // refused
constexpr Table<1> t23{Option(L"Load-Dictionary--7x", TEXT, eSectionUser)}; static_assert(t23.Fits());          // refused
constexpr Table<1> t24{Option(L"load", TEXT)}; static_assert(t24.Fits());
constexpr Table<1> t25{Option(L"load-dictionary-x", TEXT, eSectionUser)}; static_assert(t25.Fits());
constexpr Table<2> t26{Option(L"a-b", TEXTS, OWN), Option(L"a", TEXT, OWN)}; static_assert(t26.Fits());        // refused
constexpr Table<1> t27{Option(L"a", TEXT, OWN), Section(L"A\\%d")}; static_assert(t27.Fits());                 // refused
constexpr Table<2> t28{{Option(L"a-b", TEXTS, OWN), Option(L"a", OwnOption(3, eIList), OWN)}, {Section(L"A\\%d")}}; static_assert(t28.Fits());
constexpr Table<1> t29{Option(L"a"), Section(L"user")}; static_assert(t29.Fits());                             // refused
constexpr Table<1> t30{Option(L"a"), Section(L"SUB", eSectionFiles)}; static_assert(t30.Fits());               // refused
constexpr Table<1> t31{Option(L"a"), Section(L"Files\\3\\SUB", eSectionDatabase)}; static_assert(t31.Fits());  // refused
constexpr Table<1> t32{Option(L"a"), Section(L"FILES\\SUB", eSectionDatabase)}; static_assert(t32.Fits());
constexpr Table<1> t33{Option(L"a"), Section(L"A", OwnSection(9))}; static_assert(t33.Fits());                 // refused
constexpr Table<1, 2> t34{{Option(L"a")}, {Section(L"A", SECOND), Section(L"B", OWN, 2)}}; static_assert(t34.Fits()); // refused
constexpr Table<1> t35{Option(L"a"), Section(L"--nosuch")}; static_assert(t35.Fits());                         // refused
constexpr Table<1> t36{Option(L"a"), Section(L"--quiet")}; static_assert(t36.Fits());                          // refused
constexpr Table<1> t37{Option(L"a"), Section(L"--load-dictionary")}; static_assert(t37.Fits());                // refused
constexpr Table<1> t38{Option(L"a"), Section(L"--spool")}; static_assert(t38.Fits());                          // refused
constexpr Table<1> t39{Option(L"a", TEXT, OWN), Section(L"--a")}; static_assert(t39.Fits());                   // refused
constexpr Table<1> t40{Option(L"a"), Section(L"--a", eSectionDatabase)}; static_assert(t40.Fits());
constexpr Table<1> t41{Option(L"a"), Section(L"user", eSectionNone)}; static_assert(t41.Fits());               // refused
constexpr Table<1> t42{Option(L"a"), Section(L"FILES\\3")}; static_assert(t42.Fits());
constexpr Table<1> t43{Filled(Option(L"a"), &XOptionDefinition::szSyntax)}; static_assert(t43.Fits());         // refused
constexpr Table<1> t44{Option(L"a"), Filled(Section(L"A"), &XConfigSection::szName)}; static_assert(t44.Fits()); // refused
// clang-format on

void Register() {
    OwnOptions{{}};  // refused
}
