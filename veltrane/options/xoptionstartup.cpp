// The start-up of the store: command line, folders, configuration files, naming rules.
#include <cstdlib>
#include <exception>
#include <utility>

#include "veltrane/foundation/xpath.h"
#include "veltrane/options/detail/xoptionlocation.h"
#include "veltrane/options/detail/xoptionretrieval.h"
#include "veltrane/options/xcommandline.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/files/cfile.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/sources/snapshot.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr wchar_t DEFAULT_METADATA_FOLDER[] = L".metadata";

struct UserFolder {
    const wchar_t* option;
    const wchar_t* defaultFolder;
};

// In the order in which they are resolved.
constexpr UserFolder USER_FOLDERS[] = {
    {L"config", L"configuration"},
    {L"changefile-root", L"changefile"},
    {L"logging", L"log"},
};

constexpr XFailure<> OPENING{L"Error locating and opening the configuration!",
                             L"An unknown exception occured while locating and opening the configuration!"};
constexpr XFailure<> READING{L"Error reading the configuration!",
                             L"An unknown exception occured while reading the configuration!"};

/// Takes the steps of start-up. While it only looks, one that fails does not keep the next ones from being taken, and
/// the first error comes at the end.
class Steps {
public:
    explicit Steps(bool isGoingOn) : m_bGoingOn(isGoingOn) {}

    template <class Step>
    void Take(Step&& step) try {
        std::forward<Step>(step)();
    } catch (...) {
        if (!m_bGoingOn) throw;
        if (!m_Failure) m_Failure = std::current_exception();
    }
    void Finish() const {
        if (m_Failure) std::rethrow_exception(m_Failure);
    }

private:
    bool m_bGoingOn;
    std::exception_ptr m_Failure;
};

}  // namespace

void XOption::Initialize(const CString& exePath, const CString& exeName, const CString& compileTime,
                         const CString& versionInfo, const CString& dateTime) {
    InsertOptionItem(L"exe-path", exePath, -1);
    InsertOptionItem(L"exe-name", exeName, -1);
    InsertOptionItem(L"compile-time", compileTime, -1);
    InsertOptionItem(L"version-info", versionInfo, -1);
    InsertOptionItem(L"datetime", dateTime, -1);
    Steps steps{m_bLookOnly};
    steps.Take([this] { ParseCommandLine(); });  // which may end the process: no snapshot stands while exit runs
    const SourceSnapshot snapshot;               // of all that follows no host sees when it is read
    steps.Take([this] { OpenRegistry(); });
    steps.Take([this] { RetrieveMetadataFolder(); });
    for (const UserFolder& folder : USER_FOLDERS) {
        steps.Take([&] { RetrieveUserPath(folder.option, folder.defaultFolder); });
    }
    steps.Finish();
}

void XOption::ParseCommandLine() {
    XCommandLine line;
    CString value;
    for (XOptionDefinition* option = line.GetFirst(value); option; option = line.GetNext(value)) {
        ActOnCommand(*option);
        XKeptOrigin kept{{{{}, 0, {}, {}, value}, OptionLayer::CommandLine, line.GetArgumentNumber()}};
        m_pRetrieval->Expand(value, {}, m_pOrigins->AreKept() ? &kept : nullptr);
        m_pRetrieval->Insert(*option, value, option->IsSingle() ? -1 : m_pItems->FreeIndex(*option), std::move(kept));
    }
}

void XOption::OpenRegistry() {
    auto& registry = m_pSources->registry;
    if (!registry) registry = std::make_unique<XRegistry>(GetFileNameBase(GetOptionString(L"exe-name", -1)));
}

// Options that end the process, what follows them unseen.
void XOption::ActOnCommand(const XOptionDefinition& definition) {
    if (m_bLookOnly) return;
    switch (definition.eOption) {
        case eOptionVersion:
            ShowVersion();
            break;
        case eOptionHelp:
            ShowHelp();
            break;
        case eOptionSetup:
            break;
        default:
            return;
    }
    std::exit(EXIT_SUCCESS);
}

void XOption::ShowVersion() {
    AfxMessageBox(
        FormatText(L"Program Name:\t%s\r\nProgram Version:\t%s\r\nCompile Time:\t%s", GetOptionString(L"exe-name", -1),
                   GetOptionString(L"version-info", -1), GetOptionString(L"compile-time", -1)),
        MB_ICONINFORMATION);
}

void XOption::RetrieveMetadataFolder() {
    RetrieveOption(L"metadata");
    CString folder = GetOptionString(L"metadata", -1);
    if (!IsAbsolutePath(folder)) {
        folder = BuildFileName(GetOptionString(L"exe-path", -1), folder.IsEmpty() ? DEFAULT_METADATA_FOLDER : folder);
        InsertFolder(L"metadata", folder);
    }
    if (!FileExists(folder)) {
        throw About({.option = L"metadata"},
                    MakeMissingFolder(Here(L"XOption::RetrieveMetadataFolder"), folder,
                                      L"The folder with the metadata information does not exist!"));
    }
}

void XOption::RetrieveUserPath(const CString& optionName, const CString& defaultFolder) {
    constexpr auto method = L"XOption::RetrieveUserPath";
    RetrieveOption(optionName);
    CString path = GetOptionString(optionName, -1);
    bool isDefault = false;
    if (!IsAbsolutePath(path)) {
        RetrieveOption(L"data");
        const CString data = GetOptionString(L"data", -1);
        m_bDataKnown = !data.IsEmpty();
        if (data.IsEmpty()) return;
        if (!FileExists(data)) {
            throw About({.option = L"data"},
                        MakeMissingFolder(Here(method), data, L"The global output data folder does not exist!"));
        }
        isDefault = path.IsEmpty();
        path = BuildFileName(data, isDefault ? defaultFolder : path);
        InsertFolder(optionName, path);
    }
    if (FileExists(path) || (isDefault && m_bLookOnly)) return;
    if (!isDefault) {
        throw About({.option = optionName},
                    MakeMissingFolder(Here(method), path, L"The folder for <%s> does not exist!", optionName));
    }
    if (!CreateDirectoryW(path)) {
        throw About({.option = optionName},
                    MakeMissingFolder(Here(method), path, L"The folder for <%s> does not exist and can not be created!",
                                      optionName));
    }
}

void XOption::InsertFolder(const CString& name, const CString& folder) {
    m_pRetrieval->Insert(*GetOptionDefinition(name), folder, -1, {{{{}, 0, {}, {}, folder}, OptionLayer::StartUp}});
}

void XOption::OpenConfiguration() {
    const SourceSnapshot snapshot;
    WithReason(Here(L"XOption::OpenConfiguration"), OPENING, [this] {
        Steps steps{m_bLookOnly};
        if (!m_pSources->userFile) steps.Take([this] { OpenUserConfiguration(); });
        if (!m_pSources->basicFile) steps.Take([this] { OpenBasicConfiguration(); });
        steps.Finish();
    });
}

void XOption::OpenUserConfiguration() {
    constexpr auto method = L"XOption::OpenConfiguration";
    RetrieveOption(L"ini");
    CString file = GetOptionString(L"ini", -1);
    if (file.IsEmpty()) return;
    CFileStatus status;
    if (CFile::GetStatus(file, status)) {
        m_pSources->userFile = std::make_unique<XConfiguration>(status.m_szFullName);
        return;
    }
    if (!IsAbsolutePath(file)) {
        const CString folder = GetOptionString(L"config", -1);
        if (!FileExists(folder)) {
            throw About(
                {.option = L"config"},
                MakeMissingFolder(Here(method), folder, L"The userspace configuration location does not exist!"));
        }
        file = BuildFileName(folder, file);
    }
    if (!FileExists(file)) {
        throw About({.option = L"ini"},
                    MakeMissingFile(Here(method), file, L"The specified user configuration file does not exist!"));
    }
    m_pSources->userFile = std::make_unique<XConfiguration>(file);
}

void XOption::OpenBasicConfiguration() {
    const CString path = BasicFilePath(GetOptionString(L"metadata", -1), GetOptionString(L"exe-name", -1));
    if (!FileExists(path)) {
        throw MakeMissingFile(Here(L"XOption::OpenConfiguration"), path,
                              L"The basic configuration could not be found!");
    }
    m_pSources->basicFile = std::make_unique<XConfiguration>(path);
}

CString XOption::BasicFilePath(const CString& metadata, const CString& exeName) {
    CString path = BuildFileName(metadata, exeName);
    path.Replace(L".exe", L"");
    path += L".ini";
    return path.MakeLower();
}

void XOption::ReadConfiguration() {
    const SourceSnapshot snapshot;  // of all that follows no host sees when it is read
    WithReason(Here(L"XOption::ReadConfiguration"), READING, [this] {
        Steps steps{m_bLookOnly};
        for (int i = 0; XOptionDefinition* const row = GetOptionDefinitionAt(i); ++i) {
            if (row->HasOptionNumber()) steps.Take([&] { RetrieveOption(row); });
        }
        steps.Take([this] { MergeObsoleteClasses(); });
        steps.Take([this] { ReadNamingRules(eOptionTableNameRules); });
        steps.Take([this] { ReadNamingRules(eOptionColumnNameRules); });
        steps.Finish();
    });
}

// Each item ends with its own classes and those of every item before it.
void XOption::MergeObsoleteClasses() {
    const CString option = L"obsolete-classes";
    XSetInt all;
    for (XOptionItem* item = GetFirstOptionItem(option); item; item = GetNextOptionItem(option)) {
        if (const XSetInt* const list = item->GetOptionIList()) all.Union(*list);
        item->SetOptionIList(all);
    }
}
