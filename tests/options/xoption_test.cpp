#include "options/xoption.h"

#include <functional>

#include "options/store.h"
#include "platform/trace.h"

namespace {

class OptionStore : public OptionStoreTest {};

TEST_F(OptionStore, SingleOptionsKeepOneItemAndMultipleOnesCollect) {
    XOptionItem* const first = m_Store->InsertOptionItem(L"quiet", L"true", -1);
    EXPECT_EQ(m_Store->InsertOptionItem(L"-q", L"false", 7), first);
    EXPECT_EQ(first->GetOptionValue(), L"false");
    m_Store->InsertOptionItem(L"map-file", L"%a%", 1);
    m_Store->InsertOptionItem(L"map-file", L"b", 1);
    EXPECT_EQ(Texts(L"map-file"), (std::vector<CString>{L"1=%a%", L"1=b"}));
    EXPECT_EQ(m_Store->GetOptionString(L"map-file", 1), L"%a%") << "stored as it is; the first with that index answers";
    EXPECT_EQ(m_Store->InsertOptionItem(L"", L"x", 0), nullptr);
    EXPECT_EQ(m_Store->GetOptionItem(L"quiet", 0), nullptr) << "a single option has the index -1";
    m_Store->DeleteOption(L"map-file");
    m_Store->DeleteOption(L"quiet");
    m_Store->DeleteOption(L"");
    EXPECT_EQ(m_Store->GetFirstOptionItem(L""), nullptr);
    EXPECT_FALSE(m_Store->GetOptionBoolean(L"quiet", -1));
}

TEST_F(OptionStore, WalksShareTheMarksOfTheItems) {
    m_Store->InsertOptionItem(L"load-dictionary", L"a", 0);
    m_Store->InsertOptionItem(L"quiet", L"true", -1);
    m_Store->InsertOptionItem(L"load-dictionary", L"b", 1);
    EXPECT_EQ(m_Store->GetFirstOptionString(L"load-dictionary"), L"a");
    EXPECT_EQ(m_Store->GetNextOptionString(L"-l"), L"b");
    EXPECT_EQ(m_Store->GetNextOptionString(L"load-dictionary"), L"") << "the end";
    EXPECT_EQ(m_Store->GetFirstOptionItem(L"")->GetOptionValue(), L"a") << "a walk over all restarts every walk";
    EXPECT_EQ(m_Store->GetNextOptionString(L"load-dictionary"), L"b");
    EXPECT_EQ(m_Store->GetNextOptionItem(L"")->GetOptionValue(), L"true");
    EXPECT_EQ(m_Store->GetNextOptionItem(L""), nullptr);
    m_Store->InsertOptionItem(L"load-dictionary", L"c", 2);
    EXPECT_EQ(m_Store->GetNextOptionString(L"load-dictionary"), L"c") << "new items are not marked";
    EXPECT_TRUE(m_Store->GetFirstOptionBoolean(L"quiet"));
    EXPECT_FALSE(m_Store->GetNextOptionBoolean(L"quiet"));
}

TEST_F(OptionStore, GettersGiveWhatStandsForAMissingValue) {
    EXPECT_EQ(Text(L"spool"), L"false");
    m_Store->InsertOptionItem(L"spool", L"", -1);
    EXPECT_EQ(Text(L"spool"), L"true");
    m_Store->InsertOptionItem(L"spool", L"x.sql", -1);
    EXPECT_EQ(Text(L"spool"), L"x.sql");
    EXPECT_EQ(Text(L"logfile"), L"");
    EXPECT_EQ(m_Store->GetOptionTrillian(L"create-views", -1), eFlagAuto);
    EXPECT_EQ(m_Store->GetOptionIList(L"obsolete-classes", 0), nullptr);
    EXPECT_EQ(m_Store->GetFirstOptionIList(L"obsolete-classes"), nullptr);
    m_Store->InsertOptionItem(L"quiet", L"TRUE", -1);
    EXPECT_TRUE(m_Store->GetOptionBoolean(L"--quiet", -1));
    EXPECT_FALSE(m_Store->GetFirstOptionBoolean(L"quiet")) << "the walks take the word exactly";
}

TEST_F(OptionStore, GettersPutTheirReasonInFrontOfEveryError) {
    XOption& store = *m_Store;
    const CString unknown = L"The option <nosuch> is not known by the system!";
    const CString stringReason = L"Error retrieving the string option <%s>!\r\nreason: \t";
    const CString useWalk =
        L"Cannot get value for option <load-dictionary>, because it is a multiple option and you haven't specified an "
        L"index!\r\nreason: \tUse either 'GetFirstOption()' and/or 'GetNextOption()' or specify an index value!";
    struct {
        std::function<void()> ask;
        const wchar_t* method;
        CString message;
    } const cases[] = {
        {[&] { store.GetOptionString(L"nosuch", -1); }, L"GetOptionString",
         L"Error retrieving the string option <nosuch>!\r\nreason: \t" + unknown},
        {[&] { store.GetOptionString(L"-q", -1); }, L"GetOptionString",
         L"Error retrieving the string option <-q>!\r\nreason: \tThe option <-q> is not a string option!"},
        {[&] { store.GetFirstOptionString(L"quiet"); }, L"GetFirstOptionString",
         L"Error retrieving the string option <quiet>!\r\nreason: \tThe option <quiet> is not a string option!"},
        {[&] { store.GetNextOptionString(L""); }, L"GetNextOptionString",
         L"Error retrieving the string option <>!\r\nreason: \tThe option <> is not known by the system!"},
        {[&] { store.GetOptionString(L"load-dictionary", -1); }, L"GetOptionString",
         L"Error retrieving the string option <load-dictionary>!\r\nreason: \t" + useWalk},
        {[&] { store.GetOptionString(L"name", 0); }, L"GetOptionString",
         L"Error retrieving the string option <name>!\r\nreason: \t"
         L"The mandatory option <name> could not be found in the program option registry!"},
        {[&] { store.GetOptionBoolean(L"name", -1); }, L"GetOptionBoolean",
         L"Error retrieving the boolean option <name>!\r\nreason: \t"
         L"The option <name> is not a boolean option (in other words: it's not a flag)!"},
        {[&] { store.GetFirstOptionBoolean(L"nosuch"); }, L"GetFirstOptionBoolean",
         L"Error retrieving the boolean option <nosuch>!\r\nreason: \t" + unknown},
        {[&] { store.GetNextOptionBoolean(L"nosuch"); }, L"GetNextOptionBoolean",
         L"Error retrieving the boolean option <nosuch>!\r\nreason: \t" + unknown},
        {[&] { store.GetOptionTrillian(L"quiet", -1); }, L"GetOptionTrillian",
         L"Error retrieving the tri-state option <quiet>!\r\nreason: \tThe option <quiet> is not a tri-state option!"},
        {[&] { store.GetOptionIList(L"quiet", -1); }, L"GetOptionIList",
         L"Error retrieving the integer list option <quiet>!\r\nreason: \t"
         L"The option <quiet> is not an integer list option!"},
        {[&] { store.GetFirstOptionIList(L"nosuch"); }, L"GetFirstOptionIList",
         L"Error retrieving the integer list option <nosuch>!\r\nreason: \t" + unknown},
        {[&] { store.GetNextOptionIList(L"nosuch"); }, L"GetNextOptionIList",
         L"Error retrieving the integer list option <nosuch>!\r\nreason: \t" + unknown},
        {[&] { store.GetOptionItem(L"nosuch", 0); }, L"GetOptionDefinition", unknown},
    };
    for (const auto& [ask, method, message] : cases) {
        const XException error = ErrorOf(ask);
        EXPECT_EQ(error.GetMessage(), message);
        const CString location = FormatText(L"<XOption::%s> in [xoption], line [", method);
        EXPECT_EQ(error.GetLocation().Left(location.GetLength()), location);
        EXPECT_EQ(error.GetNumber(), -1);
    }
}

// Which sources hold the key "data" or its cousin of another section, and who wins.
TEST_F(OptionStore, LaterSourcesWinAndTheEnvironmentIsWeakest) {
    struct {
        const char* what;
        const wchar_t* option;
        bool basic, user, registry, environment;
        const wchar_t* value;
    } const cases[] = {
        {"all of them", L"dictionary-root", true, true, true, true, L"registry"},
        {"both files", L"dictionary-root", true, true, false, true, L"user"},
        {"basic file", L"dictionary-root", true, false, false, true, L"basic"},
        {"registry alone", L"dictionary-root", false, false, true, true, L"registry"},
        {"environment alone", L"dictionary-root", false, false, false, true, L"environment"},
        {"nobody", L"dictionary-root", false, false, false, false, L""},
        {"all but ROOT", L"autodoc-title", true, true, true, true, L"registry"},
        {"no environment outside ROOT", L"autodoc-title", false, false, false, true, L""},
    };
    for (const auto& [what, option, basic, user, registry, environment, value] : cases) {
        SCOPED_TRACE(what);
        const std::string name = ToUtf8(option);
        const std::string section = name == "autodoc-title" ? "AUTODOC" : "ROOT";
        const auto entry = [&, s = section, n = name](bool isThere, const char* text) {
            return isThere ? "[" + s + "]\n" + n + "=" + text + "\n" : std::string{};
        };
        Basic(entry(basic, "basic"));
        User(entry(user, "user"));
        Registry(section, registry ? "\"" + name + "\"=\"registry\"" : "");
        const EnvironmentGuard variable{name, environment ? std::optional<std::string>{"environment"} : std::nullopt};
        Renew();
        Initialize({L"-n", L"db", L"--ini", UserFile()});
        m_Store->OpenConfiguration();
        m_Store->RetrieveOption(option);
        EXPECT_EQ(Text(option), value);
    }
}

TEST_F(OptionStore, AnItemThatIsThereIsNeverOverridden) {
    Basic("[ROOT]\ndictionary-root=basic\n[USER]\nload-dictionary-3=c\nload-dictionary=d\n");
    Initialize({L"db", L"-dr", L"typed", L"-l", L"a"});
    m_Store->OpenConfiguration();
    m_Store->RetrieveOption(L"dictionary-root");
    m_Store->RetrieveOption(L"load-dictionary");
    EXPECT_EQ(Text(L"dictionary-root"), L"typed");
    EXPECT_EQ(Texts(L"load-dictionary"), std::vector<CString>{L"0=a"});
    m_Store->DeleteOption(L"load-dictionary");
    m_Store->RetrieveOption(L"load-dictionary");
    EXPECT_EQ(Texts(L"load-dictionary"), (std::vector<CString>{L"3=c", L"4=d"}));
}

TEST_F(OptionStore, IndexedSectionsFollowTheDatabaseName) {
    Basic("[50%n_x\\FILES\\7]\nmap-file=m7\n[50%n_x\\files\\2]\nMAP-FILE=m2\n[db\\FILES\\1]\nmap-file=other\n");
    Initialize({L"--name", L"50%n_x"});
    m_Store->OpenConfiguration();
    m_Store->RetrieveOption(L"map-file");
    EXPECT_EQ(Texts(L"map-file"), (std::vector<CString>{L"2=m2", L"7=m7"}));
}

TEST_F(OptionStore, AnIndexInBothFilesIsAnError) {
    Basic("[db\\FILES\\1]\nmap-file=a\n");
    User("[db\\FILES\\1]\nmap-file=b\n");
    Initialize({L"db", L"--ini", UserFile()});
    m_Store->OpenConfiguration();
    const XException error = ErrorOf([&] { m_Store->RetrieveOption(L"map-file"); });
    EXPECT_EQ(error.GetMessage(),
              L"Error retrieving option <map-file>!\r\nreason: \tMultiple options <map-file> for index <1>!");
}

TEST_F(OptionStore, MandatoryOptionsMustBeFound) {
    Initialize({L"db"});
    m_Store->OpenConfiguration();
    EXPECT_EQ(ErrorOf([&] { m_Store->RetrieveOption(L"role"); }).GetMessage(),
              L"Error retrieving option <role>!\r\nreason: \tThe option <role> must exist but could not be found!");
    Renew();
    EXPECT_EQ(ErrorOf([&] { m_Store->RetrieveOption(L"name"); }).GetMessage(),
              L"Error retrieving option <name>!\r\nreason: \tError retrieving the string option <name>!\r\nreason: \t"
              L"The mandatory option <name> could not be found in the program option registry!");
}

TEST_F(OptionStore, AnObserverSeesEveryQuestionAnsweredAnew) {
    Basic(std::string{DATABASE} + "[USER]\nquiet=true\n");
    Initialize({L"db"});
    m_Store->OpenConfiguration();
    const SourceTrace before = SetSourceTrace([&](const SourceEvent& event) {
        if (event.key == L"create-schema") Basic(std::string{DATABASE} + "[USER]\nquiet=false\n");
    });
    m_Store->ReadConfiguration();
    SetSourceTrace(before);
    EXPECT_EQ(m_Store->GetOptionItem(L"quiet", -1)->GetOptionValue(), L"false") << "the file was changed on the way";
}

TEST_F(OptionStore, ACopyOfARowStandsForItsOption) {
    Basic("[USER]\nquiet=true\n");
    Initialize({L"db"});
    m_Store->OpenConfiguration();
    XOptionDefinition copy = *FindOptionDefinition(L"quiet");
    m_Store->RetrieveOption(&copy);
    EXPECT_TRUE(m_Store->GetOptionBoolean(L"quiet", -1));
}

}  // namespace
