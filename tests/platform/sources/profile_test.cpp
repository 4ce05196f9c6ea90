#include "veltrane/platform/sources/profile.h"

#include "support/support.h"
#include "veltrane/platform/sources/internal/snapshot.h"

class Profile : public testing::Test {
protected:
    void Write(const std::string& bytes) { m_File = m_Folder.Write("tool.ini", bytes); }

    /// The elements that the result counts, including each NUL of a list.
    std::wstring Ask(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText = L"") {
        std::wstring answer(2048, L'#');
        const auto size = static_cast<unsigned>(answer.size());
        answer.resize(GetPrivateProfileStringW(section, key, defaultText, answer.data(), size, m_File.GetString()) + 1);
        EXPECT_EQ(answer.back(), L'\0');
        answer.pop_back();
        return answer;
    }
    /// The same from a file of its own.
    std::wstring AskIn(const std::string& bytes, const wchar_t* section, const wchar_t* key) {
        Write(bytes);
        return Ask(section, key, L"missing");
    }

    TempFolder m_Folder;
    CString m_File = m_Folder.Wide("tool.ini");
};

TEST_F(Profile, CutsToTheCapacity) {
    struct {
        const char* what;
        const wchar_t *section, *key;
        unsigned capacity, count;
        std::wstring buffer;  // '#' is an element that was not written
    } const cases[] = {
        {"value fits", L"main", L"path", 5, 4, L"C:\\x\0#"s},
        {"value cut", L"main", L"path", 3, 2, L"C:\0###"s},
        {"value, room for the NUL", L"main", L"path", 1, 0, L"\0#####"s},
        {"no room", L"main", nullptr, 0, 0, L"######"},
        {"default cut", L"main", L"absent", 3, 2, L"de\0###"s},
        {"list cut", nullptr, nullptr, 8, 6, L"Main\0m\0\0#"s},
        {"list cut behind a name", nullptr, nullptr, 6, 4, L"Main\0\0#"s},
        {"list cut in front of a NUL", L"db", nullptr, 5, 3, L"nam\0\0#"s},
        {"list fits to the last", L"db", nullptr, 6, 5, L"name\0\0#"s},
        {"list, room for two", L"main", nullptr, 2, 0, L"\0\0####"s},
        {"empty list", L"absent", nullptr, 9, 0, L"\0\0####"s},
        {"empty list, room for one", L"absent", nullptr, 1, 0, L"\0#####"s},
    };
    Write("[Main]\ntitle=Two\npath=C:\\x\n[main]\n[db]\nname=\n");
    for (const auto& [what, section, key, capacity, count, expected] : cases) {
        std::wstring buffer(expected.size(), L'#');
        EXPECT_EQ(GetPrivateProfileStringW(section, key, L"default", buffer.data(), capacity, m_File.GetString()),
                  count);
        EXPECT_EQ(buffer, expected) << what;
    }
    EXPECT_EQ(GetPrivateProfileStringW(L"main", L"path", L"", nullptr, 9, m_File.GetString()), 0U);
}

TEST_F(Profile, GivesTheDefaultOnlyForWhatIsMissing) {
    Write("[A]\nempty=\n");
    EXPECT_EQ(Ask(L"A", L"absent", L"  two  "), L"  two");
    EXPECT_EQ(Ask(L"A", L"absent", nullptr), L"");
    EXPECT_EQ(Ask(L"A", L"", L"default"), L"default");
    EXPECT_EQ(Ask(L"B", L"empty", L"default"), L"default");
    EXPECT_EQ(Ask(L"A", L"empty", L"default"), L"");
    EXPECT_EQ(Ask(L"B", nullptr, L"default"), L"");
    EXPECT_EQ(Ask(nullptr, L"k", L"default"), L"A\0"s);
    for (const CString& name : {m_Folder.Wide("absent.ini"), m_Folder.Wide(), CString{}, CString{L"/dev/zero"}}) {
        m_File = name;
        EXPECT_EQ(Ask(L"A", L"k", L"default"), L"default") << ToUtf8(name);
    }
    wchar_t buffer[8];
    EXPECT_EQ(GetPrivateProfileStringW(L"A", L"k", L"no", buffer, 8, nullptr), 2U);
}

TEST_F(Profile, ReadsAFileThatClaimsToBeEmpty) {
    m_File = L"/proc/self/comm";  // the name of this process
    std::ofstream{"/proc/self/comm"} << "[A]\nk=1";
    EXPECT_EQ(Ask(L"A", L"k", L"missing"), L"1");
    std::ofstream{"/proc/self/comm"} << "veltrane_tests";
}

TEST_F(Profile, KeepsNoAnswerOfAFileThatCannotBeOpenedAtTheMoment) {
    Write("[A]\nk=0");
    {
        const SourceSnapshot snapshot;  // a sanitizer needs a descriptor for each type that it meets for the first time
        EXPECT_EQ(Ask(L"A", L"k", L"missing"), L"0");
    }
    Write("[A]\nk=1");
    const SourceSnapshot snapshot;
    WithoutMoreFiles([&] { EXPECT_EQ(Ask(L"A", L"k", L"missing"), L"missing"); });
    EXPECT_EQ(Ask(L"A", L"k", L"missing"), L"1");
    Write("[A]\nk=2");
    EXPECT_EQ(Ask(L"A", L"k", L"missing"), L"1") << "what was read is kept";
    CString seen;
    const auto before = SetMessageBoxHandler([&](auto&&...) { return seen = Ask(L"A", L"k", L"missing"), 1; });
    AfxMessageBox(L"while a snapshot stands", 0);
    SetMessageBoxHandler(before);
    EXPECT_EQ(seen, L"2") << "a handler sees the file as it is";
}

TEST_F(Profile, DoesNotReadFromAPipe) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ASSERT_EQ(write(ends[1], "[A]\nk=1", 7), 7);
    m_File = FormatText(L"/proc/self/fd/%d", ends[0]);
    EXPECT_EQ(Ask(L"A", L"k", L"default"), L"default");
    close(ends[1]);
    char left[16];
    EXPECT_EQ(read(ends[0], left, sizeof left), 7);
    close(ends[0]);
}

TEST_F(Profile, FindsAKeyWhereverItIs) {
    // Texts around the length of a small file, and places before, on and after the bounds of a search's steps.
    for (const std::string& front :
         {"\n"s, std::string(16384 - 128, 'x') + "\nxlast = last\n", std::string(150, 'x') + '\n'}) {
        for (std::size_t blanks = 0; blanks < 134; ++blanks) {
            SCOPED_TRACE(blanks);
            const std::string text = "[A]\n" + front + std::string(blanks, ' ') + " last=";
            EXPECT_EQ(AskIn(text + "1", L"A", L"LAST"), L"1");
            EXPECT_EQ(AskIn(text + "2\n" + std::string(128, 'x'), L"A", L"LAST"), L"2");
            EXPECT_EQ(AskIn(text, L"A", L"LAST"), L"");
            EXPECT_EQ(Ask(L"A", L"t", L"missing"), L"missing");
        }
    }
}

TEST_F(Profile, ReadsEachLineByItsFirstCharacters) {
    const std::tuple<const char*, std::string, std::wstring, std::wstring> cases[] = {
        {"only the first '=' divides, no comment behind", "k=a=b ; x", L"k\0"s, L"a=b ; x"},
        {"blanks around everything", "\t k\v = \f a  b \x1A", L"k\0"s, L"a  b"},
        {"a comment stays one when a key is asked for", " ;k=1\nk=2", L"k\0"s, L"2"},
        {"no continuation", "k=a\\\nb=c", L"k\0b\0"s, L"a\\"},
        {"an entry without '=' does not count", "k\nk = 1", L"k\0"s, L"1"},
        {"nor one without a key", "=1\n =2", L"", L"missing"},
        {"the first of two keys answers", "K=\nk=2", L"K\0k\0"s, L""},
        {"a key that begins alike", "kk=1\nk  x=2\nk=3", L"kk\0k  x\0k\0"s, L"3"},
        {"keys hold all but blanks", "#k=1\n//k=2\nrem k=3\na%d\\'\"]:,[=4\n\"k\"=5\n\xC2\xA0k=6\n\xEF\xBB\xBFk=7",
         L"#k\0//k\0rem k\0a%d\\'\"]:,[\0\"k\"\0\xA0k\0\xFEFFk\0"s, L"missing"},
        {"a NUL ends key and value", "k \0x=v \0w"s, L"k\0"s, L"v"},
        {"a NUL alone does not divide", "k\0v"s, L"", L"missing"},
        {"a NUL in front leaves no key", "\0k=1"s, L"", L"missing"},
        {"quotes behind a NUL are gone before the pair is looked for", "k='v'\0'"s, L"k\0"s, L"v"},
        {"0x1A does not end the file", "a=1\n\x1A\nk=2", L"a\0k\0"s, L"2"},
    };
    for (const auto& [what, lines, keys, value] : cases) {
        EXPECT_EQ(AskIn("[A]\n" + lines, L"A", nullptr), keys) << what;
        EXPECT_EQ(Ask(L"A", L"k", L"missing"), value) << what;
    }
}

TEST_F(Profile, EndsLinesAtCrAndLfOnly) {
    for (const char* end : {"\n", "\r", "\r\n", "\n\r", "\r\r\n", "\n\n \n"}) {
        const std::string bytes = std::string{"[A]"} + end + "x=1" + end + "k=2" + end + "[B]" + end + "k=3";
        EXPECT_EQ(AskIn(bytes, L"A", L"k"), L"2");
        EXPECT_EQ(Ask(L"A", nullptr), L"x\0k\0"s);
        EXPECT_EQ(Ask(L"B", L"k"), L"3");
    }
    EXPECT_EQ(AskIn("[A]\nk=1\v2\xC2\x85\xE2\x80\xA8z", L"A", L"k"), L"1\v2\x85\x2028z");
}

TEST_F(Profile, FindsSectionsByTheirHeaders) {
    const std::tuple<const char*, std::string, std::wstring, const wchar_t*, std::wstring> cases[] = {
        {"nothing in front of the sections counts", "k=1\n[A]", L"A\0"s, L"", L"missing"},
        {"text behind the bracket is ignored", "[A][B]k=1\nk=2", L"A\0"s, L"A", L"2"},
        {"other signs in front are part of the name", "[[;F]]\nk=1", L"[;F\0"s, L"[;f", L"1"},
        {"no bracket at the end", " \t[A b \r\nk=1", L"A b\0"s, L"a B", L"1"},
        {"blanks inside the brackets", "[\t A ]\nk=1", L"A\0"s, L"A", L"1"},
        {"a bracket inside a line opens nothing", "[A]\nx [B]\n;[B]\ny=[B]\n[B]\nk=1", L"A\0B\0"s, L"B", L"1"},
        {"the first of two sections answers", "[A]\n[a]\nk=1", L"A\0a\0"s, L"A", L"missing"},
        {"a name that begins alike", "[AB]\nk=1\n[A]\nk=2", L"AB\0A\0"s, L"A", L"2"},
        {"the empty name is not listed", "[]\nk=1\n[A]\nk=2", L"A\0"s, L"", L"1"},
        {"a NUL ends the name", "[A\0B]\nk=1"s, L"A\0"s, L"A", L"1"},
        {"a tabulator asked for is not ignored", "[A]\nk=1", L"A\0"s, L"A\t", L"missing"},
        {"nor a line end", "[A\nk=1", L"A\0"s, L"A\n", L"missing"},
        {"nor a name over two lines", "[A\nk=1", L"A\0"s, L"A\nk=1", L"missing"},
        {"nor a bracket", "[A]\nk=1", L"A\0"s, L"A]", L"missing"},
    };
    for (const auto& [what, bytes, sections, section, value] : cases) {
        EXPECT_EQ(AskIn(bytes, nullptr, nullptr), sections) << what;
        EXPECT_EQ(Ask(section, L"k", L"missing"), value) << what;
    }
}

TEST_F(Profile, KeysThatNoLineCanHoldAreNotFound) {
    Write("[A]\nk=1\n;c=1\n[B]\n");
    for (const wchar_t* key : {L"k\t", L"\tk", L"k=", L"k=1", L"k\n", L";c", L"[B", L"\x1A", L"="}) {
        EXPECT_EQ(Ask(L"A", key, L"missing"), L"missing") << ToUtf8(key);
    }
    Write("[A]\n\xE4=1\n");
    const wchar_t noCharacter[] = {static_cast<wchar_t>(0xFFFFFFE4), L'\0'};  // ends in the byte of the key
    EXPECT_EQ(Ask(L"A", noCharacter, L"missing"), L"missing");
}

TEST_F(Profile, RemovesOnePairOfQuotes) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"\"v\"", L"v"},     {"' v '", L" v "}, {"\"\"v\"\"", L"\"v\""},     {"\"a\" \"b\"", L"a\" \"b"},
        {"\"\"", L""},       {"\"", L"\""},     {"\"v\" ; x", L"\"v\" ; x"}, {"\"v'", L"\"v'"},
        {"\"'v'\"", L"'v'"},
    };
    for (const auto& [value, answer] : cases) {
        EXPECT_EQ(AskIn(std::string{"[A]\nk="} + value, L"A", L"k"), answer) << value;
    }
}

TEST_F(Profile, ComparesNamesFoldedAndReadsTheEncodingsOfOtherSystems) {
    const std::tuple<const char*, std::string, const wchar_t*, const wchar_t*, std::wstring> cases[] = {
        {"blanks at the ends", "[A]\nk=1", L"  A ", L" k  ", L"1"},
        {"letters outside ASCII", "[\xC3\x84]\n\xC3\x96=1", L"\xE4", L"\xF6", L"1"},
        {"an ASCII question, a Kelvin sign in the file", "[A]\n\xE2\x84\xAA=1", L"a", L"k", L"1"},
        {"a Kelvin sign asked for", "[A]\nK=1", L"a", L"\x212A", L"1"},
        {"a capital I with dot in the file", "[\xC4\xB0]\nk=1", L"i", L"K", L"1"},
        {"Windows-1252 names", "[\xC4]\n\xD6 =1", L"\xE4", L"\xF6", L"1"},
        {"above the 16 bits", "[A]\n\xF0\x9F\x98\x80=1", L"a", L"\x1F600", L"1"},
        {"sharp s and its capital", "[A]\n\xC3\x9F=1", L"A", L"\x1E9E", L"1"},
        {"UTF-8 with a mark", "\xEF\xBB\xBF[A]\nk=\xC3\xBC\xE2\x82\xAC", L"A", L"k", L"\xFC\x20AC"},
        {"Windows-1252 and UTF-8", "[A]\nk=\xFC\xC3\xBC\x80\x81\xC3", L"A", L"k", L"\xFC\xFC\x20AC\x81\xC3"},
        {"no overlong form, no surrogate", "[A]\nk=\xC0\x80\xED\xA0\x80", L"A", L"k", L"\xC0\x20AC\xED\xA0\x20AC"},
        {"UTF-16, little endian, an odd last byte", "\xFF\xFE[\0A\0]\0\r\0\n\0k\0=\0\xFC\0\x3D\xD8\0\xDE\x3D\xD8!\0w"s,
         L"A", L"k", L"\xFC\x1F600\xD83D!"},
        {"UTF-16, big endian", "\xFE\xFF\0[\0A\0]\0\n\0k\0=\0\xFC\xD8\x3D\xDE\0\xDE\0"s, L"A", L"k",
         L"\xFC\x1F600\xDE00"},
    };
    for (const auto& [what, bytes, section, key, value] : cases) EXPECT_EQ(AskIn(bytes, section, key), value) << what;
}
