// The start-up of the store: command line, folders, configuration files, naming rules.
#include <algorithm>
#include <cstdlib>
#include <map>

#include "veltrane/foundation/xpath.h"
#include "veltrane/foundation/xstring.h"
#include "veltrane/options/detail/xoptionlocation.h"
#include "veltrane/options/xcommandline.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/files/cfile.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/sources/snapshot.h"
#include "veltrane/platform/text/indexformat.h"

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

template <class... Args>
XFileException MissingFolder(const XSite& site, const CString& folder, XFormatFor<Args...> format,
                             const Args&... args) {
    XFileException error{folder};
    error.SetPathNotFoundError(site.file, site.method, site.line, FormatText(format, args...));
    return error;
}

XFileException MissingFile(const XSite& site, const CString& file, const CString& message) {
    XFileException error{file};
    error.SetFileNotFoundError(site.file, site.method, site.line, message);
    return error;
}

// Indexes come from users; behind the largest int the count goes on from the smallest.
int Successor(int index) {
    return static_cast<int>(static_cast<unsigned>(index) + 1U);
}

}  // namespace

void XOption::Initialize(const CString& exePath, const CString& exeName, const CString& compileTime,
                         const CString& versionInfo, const CString& dateTime) {
    InsertOptionItem(L"exe-path", exePath, -1);
    InsertOptionItem(L"exe-name", exeName, -1);
    InsertOptionItem(L"compile-time", compileTime, -1);
    InsertOptionItem(L"version-info", versionInfo, -1);
    InsertOptionItem(L"datetime", dateTime, -1);
    ParseCommandLine();
    RetrieveMetadataFolder();
    for (const auto& [option, defaultFolder] : USER_FOLDERS) RetrieveUserPath(option, defaultFolder);
}

bool XOption::ParseCommandLine() {
    std::map<const XOptionDefinition*, int> freeIndexes;  // only this walk adds items, so each option is searched once
    XCommandLine line;
    CString value;
    for (XOptionDefinition* option = line.GetFirst(value); option; option = line.GetNext(value)) {
        ActOnCommand(*option);
        ExpandOptionValue(value, {});
        int index = -1;
        if (!option->IsSingle()) {
            auto next = freeIndexes.find(option);
            if (next == freeIndexes.end()) next = freeIndexes.emplace(option, FreeIndex(*option)).first;
            index = next->second;
            next->second = Successor(index);
        }
        InsertOptionItem(option, value, index);
    }
    if (!m_pRegistry) m_pRegistry = std::make_unique<XRegistry>(GetFileNameBase(GetOptionString(L"exe-name", -1)));
    return true;
}

// One more than the largest index of an option's items; 0 without any.
int XOption::FreeIndex(const XOptionDefinition& definition) {
    int free = 0;
    bool isFirst = true;
    for (int i = 0; i < m_OptionItems.Size(); ++i) {
        const XOptionItem* const item = m_OptionItems.GetAt(i);
        if (item->GetID() != definition.eOption) continue;
        const int next = Successor(item->GetOptionIndex());
        free = isFirst ? next : std::max(free, next);
        isFirst = false;
    }
    return free;
}

// Options that end the process, what stands behind them unseen.
void XOption::ActOnCommand(const XOptionDefinition& definition) {
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
        InsertOptionItem(L"metadata", folder, -1);
    }
    if (!FileExists(folder)) {
        throw MissingFolder(Here(L"XOption::RetrieveMetadataFolder"), folder,
                            L"The folder with the metadata information does not exist!");
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
        if (data.IsEmpty()) return;
        if (!FileExists(data)) {
            throw MissingFolder(Here(method), data, L"The global output data folder does not exist!");
        }
        isDefault = path.IsEmpty();
        path = BuildFileName(data, isDefault ? defaultFolder : path);
        InsertOptionItem(optionName, path, -1);
    }
    if (FileExists(path)) return;
    if (!isDefault) throw MissingFolder(Here(method), path, L"The folder for <%s> does not exist!", optionName);
    if (!CreateDirectoryW(path)) {
        throw MissingFolder(Here(method), path, L"The folder for <%s> does not exist and can not be created!",
                            optionName);
    }
}

void XOption::OpenConfiguration() {
    WithReason(Here(L"XOption::OpenConfiguration"), OPENING, [this] {
        if (!m_pUserConfiguration) OpenUserConfiguration();
        if (!m_pBasicConfiguration) OpenBasicConfiguration();
    });
}

void XOption::OpenUserConfiguration() {
    constexpr auto method = L"XOption::OpenConfiguration";
    RetrieveOption(L"ini");
    CString file = GetOptionString(L"ini", -1);
    if (file.IsEmpty()) return;
    CFileStatus status;
    if (CFile::GetStatus(file, status)) {
        m_pUserConfiguration = std::make_unique<XConfiguration>(status.m_szFullName);
        return;
    }
    if (!IsAbsolutePath(file)) {
        const CString folder = GetOptionString(L"config", -1);
        if (!FileExists(folder)) {
            throw MissingFolder(Here(method), folder, L"The userspace configuration location does not exist!");
        }
        file = BuildFileName(folder, file);
    }
    if (!FileExists(file)) {
        throw MissingFile(Here(method), file, L"The specified user configuration file does not exist!");
    }
    m_pUserConfiguration = std::make_unique<XConfiguration>(file);
}

void XOption::OpenBasicConfiguration() {
    CString path = BuildFileName(GetOptionString(L"metadata", -1), GetOptionString(L"exe-name", -1));
    path.Replace(L".exe", L"");
    path += L".ini";
    path.MakeLower();
    if (!FileExists(path)) {
        throw MissingFile(Here(L"XOption::OpenConfiguration"), path, L"The basic configuration could not be found!");
    }
    m_pBasicConfiguration = std::make_unique<XConfiguration>(path);
}

void XOption::ReadConfiguration() {
    const SourceSnapshot snapshot;  // of all that follows no host sees when it is read
    WithReason(Here(L"XOption::ReadConfiguration"), READING, [this] {
        for (int i = 0; XOptionDefinition* const row = GetOptionDefinitionAt(i); ++i) {
            if (row->HasOptionNumber()) RetrieveOption(row);
        }
        MergeObsoleteClasses();
        ReadNamingRules(eOptionTableNameRules);
        ReadNamingRules(eOptionColumnNameRules);
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

void XOption::ReadNamingRules(enumOption option) {
    if (option != eOptionTableNameRules && option != eOptionColumnNameRules) return;
    const bool isTable = option == eOptionTableNameRules;
    XNamingRules& rules = isTable ? m_TableNameRules : m_ColumnNameRules;
    const XOptionDefinition* const definition = GetOptionDefinition(isTable ? L"tablename-rules" : L"columnname-rules");

    const CString format = RetrieveSectionName(definition->eSection);
    XMapInt2CString names;
    if (!GetOptionNameSet(names, format)) return;
    CString keys;
    for (int version = names.GetFirst(keys); version >= 0; version = names.GetNext(keys)) {
        const CString section = FormatIndex(format, version);
        CString key = GetArgument(0, keys);
        for (int i = 0; !key.IsEmpty(); key = GetArgument(++i, keys)) {
            CString value;
            if (GetKeyValue(value, section, key, /*assignEmpty*/ true)) rules.InsertRule(version, key, value);
        }
    }
}
