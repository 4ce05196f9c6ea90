#include "options/store.h"

class Expansion : public OptionStoreTest {
protected:
    /// The value of autodoc-title after start-up has opened the files.
    CString TitleOf(const std::string& value, const std::string& more) {
        Basic("[AUTODOC]\nautodoc-title=" + value + "\n" + more);
        Open({L"db"});
        return Retrieved(L"autodoc-title");
    }
};

TEST_F(Expansion, LooksInTheOwnSectionThenInRootThenInTheUnnamedSection) {
    const EnvironmentGuard variable{"any_variable", "from outside"};
    const auto expect = [&](const char* what, const char* value, const char* more, const wchar_t* text) {
        EXPECT_EQ(TitleOf(value, more), text) << what;
    };
    expect("own section", "<%autodoc-x%>", "autodoc-x=own\n[ROOT]\nautodoc-x=root\n", L"<own>");
    expect("ROOT", "<%x%>", "[ROOT]\nx=root\n", L"<root>");
    expect("environment by way of ROOT", "<%any_variable%>", "", L"<from outside>");
    expect("an item of the store", "<%exe-name%>", "", L"<Tool.exe>");
    expect("a configured value before the item", "<%exe-name%>", "[ROOT]\nexe-name=configured", L"<configured>");
    expect("inner references first", "%a%-%b%", "a=%b%%b%\nb=x\n", L"xx-x");
    expect("a mark without partner stays", "50%", "", L"50%");
    expect("case of keys does not count", "%AUTODOC-X%", "autodoc-x=own\n", L"own");
    expect("marks of two replacements find each other", "%half%x%half%", "half=5%\nx=y\n", L"5yhalf%");
    expect("a replacement that begins with a mark", "%half%x%y", "half=%5\n5x=found\n", L"foundy");
    expect("nothing in the own section, empty in ROOT: the sections of the file", "%logfile%", "[ROOT]\n",
           L"AUTODOC,ROOT");
    expect("an empty name is the keys of the section", "%%", "", L"autodoc-title");
}

TEST_F(Expansion, ErrorsOfReferencesShowTheWholeChain) {
    const EnvironmentGuard variable{"loop", "%loop%"};
    Registry("AUTODOC", "\"r\"=\"%s%\"\n\"s\"=\"%r%\"");
    const auto expect = [&](const char* value, const char* more, const wchar_t* reason) {
        EXPECT_EQ(ErrorOf([&] { TitleOf(value, more); }).GetMessage(),
                  CString{L"Error retrieving option <autodoc-title>!\r\nreason: \t"} + reason);
    };
    expect("%autodoc-title%", "",
           L"The reference <autodoc-title> leads back to itself: <autodoc-title> -> <autodoc-title>!");
    expect("%a%", "a=%b%\nb=x%c%\nc=%a%\n", L"The reference <a> leads back to itself: <a> -> <b> -> <c> -> <a>!");
    expect("%loop%", "", L"The reference <loop> leads back to itself: <loop> -> <loop>!");
    expect("%r%", "", L"The reference <r> leads back to itself: <r> -> <s> -> <r>!");
    expect("%unknown%x", "",
           L"Error retrieving the string option <unknown>!\r\nreason: \tThe option <unknown> is not known by the "
           L"system!");
}

TEST_F(Expansion, NestingAndLengthEndAtTheirLimits) {
    // The last key, and each other key as a text in which '#' is the reference to the key before.
    const auto chain = [](const std::string& last, int length, const CString& text) {
        std::string keys = "k0=" + last + "\n";
        for (int i = 1; i < length; ++i) {
            CString line = FormatText(L"k%d=%s\n", i, text);
            line.Replace(L"#", CString{FormatText(L"%%k%d%%", i - 1)});
            keys += ToUtf8(line);
        }
        return keys;
    };
    EXPECT_EQ(TitleOf("%k199%", chain("end", 200, L"#")), L"end");
    EXPECT_EQ(TitleOf("%k20%", chain("x", 21, L"##")).GetLength(), 1'048'576);

    Registry("AUTODOC", "\"logging\"=\"\"");
    CString hundred;
    for (int i = 0; i < 100; ++i) hundred += L"%a%";
    const wchar_t tooLong[] = L"longer than 1048576 characters when its references are replaced!";
    const auto expect = [&](const char* what, const std::string& value, const std::string& keys, const wchar_t* part) {
        EXPECT_GE(ErrorOf([&] { TitleOf(value, keys); }).GetMessage().Find(part), 0) << what;
    };
    expect("one level more", "%k200%", chain("end", 201, L"#"),
           L"The reference <k0> is nested deeper than 200 levels: ");
    expect("one element more in a name still open", "%k20%%half%y", chain("x", 21, L"##") + "half=%5\n", tooLong);
    expect("one element more", "%k20%y", chain("x", 21, L"##"), tooLong);
    expect("2^40 questions if each reference were asked", "%k40%", chain("%logging%", 41, L"##"), tooLong);
    expect("values that are held while the next one is looked up, before the unknown one is met", "%k20%",
           "a=" + std::string(2000, 'x') + "\n" + chain("%unknown%", 21, hundred + L"#"), tooLong);
}
