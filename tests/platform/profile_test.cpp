#include "platform/profile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/trace.h"
#include "support/environment.h"
#include "support/support.h"

using namespace std::string_literals;

namespace {

constexpr unsigned CAPACITY = 2048;

class Profile : public testing::Test {
protected:
    void Write(const std::string& bytes) { m_File = m_Folder.Write("tool.ini", bytes); }

    /// The elements that the result counts, each NUL of a list included.
    std::wstring Ask(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText = L"") {
        std::vector<wchar_t> buffer(CAPACITY, L'#');
        const unsigned count =
            GetPrivateProfileStringW(section, key, defaultText, buffer.data(), CAPACITY, m_File.GetString());
        EXPECT_EQ(buffer.at(count), L'\0');
        return {buffer.data(), count};
    }
    /// The same from a file of its own.
    std::wstring AskIn(const std::string& bytes, const wchar_t* section, const wchar_t* key) {
        Write(bytes);
        return Ask(section, key, L"missing");
    }

    TempFolder m_Folder;
    CString m_File = m_Folder.Wide("tool.ini");
};

constexpr char EXAMPLE[] =
    "lost=1\n"
    "[Main] ; the first\n"
    "  Title =  \"  Two blanks  \"\n"
    "note = it's ; all value\n"
    ";off=1\n"
    "path='C:\\x'\n"
    "bare\n"
    "TITLE=again\n"
    "[main]\n"
    "extra=1\n"
    "[db\\Files\\1\n"
    "name=\n";

TEST_F(Profile, AnswersWhatItsFileHolds) {
    struct {
        const wchar_t* section;
        const wchar_t* key;
        std::wstring answer;
    } const cases[] = {
        {nullptr, nullptr, L"Main\0main\0db\\Files\\1\0"s},
        {nullptr, L"title", L"Main\0main\0db\\Files\\1\0"s},
        {L"MAIN", nullptr, L"Title\0note\0path\0TITLE\0"s},
        {L"main ", L"title", L"  Two blanks  "},
        {L"main", L"  Title ", L"  Two blanks  "},
        {L"main", L"note", L"it's ; all value"},
        {L"main", L"path", L"C:\\x"},
        {L"main", L"extra", L""},
        {L"main", L"bare", L""},
        {L"main", L";off", L""},
        {L"main", L"lost", L""},
        {L"", L"lost", L""},
        {L"DB\\FILES\\1", nullptr, L"name\0"s},
        {L"DB\\FILES\\1", L"name", L""},
        {L"[main]", L"path", L""},
        {L"absent", nullptr, L""},
    };
    Write(EXAMPLE);
    for (const auto& [section, key, answer] : cases) {
        SCOPED_TRACE(ToUtf8(CString{section} + L" / " + key));
        EXPECT_EQ(Ask(section, key), answer);
    }
}

TEST_F(Profile, CutsToTheCapacity) {
    struct {
        const char* what;
        const wchar_t* section;
        const wchar_t* key;
        unsigned capacity;
        unsigned count;
        std::wstring buffer;  // '#' is what nobody has written
    } const cases[] = {
        {"value fits", L"main", L"path", 5, 4, L"C:\\x\0#"s},
        {"value cut", L"main", L"path", 3, 2, L"C:\0###"s},
        {"value, room for the NUL", L"main", L"path", 1, 0, L"\0#####"s},
        {"value, no room", L"main", L"path", 0, 0, L"######"},
        {"a cut value keeps its blanks", L"main", L"title", 2, 1, L" \0####"s},
        {"default cut", L"main", L"absent", 3, 2, L"de\0###"s},
        {"list cut", nullptr, nullptr, 8, 6, L"Main\0m\0\0#"s},
        {"list cut behind a name", nullptr, nullptr, 6, 4, L"Main\0\0#"s},
        {"list cut in front of a NUL", L"db\\files\\1", nullptr, 5, 3, L"nam\0\0#"s},
        {"list fits to the last", L"db\\files\\1", nullptr, 6, 5, L"name\0\0#"s},
        {"list, room for one", L"main", nullptr, 1, 0, L"\0#####"s},
        {"list, room for two", L"main", nullptr, 2, 0, L"\0\0####"s},
        {"list, no room", L"main", nullptr, 0, 0, L"######"},
        {"empty list", L"absent", nullptr, 9, 0, L"\0\0####"s},
        {"empty list, room for one", L"absent", nullptr, 1, 0, L"\0#####"s},
    };
    Write(EXAMPLE);
    for (const auto& [what, section, key, capacity, count, expected] : cases) {
        SCOPED_TRACE(what);
        std::wstring buffer(expected.size(), L'#');
        EXPECT_EQ(GetPrivateProfileStringW(section, key, L"default", buffer.data(), capacity, m_File.GetString()),
                  count);
        EXPECT_EQ(buffer, expected);
    }
    EXPECT_EQ(GetPrivateProfileStringW(L"main", L"path", L"", nullptr, 9, m_File.GetString()), 0U);
}

TEST_F(Profile, CutsLongAnswersAtTheUsualCapacity) {
    EXPECT_EQ(AskIn("[A]\nk=" + std::string(3000, 'v'), L"A", L"k"), std::wstring(2047, L'v'));
    EXPECT_EQ(AskIn("[A]\nk=\"" + std::string(2047, 'v') + '"', L"A", L"k"), std::wstring(2047, L'v'));
    EXPECT_EQ(AskIn("[A]\n" + std::string(2046, 'k') + "=", L"A", nullptr), std::wstring(2046, L'k') + L'\0');
    EXPECT_EQ(AskIn("[A]\n" + std::string(2047, 'k') + "=", L"A", nullptr), std::wstring(2046, L'k'));
}

TEST_F(Profile, GivesTheDefaultOnlyForWhatIsMissing) {
    Write("[A]\nempty=\n");
    EXPECT_EQ(Ask(L"A", L"absent", L"  two  "), L"  two");
    EXPECT_EQ(Ask(L"A", L"absent", nullptr), L"");
    EXPECT_EQ(Ask(L"A", L"", L"default"), L"default");
    EXPECT_EQ(Ask(L"B", L"empty", L"default"), L"default");
    EXPECT_EQ(Ask(L"A", L"empty", L"default"), L"");
    EXPECT_EQ(Ask(L"B", nullptr, L"default"), L"");
}

TEST_F(Profile, TakesWhatItCanNotReadAsAnEmptyFile) {
    for (const CString& name : {m_Folder.Wide("absent.ini"), m_Folder.Wide(), CString{}, CString{L"/dev/zero"}}) {
        m_File = name;
        SCOPED_TRACE(ToUtf8(name));
        EXPECT_EQ(Ask(L"A", L"k", L"default"), L"default");
        EXPECT_EQ(Ask(nullptr, nullptr), L"");
    }
    wchar_t buffer[8];
    EXPECT_EQ(GetPrivateProfileStringW(L"A", L"k", L"no", buffer, 8, nullptr), 2U);
}

TEST_F(Profile, LeavesAPipeWhatItHolds) {
    const std::string path = (m_Folder.Path() / "pipe").string();
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int pipe = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    const std::string_view bytes = "[A]\nk=1\n";
    ASSERT_EQ(write(pipe, bytes.data(), bytes.size()), std::ssize(bytes));
    m_File = m_Folder.Wide("pipe");
    EXPECT_EQ(Ask(L"A", L"k", L"default"), L"default");
    char left[16];
    EXPECT_EQ(read(pipe, left, sizeof left), std::ssize(bytes));
    close(pipe);
}

TEST_F(Profile, FindsAKeyWhereverItStands) {
    // Texts around the length of a small file, and places in front of, on and behind the bounds of a search's steps.
    for (const std::size_t front : {std::size_t{1}, std::size_t{16384 - 64}}) {
        for (std::size_t blanks = 0; blanks < 70; ++blanks) {
            const std::string text =
                "[A]\n" + std::string(front, 'x') + '\n' + std::string(blanks, ' ') + "xlast = last\n last=";
            EXPECT_EQ(AskIn(text + "1", L"A", L"LAST"), L"1") << front << " + " << blanks;
            EXPECT_EQ(AskIn(text, L"A", L"LAST"), L"") << front << " + " << blanks;
            EXPECT_EQ(Ask(L"A", L"t", L"missing"), L"missing") << front << " + " << blanks;
        }
    }
}

TEST_F(Profile, ReadsEachLineByItsFirstCharacters) {
    struct {
        const char* what;
        std::string lines;
        std::wstring keys;
        std::wstring value;  // of the key "k"
    } const cases[] = {
        {"only the first '=' divides", "k=a=b", L"k\0"s, L"a=b"},
        {"blanks around everything", "\t k\v = \f a  b \x1A", L"k\0"s, L"a  b"},
        {"a comment stays one when a key is asked for", " ;k=1\nk=2", L"k\0"s, L"2"},
        {"no comment behind a value", "k=v ; x", L"k\0"s, L"v ; x"},
        {"no other comments", "#k=1\n//k=2\nrem k=3", L"#k\0//k\0rem k\0"s, L"missing"},
        {"no continuation", "k=a\\\nb=c", L"k\0b\0"s, L"a\\"},
        {"an entry without '=' does not count", "k\nk = 1", L"k\0"s, L"1"},
        {"nor one without a key", "=1\n =2", L"", L"missing"},
        {"the first of two keys answers", "K=\nk=2", L"K\0k\0"s, L""},
        {"inner blanks count", "k  k=1\nk=2", L"k  k\0k\0"s, L"2"},
        {"a key that begins alike", "kk=1\nk x=2\nk=3", L"kk\0k x\0k\0"s, L"3"},
        {"names hold any character", "a%d\\'\"]:,[=1", L"a%d\\'\"]:,[\0"s, L"missing"},
        {"a key in quotes keeps them", "\"k\"=1", L"\"k\"\0"s, L"missing"},
        {"a NUL ends key and value", "k \0x=v \0w"s, L"k\0"s, L"v"},
        {"a NUL alone does not divide", "k\0v"s, L"", L"missing"},
        {"a NUL in front leaves no key", "\0k=1"s, L"", L"missing"},
        {"quotes behind a NUL are gone before the pair is looked for", "k='v'\0'"s, L"k\0"s, L"v"},
        {"0x1A does not end the file", "a=1\n\x1A\nk=2", L"a\0k\0"s, L"2"},
        {"no-break space is no blank", "\xC2\xA0k=1", L"\xA0k\0"s, L"missing"},
        {"a mark inside is a character", "\xEF\xBB\xBFk=1", L"\xFEFFk\0"s, L"missing"},
    };
    for (const auto& [what, lines, keys, value] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(AskIn("[A]\n" + lines, L"A", nullptr), keys);
        EXPECT_EQ(Ask(L"A", L"k", L"missing"), value);
    }
}

TEST_F(Profile, EndsLinesAtCrAndLfOnly) {
    for (const char* end : {"\n", "\r", "\r\n", "\n\r", "\r\r\n", "\n\n \n"}) {
        const std::string bytes = std::string{"[A]"} + end + "x=1" + end + "k=2" + end + "[B]" + end + "k=3";
        EXPECT_EQ(AskIn(bytes, L"A", L"k"), L"2");
        EXPECT_EQ(Ask(L"A", nullptr), L"x\0k\0"s);
        EXPECT_EQ(Ask(nullptr, nullptr), L"A\0B\0"s);
        EXPECT_EQ(Ask(L"B", L"k"), L"3");
    }
    EXPECT_EQ(AskIn("[A]\nk=1\v2\xC2\x85"
                    "3\xE2\x80\xA8"
                    "4",
                    L"A", L"k"),
              L"1\v2\x85"
              L"3\x2028"
              L"4");
}

TEST_F(Profile, FindsSectionsByTheirHeaders) {
    struct {
        const char* what;
        std::string bytes;
        std::wstring sections;
        const wchar_t* section;
        std::wstring value;  // of the key "k" in that section
    } const cases[] = {
        {"text behind the bracket is ignored", "[A]k=1\nk=2", L"A\0"s, L"A", L"2"},
        {"another bracket too", "[A][B]\nk=1", L"A\0"s, L"A", L"1"},
        {"a second bracket in front is part of the name", "[[F]]\nk=1", L"[F\0"s, L"[F", L"1"},
        {"a comment sign is part of the name", "[;C]\nk=1", L";C\0"s, L";c", L"1"},
        {"no bracket at the end", " \t[A b \r\nk=1", L"A b\0"s, L"a B", L"1"},
        {"blanks inside the brackets", "[\t A ]\nk=1", L"A\0"s, L"A", L"1"},
        {"a bracket inside a line opens nothing", "[A]\nx [B]\n;[B]\ny=[B]\n[B]\nk=1", L"A\0B\0"s, L"B", L"1"},
        {"the first of two sections answers", "[A]\n[a]\nk=1", L"A\0a\0"s, L"A", L"missing"},
        {"a name that begins alike", "[AB]\nk=1\n[A]\nk=2", L"AB\0A\0"s, L"A", L"2"},
        {"the empty name is not listed", "[]\nk=1\n[A]\nk=2", L"A\0"s, L"", L"1"},
        {"a NUL ends the name", "[A\0B]\nk=1"s, L"A\0"s, L"A", L"1"},
        {"a section ends at the next", "[A]\n[B]\nk=1", L"A\0B\0"s, L"A", L"missing"},
        {"a tabulator asked for is not ignored", "[A]\nk=1", L"A\0"s, L"A\t", L"missing"},
        {"nor a line end", "[A\nk=1", L"A\0"s, L"A\n", L"missing"},
        {"nor a name over two lines", "[A\nk=1", L"A\0"s, L"A\nk=1", L"missing"},
        {"nor brackets", "[A]\nk=1", L"A\0"s, L"A]", L"missing"},
    };
    for (const auto& [what, bytes, sections, section, value] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(AskIn(bytes, nullptr, nullptr), sections);
        EXPECT_EQ(Ask(section, L"k", L"missing"), value);
    }
}

TEST_F(Profile, KeysThatNoLineCanHoldAreNotFound) {
    Write("[A]\nk=1\n;c=1\n[B]\n");
    for (const wchar_t* key : {L"k\t", L"\tk", L"k=", L"k=1", L"k\n", L";c", L"[B", L"\x1A", L"="}) {
        EXPECT_EQ(Ask(L"A", key, L"missing"), L"missing") << ToUtf8(CString{key});
    }
}

TEST_F(Profile, TakesOnePairOfQuotesOff) {
    struct {
        const char* value;
        const wchar_t* answer;
    } const cases[] = {
        {"\"v\"", L"v"},         {"'v'", L"v"},
        {"\"\"v\"\"", L"\"v\""}, {"\"a\" \"b\"", L"a\" \"b"},
        {"\"\"\"", L"\""},       {"\"\"", L""},
        {"\"", L"\""},           {"\"v\" ; x", L"\"v\" ; x"},
        {"\"v'", L"\"v'"},       {"\"'v'\"", L"'v'"},
        {"' v '", L" v "},       {"\xE2\x80\x9Cv\xE2\x80\x9C", L"\x201Cv\x201C"},
    };
    for (const auto& [value, answer] : cases) {
        EXPECT_EQ(AskIn(std::string{"[A]\nk="} + value, L"A", L"k"), answer) << value;
    }
}

TEST_F(Profile, ComparesNamesFolded) {
    struct {
        const char* what;
        const char* bytes;
        const wchar_t* section;
        const wchar_t* key;
    } const found[] = {
        {"letters outside ASCII", "[\xC3\x84]\n\xC3\x96=1", L"\xE4", L"\xF6"},
        {"an ASCII question, a Kelvin sign in the file", "[A]\n\xE2\x84\xAA=1", L"a", L"k"},
        {"a Kelvin sign asked for", "[A]\nK=1", L"a", L"\x212A"},
        {"a capital I with dot in the file", "[\xC4\xB0]\nk=1", L"i", L"K"},
        {"Windows-1252 in the file", "[\xC4]\n\xD6 =1", L"\xE4", L"\xF6"},
        {"above the 16 bits", "[A]\n\xF0\x9F\x98\x80=1", L"a", L"\x1F600"},
    };
    for (const auto& [what, bytes, section, key] : found) {
        SCOPED_TRACE(what);
        EXPECT_EQ(AskIn(bytes, section, key), L"1");
    }
    EXPECT_EQ(AskIn("[A]\n\xC3\x9F=1\n\xC2\xB5=2", L"A", L"ss"), L"missing");
    EXPECT_EQ(Ask(L"A", L"\x3BC", L"missing"), L"missing");
    EXPECT_EQ(Ask(L"A", L"\x1E9E", L"missing"), L"1");  // capital sharp s
}

TEST_F(Profile, ReadsTheEncodingsOfOtherSystems) {
    struct {
        const char* what;
        std::string bytes;
        std::wstring value;
    } const cases[] = {
        {"UTF-8", "[A]\nk=\xC3\xBC\xE2\x82\xAC", L"\xFC\x20AC"},
        {"UTF-8 with a mark", "\xEF\xBB\xBF[A]\nk=\xC3\xBC", L"\xFC"},
        {"Windows-1252, byte by byte", "[A]\nk=\xFC\x80\x81\xC3", L"\xFC\x20AC\x81\xC3"},
        {"both in one value", "[A]\nk=\xFC\xC3\xBC", L"\xFC\xFC"},
        {"no overlong form, no surrogate", "[A]\nk=\xC0\x80\xED\xA0\x80", L"\xC0\x20AC\xED\xA0\x20AC"},
        {"UTF-16, little endian", "\xFF\xFE[\0A\0]\0\r\0\n\0k\0=\0\xFC\0\x3D\xD8\0\xDE\x3D\xD8!\0"s,
         L"\xFC\x1F600\xD83D!"},
        {"UTF-16, big endian", "\xFE\xFF\0[\0A\0]\0\n\0k\0=\0\xFC\xD8\x3D\xDE\0\xDE\0"s, L"\xFC\x1F600\xDE00"},
        {"UTF-16 with an odd last byte", "\xFF\xFE[\0A\0]\0\n\0k\0=\0v\0w"s, L"v"},
    };
    for (const auto& [what, bytes, value] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(AskIn(bytes, L"A", L"k"), value);
    }
}

TEST_F(Profile, TellsTheObserverEachQuestion) {
    Write("; first\r\n[A]\r\n\rk='v'\r\n");
    std::vector<SourceEvent> events;
    SetSourceTrace([&](const SourceEvent& event) { events.push_back(event); });
    Ask(L"a ", L"K");
    Ask(L"A", L"absent", L"default");
    Ask(L"A", nullptr);
    SetSourceTrace({});
    Ask(L"A", L"k");

    ASSERT_EQ(events.size(), 3U);
    for (const SourceEvent& event : events) {
        EXPECT_EQ(event.source, SourceEvent::Source::Profile);
        EXPECT_EQ(event.file, m_File);
    }
    EXPECT_EQ(events[0].section, L"a ");
    EXPECT_EQ(events[0].key, L"K");
    EXPECT_EQ(events[0].value, L"v");
    EXPECT_EQ(events[0].line, 4);
    EXPECT_TRUE(events[0].found);
    EXPECT_EQ(events[1].value, L"default");
    EXPECT_EQ(events[1].line, 0);
    EXPECT_FALSE(events[1].found);
    EXPECT_EQ(events[2].value.View(), L"k\0"s);
    EXPECT_EQ(events[2].line, 0);
    EXPECT_TRUE(events[2].found);
}

TEST_F(Profile, SeesAChangeAtTheNextQuestion) {
    EXPECT_EQ(AskIn("[A]\nk=1", L"A", L"k"), L"1");
    EXPECT_EQ(AskIn("[A]\nk=2", L"A", L"k"), L"2");
}

}  // namespace
