// References between percent signs, as the store replaces them.
#include "options/store.h"
#include "options/xoption.h"

namespace {

class Expansion : public OptionStoreTest {
protected:
    /// The value of autodoc-title behind a start-up up to the opened files.
    CString Title() {
        Renew();
        Initialize({L"db"});
        m_Store->OpenConfiguration();
        m_Store->RetrieveOption(L"autodoc-title");
        return Text(L"autodoc-title");
    }
    CString TitleOf(const std::string& value, const std::string& more = "") {
        Basic("[AUTODOC]\nautodoc-title=" + value + "\n" + more);
        return Title();
    }
    CString ErrorOfTitle(const std::string& value, const std::string& more = "") {
        return ErrorOf([&] { TitleOf(value, more); }).GetMessage();
    }
};

TEST_F(Expansion, LooksInTheOwnSectionThenInRootThenInTheUnnamedSection) {
    const EnvironmentGuard variable{"any_variable", "from outside"};
    struct {
        const char* what;
        const char *value, *more;
        const wchar_t* text;
    } const cases[] = {
        {"own section", "<%autodoc-x%>", "autodoc-x=own\n[ROOT]\nautodoc-x=root\n", L"<own>"},
        {"ROOT", "<%x%>", "[ROOT]\nx=root\n", L"<root>"},
        {"environment by way of ROOT", "<%any_variable%>", "", L"<from outside>"},
        {"an item of the store", "<%exe-name%>", "", L"<Tool.exe>"},
        {"inner references first", "%a%-%b%", "a=%b%%b%\nb=x\n", L"xx-x"},
        {"a mark without partner stays", "50%", "", L"50%"},
        {"case of keys does not count", "%AUTODOC-X%", "autodoc-x=own\n", L"own"},
        {"a mark in a replacement opens the next reference", "%half%b%c", "half=5%\nb=X\n", L"5Xc"},
        {"marks of two replacements find each other", "%half%x%half%", "half=5%\nx=y\n", L"5yhalf%"},
        {"nothing in the own section, empty in ROOT: the sections of the file", "%logfile%", "[ROOT]\n",
         L"AUTODOC,ROOT"},
        {"an empty name is the keys of the section", "%%", "", L"autodoc-title"},
    };
    for (const auto& [what, value, more, text] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(TitleOf(value, more), text);
    }
}

TEST_F(Expansion, ConfiguredValuesComeBeforeWhatTheCommandLineGave) {
    Basic("[ROOT]\ndata=D:\\Out\nlogfile=%data%\\run.log\n");
    Initialize({L"db", L"--data", m_Folder.Wide("data")});
    m_Store->OpenConfiguration();
    m_Store->RetrieveOption(L"logfile");
    EXPECT_EQ(Text(L"logfile"), L"D:\\Out\\run.log");
    EXPECT_EQ(Text(L"data"), m_Folder.Wide("data"));
}

TEST_F(Expansion, ReferencesThatLeadBackShowTheirChain) {
    const CString head = L"Error retrieving option <autodoc-title>!\r\nreason: \tThe reference ";
    EXPECT_EQ(ErrorOfTitle("%autodoc-title%"),
              head + L"<autodoc-title> leads back to itself: <autodoc-title> -> <autodoc-title>!");
    EXPECT_EQ(ErrorOfTitle("%a%", "a=%b%\nb=x%c%\nc=%a%\n"),
              head + L"<a> leads back to itself: <a> -> <b> -> <c> -> <a>!");
    {
        const EnvironmentGuard variable{"loop_variable", "%loop_variable%"};
        EXPECT_EQ(ErrorOfTitle("%loop_variable%"),
                  head + L"<loop_variable> leads back to itself: <loop_variable> -> <loop_variable>!");
    }
    Registry("AUTODOC", "\"r\"=\"%s%\"\n\"s\"=\"%r%\"");
    EXPECT_EQ(ErrorOfTitle("%r%"), head + L"<r> leads back to itself: <r> -> <s> -> <r>!");
}

TEST_F(Expansion, NestingEndsBehindItsLimit) {
    const auto chain = [](int length) {
        std::string keys;
        for (int i = 1; i < length; ++i) keys += "k" + std::to_string(i) + "=%k" + std::to_string(i + 1) + "%\n";
        return keys + "k" + std::to_string(length) + "=end\n";
    };
    EXPECT_EQ(TitleOf("%k1%", chain(200)), L"end");
    EXPECT_GE(ErrorOfTitle("%k1%", chain(201)).Find(L"The reference <k201> is nested deeper than 200 levels: "), 0);
}

TEST_F(Expansion, LengthEndsAtItsLimit) {
    // A chain of doublings: 2^20 elements are the limit, one more is too long.
    std::string keys = "k0=x\n";
    for (int i = 1; i <= 20; ++i) {
        const std::string before = "%k" + std::to_string(i - 1) + "%";
        keys += "k" + std::to_string(i) + "=" + before + before + "\n";
    }
    EXPECT_EQ(TitleOf("%k20%", keys).GetLength(), 1'048'576);
    EXPECT_GE(ErrorOfTitle("%k20%y", keys).Find(L"longer than 1048576 characters when its references are replaced!"),
              0);
}

TEST_F(Expansion, ReferencesThatDoubleEachOtherAreLookedUpOnce) {
    // Forty levels of doubled references to an empty text: 2^40 questions if each were asked.
    std::string keys = "k0=%logging%\n";
    for (int i = 1; i <= 40; ++i) {
        const std::string before = "%k" + std::to_string(i - 1) + "%";
        keys += "k" + std::to_string(i) + "=" + before + before + "\n";
    }
    Registry("AUTODOC", "\"logging\"=\"\"");
    EXPECT_GE(ErrorOfTitle("%k40%", keys).Find(L"longer than 1048576"), 0);
}

TEST_F(Expansion, ManyReferencesSideBySideAreNoNesting) {
    std::string value;
    for (int i = 0; i < 50'000; ++i) value += "%autodoc-title%";
    Registry("AUTODOC", "\"autodoc-index\"=\"" + value + "\"\n\"autodoc-title\"=\"x\"");
    Initialize({L"db"});
    m_Store->RetrieveOption(L"autodoc-index");
    EXPECT_EQ(Text(L"autodoc-index"), (CString{L'x', 50'000}));
}

TEST_F(Expansion, ErrorsOfReferencesCarryTheWholeStory) {
    EXPECT_EQ(ErrorOfTitle("%unknown%x"),
              L"Error retrieving option <autodoc-title>!\r\nreason: \tError retrieving the string option <unknown>!\r\n"
              L"reason: \tThe option <unknown> is not known by the system!");
    Renew();
    const XException error = ErrorOf([&] { Initialize({L"--dictionary-root", L"%%"}); });
    EXPECT_EQ(error.GetMessage(),
              L"Error retrieving the string option <>!\r\nreason: \t"
              L"The option <> is not known by the system!");
}

TEST_F(Expansion, ValuesInsideEachOtherShareTheLimit) {
    // Each level holds 200,000 elements while the next one is looked up: together they are too long long before the
    // end.
    std::string keys = "a=" + std::string(2000, 'x') + "\n";
    std::string hundred;
    for (int i = 0; i < 100; ++i) hundred += "%a%";
    for (int i = 1; i <= 20; ++i) {
        keys += "k" + std::to_string(i) + "=" + hundred + "%k" + std::to_string(i + 1) + "%\n";
    }
    EXPECT_GE(ErrorOfTitle("%k1%", keys).Find(L"longer than 1048576"), 0) << "before the missing k21 is met";
}

}  // namespace
