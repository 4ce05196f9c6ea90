// The start-up of the store: command line, folders, configuration files, naming rules.
#include <cstdlib>
#include <exception>
#include <utility>

#include "veltrane/foundation/xpath.h"
#include "veltrane/options/detail/help.h"
#include "veltrane/options/detail/startupfolders.h"
#include "veltrane/options/detail/xoptiongetter.h"
#include "veltrane/options/detail/xoptionretrieval.h"
#include "veltrane/options/xcommandline.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/files/cfile.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/sources/internal/snapshot.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

// The rows of start-up's own questions.
constexpr XOptionDefinition& EXE_PATH = LibraryRow(eOptionExePath);
constexpr XOptionDefinition& EXE_NAME = LibraryRow(eOptionExeName);
constexpr XOptionDefinition& COMPILE_TIME = LibraryRow(eOptionCompileTime);
constexpr XOptionDefinition& VERSION_INFO = LibraryRow(eOptionVersionInfo);
constexpr XOptionDefinition& DATE_TIME = LibraryRow(eOptionDateTime);
constexpr XOptionDefinition& METADATA = METADATA_FOLDER.option;
constexpr XOptionDefinition& CONFIG = LibraryRow(eOptionConfig);
constexpr XOptionDefinition& DATA = LibraryRow(eOptionData);
constexpr XOptionDefinition& INI = LibraryRow(eOptionIni);

constexpr XFailure<> OPENING{L"Error locating and opening the configuration!",
                             L"An unknown exception occured while locating and opening the configuration!"};
constexpr XFailure<> READING{L"Error reading the configuration!",
                             L"An unknown exception occured while reading the configuration!"};

/// Runs the steps of start-up. While start-up only looks, the next steps run after one that fails, and the first error
/// is thrown at the end.
class Steps {
public:
    explicit Steps(bool isGoingOn) : m_bGoingOn(isGoingOn) {}

    template <class Step>
    void Run(Step&& step) try {
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
    m_pRetrieval->Insert(EXE_PATH, exePath, -1, OptionLayer::Host);
    m_pRetrieval->Insert(EXE_NAME, exeName, -1, OptionLayer::Host);
    m_pRetrieval->Insert(COMPILE_TIME, compileTime, -1, OptionLayer::Host);
    m_pRetrieval->Insert(VERSION_INFO, versionInfo, -1, OptionLayer::Host);
    m_pRetrieval->Insert(DATE_TIME, dateTime, -1, OptionLayer::Host);
    Steps steps{m_bLookOnly};
    steps.Run([this] { ParseCommandLine(); });  // may end the process: no snapshot may live while exit runs
    const SourceSnapshot snapshot;              // of all that follows no host sees when it is read
    steps.Run([this] { OpenRegistry(); });
    steps.Run([this] { RetrieveMetadataFolder(); });
    for (const StartupFolder& folder : USER_FOLDERS) {
        if (OptionRegistry::HasLibraryRow(folder.option)) steps.Run([&] { RetrieveUserPath(folder); });
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
    if (!registry) registry = std::make_unique<XRegistry>(GetFileNameBase(OptionText(*m_pItems, EXE_NAME)));
}

// Options that end the process, without a look at what follows them.
void XOption::ActOnCommand(const XOptionDefinition& definition) {
    const enumOption option = definition.eOption;
    const bool isFinal = option == eOptionVersion || option == eOptionHelp || option == eOptionSetup;
    if (!isFinal || m_bLookOnly) return;
    if (option == eOptionVersion) ShowVersion();
    if (option == eOptionHelp) ShowHelpOf(OptionText(*m_pItems, EXE_NAME));
    std::exit(EXIT_SUCCESS);
}

void XOption::ShowVersion() {
    AfxMessageBox(
        FormatText(L"Program Name:\t%s\r\nProgram Version:\t%s\r\nCompile Time:\t%s", OptionText(*m_pItems, EXE_NAME),
                   OptionText(*m_pItems, VERSION_INFO), OptionText(*m_pItems, COMPILE_TIME)),
        MB_ICONINFORMATION);
}

void XOption::RetrieveMetadataFolder() {
    m_pRetrieval->Retrieve(METADATA);
    CString folder = OptionText(*m_pItems, METADATA);
    if (!IsAbsolutePath(folder)) {
        folder =
            BuildFileName(OptionText(*m_pItems, EXE_PATH), folder.IsEmpty() ? METADATA_FOLDER.defaultFolder : folder);
        m_pRetrieval->Insert(METADATA, folder, -1, OptionLayer::StartUp);
    }
    if (!FileExists(folder)) {
        throw About({.option = METADATA.szLongName},
                    MakeMissingFolder(Here(L"XOption::RetrieveMetadataFolder"), folder,
                                      L"The folder with the metadata information does not exist!"));
    }
}

void XOption::RetrieveUserPath(const StartupFolder& folder) {
    constexpr auto method = L"XOption::RetrieveUserPath";
    XOptionDefinition& option = folder.option;
    m_pRetrieval->Retrieve(option);
    CString path = OptionText(*m_pItems, option);
    bool isDefault = false;
    if (!IsAbsolutePath(path)) {
        m_pRetrieval->Retrieve(DATA);
        const CString data = OptionText(*m_pItems, DATA);
        m_bDataKnown = !data.IsEmpty();
        if (data.IsEmpty()) return;
        if (!FileExists(data)) {
            throw About({.option = DATA.szLongName},
                        MakeMissingFolder(Here(method), data, L"The global output data folder does not exist!"));
        }
        isDefault = path.IsEmpty();
        path = BuildFileName(data, isDefault ? folder.defaultFolder : path);
        m_pRetrieval->Insert(option, path, -1, OptionLayer::StartUp);
    }
    if (FileExists(path) || (isDefault && m_bLookOnly)) return;
    if (!isDefault) {
        throw About({.option = option.szLongName},
                    MakeMissingFolder(Here(method), path, L"The folder for <%s> does not exist!", option.szLongName));
    }
    if (!CreateDirectoryW(path)) {
        throw About({.option = option.szLongName},
                    MakeMissingFolder(Here(method), path, L"The folder for <%s> does not exist and can not be created!",
                                      option.szLongName));
    }
}

void XOption::OpenConfiguration() {
    const SourceSnapshot snapshot;
    WithReason(Here(L"XOption::OpenConfiguration"), OPENING, [this] {
        Steps steps{m_bLookOnly};
        if (!m_pSources->userFile) steps.Run([this] { OpenUserConfiguration(); });
        if (!m_pSources->basicFile) steps.Run([this] { OpenBasicConfiguration(); });
        steps.Finish();
    });
}

void XOption::OpenUserConfiguration() {
    constexpr auto method = L"XOption::OpenConfiguration";
    m_pRetrieval->Retrieve(INI);
    CString file = OptionText(*m_pItems, INI);
    m_bIniKnown = !file.IsEmpty();
    if (file.IsEmpty()) return;
    CFileStatus status;
    if (CFile::GetStatus(file, status)) {
        m_pSources->userFile = std::make_unique<XConfiguration>(status.m_szFullName);
        return;
    }
    if (!IsAbsolutePath(file)) {
        const CString folder = OptionText(*m_pItems, CONFIG);
        if (!FileExists(folder)) {
            throw About(
                {.option = CONFIG.szLongName},
                MakeMissingFolder(Here(method), folder, L"The userspace configuration location does not exist!"));
        }
        file = BuildFileName(folder, file);
    }
    if (!FileExists(file)) {
        throw About({.option = INI.szLongName},
                    MakeMissingFile(Here(method), file, L"The specified user configuration file does not exist!"));
    }
    m_pSources->userFile = std::make_unique<XConfiguration>(file);
}

void XOption::OpenBasicConfiguration() {
    const CString path = BasicFilePath(OptionText(*m_pItems, METADATA), OptionText(*m_pItems, EXE_NAME));
    if (!FileExists(path)) {
        throw About(
            {.option = METADATA.szLongName, .places = {{{{.file = path}, OptionLayer::BasicFile}}}},
            MakeMissingFile(Here(L"XOption::OpenConfiguration"), path, L"The basic configuration could not be found!"));
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
            if (row->HasOptionNumber()) steps.Run([&] { RetrieveOption(row); });
        }
        steps.Run([this] { MergeObsoleteClasses(); });
        steps.Run([this] { ReadNamingRules(eOptionTableNameRules); });
        steps.Run([this] { ReadNamingRules(eOptionColumnNameRules); });
        steps.Finish();
    });
}

// Each item ends with its own classes and those of every item before it.
void XOption::MergeObsoleteClasses() {
    const XOptionDefinition* const option = &LibraryRow(eOptionObsoleteClasses);
    XSetInt all;
    for (XOptionItem* item = m_pItems->GetFirst(option); item; item = m_pItems->GetNext(option)) {
        if (const XSetInt* const list = item->GetOptionIList()) all.Union(*list);
        item->SetOptionIList(all);
    }
}
