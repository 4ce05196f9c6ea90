#include "veltrane/options/typed.h"

#include "options/store.h"

namespace {

// clang-format off
constexpr XOptionDefinition OPTIONS[] = {
    OptionRow(OwnOption(1, eString | eSingle), eSectionRoot, L"", L"unit", -1),
    OptionRow(OwnOption(2, eString | eSingle | eValueOptional), eSectionRoot, L"", L"trace", -1),
    OptionRow(OwnOption(3, eBoolean | eSingle), eSectionRoot, L"", L"dry-run", -1),
    OptionRow(OwnOption(4, eTrillian | eSingle), eSectionRoot, L"", L"round", -1),
    OptionRow(OwnOption(5, eIList), eSectionUser, L"", L"steps", -1),
    OptionRow(OwnOption(6, eString), eSectionUser, L"", L"source", -1),
    OptionRow(OwnOption(7, eString | eValueOptional), eSectionUser, L"", L"tag", -1),
};
// clang-format on
constexpr XOptionDefinition OTHERS[] = {OptionRow(OwnOption(9, eBoolean), eSectionUser, L"", L"first", -1)};
constexpr XOptionDefinition NAMESAKES[] = {OptionRow(OPTIONS[0].eOption, eSectionRoot, L"", L"size", -1)};
constexpr OwnTable TABLE{OPTIONS};
constexpr OwnTable OTHER{OTHERS};
constexpr OwnTable NAMESAKE{NAMESAKES};
using Options = TypedOptions<TABLE>;

std::string Show(bool value) {
    return value ? "true" : "false";
}
std::string Show(const std::string& value) {
    return '\'' + value + '\'';
}
std::string Show(const std::vector<int>& values) {
    std::string shown;
    for (const int value : values) shown += std::to_string(value) + ' ';
    return shown;
}
template <class T>
std::string Show(const std::optional<T>& value) {
    return value ? "given " + Show(*value) : "none";
}

template <OptionName Name, int... Index>
std::string Ask(const Options& options) {
    return Show(options.Get<Name>(Index...)) + (options.Has<Name>() ? "!" : "?");
}

class TypedOption : public OptionStoreTest {
protected:
    TypedOption() { m_Store.reset(); }  // a table is registered before the store is created
};

TEST_F(TypedOption, HaveTheTypeOfTheirRow) {
    const struct {
        const wchar_t* option;
        const wchar_t* value;
        std::string (*ask)(const Options&);
        const char* missing;
        const char* given;
    } cases[] = {
        {L"unit", L"\u00B5m", Ask<"unit">, "''?", "'\xC2\xB5m'!"},
        {L"logfile", L"a.log", Ask<"logfile">, "''?", "'a.log'!"},
        {L"trace", L"", Ask<"trace">, "none?", "given ''!"},
        {L"trace", L"x", Ask<"trace">, "none?", "given 'x'!"},
        {L"dry-run", L"TRUE", Ask<"dry-run">, "false?", "true!"},
        {L"dry-run", L"yes", Ask<"dry-run">, "false?", "false!"},
        {L"round", L"false", Ask<"round">, "none?", "given false!"},
        {L"round", L"true", Ask<"round">, "none?", "given true!"},
        {L"round", L"auto", Ask<"round">, "none?", "none!"},
        {L"steps", L"5,1", Ask<"steps", 2>, "?", "5 1 !"},
        {L"source", L"b", Ask<"source", 2>, "''?", "'b'!"},
        {L"tag", L"", Ask<"tag", 2>, "none?", "given ''!"},
        {L"diff-dictionary", L"d", Ask<"diff-dictionary", 2>, "''?", "'d'!"},
    };
    for (const bool isMoved : {false, true}) {  // a table may be at another place
        const auto other = isMoved ? std::make_unique<OwnOptions>(OTHER) : nullptr;
        const OwnOptions registered{TABLE};
        for (const auto& [option, value, ask, missing, given] : cases) {
            SCOPED_TRACE(ToUtf8(option));
            Renew();
            EXPECT_EQ(ask(Options{*m_Store}), missing);
            m_Store->InsertOptionItem(option, value, FindOptionDefinition(option)->IsSingle() ? -1 : 2);
            EXPECT_EQ(ask(Options{*m_Store}), given);
        }
        m_Store.reset();
    }
}

TEST_F(TypedOption, GiveAllValuesInOrderAndLeaveTheMarks) {
    const OwnOptions registered{TABLE};
    Renew();
    const Options options{*m_Store};
    for (const int index : {7, 0, 3}) m_Store->InsertOptionItem(L"source", FormatText(L"%d.txt", index), index);
    m_Store->GetFirstOptionItem(L"source");
    EXPECT_EQ(m_Store->GetNextOptionItem(L"source")->GetOptionIndex(), 0);
    std::string shown;
    for (const auto& [index, file] : options.All<"source">()) {
        if (index == 0) m_Store->InsertOptionItem(L"source", L"late", 9);
        int count = 0;
        for ([[maybe_unused]] const auto& inner : options.All<"source">()) ++count;
        shown += std::to_string(index) + '=' + file + '/' + std::to_string(count) + ' ';
    }
    EXPECT_EQ(shown, "7=7.txt/3 0=0.txt/4 3=3.txt/4 9=late/4 ");
    EXPECT_EQ(m_Store->GetNextOptionItem(L"source")->GetOptionIndex(), 3);
    EXPECT_EQ(options.Get<"source">(1), "") << "a gap";
    EXPECT_EQ(&options.GetText<"source">(3), &m_Store->GetOptionString(L"source", 3));
    EXPECT_EQ(options.All<"steps">().begin(), options.All<"steps">().end());
}

TEST_F(TypedOption, GiveTextsAndOriginsAsTheStoreDoes) {
    const OwnOptions registered{TABLE};
    Complete("[ROOT]\nunit=cm\n");
    m_bKeepsOrigins = true;
    Start({L"db", L"--source", L"a"});
    const Options options{*m_Store};
    EXPECT_EQ(options.Origin<"unit">().line, 6);
    EXPECT_EQ(Origin<"name">(*m_Store).layer, OptionLayer::CommandLine);
    EXPECT_EQ(options.Origin<"source">(0).word, 2);
    for (const wchar_t* value : {L"", L"x"}) {
        EXPECT_EQ(options.GetText<"trace">(), Text(L"trace"));
        m_Store->InsertOptionItem(L"trace", value, -1);
        EXPECT_EQ(options.GetText<"trace">(), Text(L"trace"));
    }
    EXPECT_EQ(options.GetText<"logfile">(), L"");
}

TEST_F(TypedOption, ThrowWhatTheGettersThrow) {
    const OwnOptions registered{TABLE};
    Renew();
    XOption& store = *m_Store;
    const Options options{store};
    const auto expectSame = [](auto typed, auto getter) {
        EXPECT_EQ(ErrorOf(typed).GetMessage(), ErrorOf(getter).GetMessage());
    };
    expectSame([&] { options.Get<"name">(); }, [&] { store.GetOptionString(L"name", -1); });
    expectSame([&] { options.GetText<"source">(-1); }, [&] { store.GetOptionString(L"source", -1); });
    expectSame([&] { options.Get<"steps">(-1); }, [&] { store.GetOptionIList(L"steps", -1); });
    expectSame([&] { options.Get<"diff-dictionary">(-2); }, [&] { store.GetOptionItem(L"diff-dictionary", -2); });
    expectSame([&] { Get<"size", NAMESAKE>(store); }, [&] { store.GetOptionString(L"size", -1); });
    expectSame([&] { Has<"size", NAMESAKE>(store); }, [&] { store.GetOptionDefinition(L"size"); });
    expectSame([&] { All<"first", OTHER>(store); }, [&] { store.GetOptionDefinition(L"first"); });
}

}  // namespace
