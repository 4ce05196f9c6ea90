#include "scenarios.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "veltrane/collections/xmap.h"
#include "veltrane/collections/xsetint.h"
#include "veltrane/collections/xsetstring.h"
#include "veltrane/collections/xstringpair.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/config/xregistry.h"
#include "veltrane/foundation/xaction.h"
#include "veltrane/foundation/xoci.h"
#include "veltrane/foundation/xraise.h"
#include "veltrane/foundation/xstring.h"
#include "veltrane/logging/xlogging.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/sources/winreg.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;

namespace torture {

namespace {

void Write(const std::string& file, const std::string& text) {
    std::ofstream{file, std::ios::binary} << text;
}

std::string Read(const CString& file) {
    std::ostringstream text;
    text << std::ifstream{ToUtf8(file), std::ios::binary}.rdbuf();
    return text.str();
}

/// A store and its three start-up steps. After an error it must still answer and be destroyed.
class StartUp : public Scenario {
public:
    StartUp(const CString& folder, bool withOrigins) : m_Folder(folder), m_WithOrigins(withOrigins) {}

    void Act() override {
        m_Store = std::make_unique<XOption>();
        Run(*m_Store);
    }
    std::string Fault() override {
        if (m_Store) AskAll(*m_Store);
        XOption again;
        Run(again);
        if (again.GetOptionString(L"logfile", -1) != L"base-run.log") return "a new store reads another value";
        return again.GetOptionString(L"map-file", 2) == L"b.map" ? "" : "a new store lost a family";
    }

private:
    void Run(XOption& store) {
        store.KeepOrigins(m_WithOrigins);
        store.Initialize(m_Folder, L"tool", L"today", L"1.0", L"now");
        store.OpenConfiguration();
        store.ReadConfiguration();
        if (!m_WithOrigins) return;
        store.GetOptionCandidates(L"logfile", -1);
        store.ExplainOption(L"logfile", -1);
        store.GetNamingRules(eOptionTableNameRules);
    }

    static void AskAll(XOption& store) {
        for (const auto* item = store.GetFirstOptionItem(L""); item; item = store.GetNextOptionItem(L"")) {
            CString name;
            item->GetOptionName(name);
            store.GetOptionOrigin(item);
            store.GetOptionCandidates(name, item->GetOptionIndex());
            store.ExplainOption(name, item->GetOptionIndex());
        }
    }

    CString m_Folder;
    bool m_WithOrigins;
    std::unique_ptr<XOption> m_Store;
};

/// A store that is read: getters, walks, insertion, renaming.
class Getters : public Scenario {
public:
    explicit Getters(const CString& folder) {
        m_Store.Initialize(folder, L"tool", L"today", L"1.0", L"now");
        m_Store.OpenConfiguration();
        m_Store.ReadConfiguration();
    }
    void Act() override {
        m_Store.GetOptionString(L"logfile", -1);
        m_Store.GetOptionBoolean(L"quiet", -1);
        for (auto* item = m_Store.GetFirstOptionItem(L"map-file"); item;) item = m_Store.GetNextOptionItem(L"map-file");
        m_Store.InsertOptionItem(L"map-file", L"one more than before, and long enough to need memory", 7);
        m_Store.DeleteOption(L"index-file");
        m_Store.RetrieveOption(L"index-file");
        CString name = L"tmp_a_name_that_is_long_enough_to_need_memory";
        m_Store.ReplaceTableName(name, 9, /*keepCase*/ false);
    }
    std::string Fault() override {
        if (m_Store.GetOptionString(L"map-file", 2) != L"b.map") return "an item is lost";
        CString name = L"tmp_a";
        m_Store.ReplaceTableName(name, 9, /*keepCase*/ false);
        return name == L"WRK_A" ? "" : "the rules are lost";
    }

private:
    XOption m_Store;
};

/// Sets of values: they absorb failures and stay usable.
class ValueSets : public Scenario {
public:
    void Act() override {
        XSetInt numbers;
        numbers.BuildSet(L"5,3,9,1,7");
        XSetString texts;
        texts.InsertList(L"a long enough text to need memory;b;c;a", /*sort*/ true, L";");
        XSetString others;
        others.InsertList(L"b;x", /*sort*/ true, L";");
        m_Texts.Union(texts, others, XSetString::Comp);
        m_Texts.Sub(texts, others);
        XSetInt copy{&numbers};
        m_Numbers = copy;
        m_Numbers.Sort();
    }
    std::string Fault() override {
        m_Numbers.Clear();
        m_Numbers.BuildSet(L"2,1");
        m_Numbers.Sort();
        return m_Numbers.Size() == 2 && m_Numbers.GetConstRefAt(0) == 1 ? "" : "the set is broken";
    }

private:
    XSetInt m_Numbers;
    XSetString m_Texts;
};

/// Sets of objects: an object that cannot be inserted is not lost, and those in the set stay.
class ObjectSets : public Scenario {
public:
    ObjectSets() { m_Pairs.Insert(new XStringPair{L"first", L"second"}); }
    void Act() override {
        XSetStringPairs copy = m_Pairs;
        auto pair = std::make_unique<XStringPair>(L"a text that needs memory of its own", L"b");
        copy.Insert(pair.get());
        static_cast<void>(pair.release());
        copy.Sort();
        copy.Sub(copy, m_Pairs);
        XMapInt2CString map;
        for (int i = 0; i < 5; ++i) map.Insert(i, L"a text that needs memory of its own");
    }
    std::string Fault() override { return m_Pairs.Size() == 1 ? "" : "the set changed"; }

private:
    XSetStringPairs m_Pairs;
};

/// A log: each line is in the file, or writing it has thrown.
class Log : public Scenario {
public:
    explicit Log(const CString& folder) : m_File(folder + L"/run.log") {}
    void Act() override {
        m_Written.clear();
        m_Log.StartLogging(m_File, L"tool", L"1.0", L"today");
        for (int i = 0; i < 3; ++i) {
            const CString line = FormatText(L"entry %d with a text that needs memory of its own", i);
            m_Log.WriteLog(line, /*newLine*/ true, /*timeStamp*/ true);
            m_Written += static_cast<char>('0' + i);
        }
        m_Log.ShowError(-1, L"<A::B> in [a], line [1]", L"a message that needs memory of its own");
        m_Log.CloseLogFile();
    }
    std::string Fault() override {
        const std::string text = Read(m_File);
        for (const char number : m_Written) {
            if (text.find(std::string{"entry "} + number) == text.npos) return "a line is lost";
        }
        m_Log.CloseLogFile();
        m_Log.StartLogging(m_File, L"tool", L"1.0", L"today");
        m_Log.WriteLog(L"again", true, true);
        m_Log.CloseLogFile();
        return Read(m_File).find(": again") != std::string::npos ? "" : "the log cannot be used again";
    }

private:
    CString m_File;
    XLogging m_Log;
    std::string m_Written;
};

/// A file that cannot be closed at its end: its descriptor is gone.
class LostFile : public Scenario {
public:
    explicit LostFile(const CString& folder) : m_File(folder + L"/lost.log") {}
    void Act() override {
        const int next = open("/dev/null", O_RDONLY);  // the descriptor that the file gets
        close(next);
        CStdioFile file;
        if (file.Open(m_File, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite)) close(next);
    }
    std::string Fault() override { return {}; }

private:
    CString m_File;
};

/// Errors, lists and durations.
class Texts : public Scenario {
public:
    void Act() override {
        XException error;
        error.SetError(-1, L".\\file", L"Class::Method", 5, L"a message that needs memory of its own");
        error.AddError(L".\\other", L"Class::Other", 7, L"a reason that needs memory of its own, too");
        error.AddMessage(L"and a hint after it that needs memory");
        m_Record.Add(100, L".\\file", L"Class::Method", 5, L"", nullptr);
        CString text;
        error.GetErrorText(text);
        AddString(m_List, L"an item that needs memory of its own");
        m_List.Replace(L"item", L"thing of another length");
        text.Format(L"%s %d %f", m_List, 5, 1.5);
        XAction::TimeStr(90061000, 40, /*shortUnits*/ false);
        FromUtf8(ToUtf8(text)).MakeUpper();
    }
    std::string Fault() override {
        if (m_Record.GetCount() == 0 && m_Record.GetNumber() != 0) return "a record has a number and no entry";
        m_List.Empty();
        AddString(m_List, L"a");
        AddString(m_List, L"b");
        return m_List == L"a, b" ? "" : "the list is broken";
    }

private:
    CString m_List;
    XOCI::XError m_Record;
};

/// Both readers of files.
class Readers : public Scenario {
public:
    explicit Readers(const CString& folder)
        : m_File(folder + L"/.metadata/tool.ini"), m_Configuration(m_File), m_Registry(L"tool") {}
    void Act() override {
        CString value;
        m_Configuration.GetKeyValue(value, L"ROOT", L"logfile", /*assignEmpty*/ false);
        XMapInt2CString values;
        m_Configuration.GetKeyValueSet(values, L"base\\FILES\\%d", L"map-file");
        m_Registry.GetValue(value, L"ROOT", L"dictionary-root");
    }
    std::string Fault() override {
        CString value;
        m_Configuration.GetKeyValue(value, L"ROOT", L"logfile", /*assignEmpty*/ false);
        if (value != L"%name%-run.log") return "the file answers something else";
        return m_Registry.GetValue(value, L"ROOT", L"dictionary-root") ? "" : "the registry does not answer";
    }

private:
    CString m_File;
    XConfiguration m_Configuration;
    XRegistry m_Registry;
};

}  // namespace

const std::vector<NamedScenario>& Scenarios() {
    static const std::vector<NamedScenario> scenarios = {
        {"start-up", [](const CString& folder) { return std::make_unique<StartUp>(folder, false); }},
        {"start-up with origins", [](const CString& folder) { return std::make_unique<StartUp>(folder, true); }},
        {"getters", [](const CString& folder) { return std::make_unique<Getters>(folder); }},
        {"value sets", [](const CString&) { return std::make_unique<ValueSets>(); }},
        {"object sets", [](const CString&) { return std::make_unique<ObjectSets>(); }},
        {"log", [](const CString& folder) { return std::make_unique<Log>(folder); }},
        {"lost file", [](const CString& folder) { return std::make_unique<LostFile>(folder); }},
        {"texts", [](const CString&) { return std::make_unique<Texts>(); }},
        {"readers", [](const CString& folder) { return std::make_unique<Readers>(folder); }},
    };
    return scenarios;
}

void Prepare(const std::string& folder) {
    setenv("TEMP", "/a folder whose name needs memory of its own", 1);
    std::filesystem::create_directories(folder + "/.metadata");
    std::filesystem::create_directories(folder + "/data");
    Write(folder + "/.metadata/tool.ini",
          "[ROOT]\nlogfile=%name%-run.log\n[USER]\nload-dictionary-2=a\nload-dictionary=b\n"
          "[base]\ndictionary-name=d\nrole=r\nregistry=g\nobsolete-classes-1=4,2\n"
          "[base\\FILES\\2]\nmap-file=b.map\nindex-file=b.idx\n[base\\TABLENAME RULES\\3]\ntmp_=wrk_\n");
    Write(folder + "/registry.reg",
          "REGEDIT4\n[HKLM\\SOFTWARE\\VORNAK\\tool\\ROOT]\n\"dictionary-root\"=\"a text that needs memory of its "
          "own\"\n");
    SetRegistryFile(FromUtf8(folder + "/registry.reg"));
    SetArguments({L"tool", L"base", L"-q", L"-l", L"%TEMP%/x", L"--data", FromUtf8(folder + "/data")});
}

}  // namespace torture
