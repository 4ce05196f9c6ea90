#pragma once

#include <memory>

#include "support/arguments.h"
#include "support/environment.h"
#include "support/support.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/sources/winreg.h"

using namespace veltrane;
using namespace veltrane::detail;

/// A store below a folder of its own: metadata, configuration files, registry and the folder "data" for what is
/// written.
class OptionStoreTest : public testing::Test {
protected:
    OptionStoreTest() {
        std::filesystem::create_directories(m_Folder.Path() / ".metadata");
        std::filesystem::create_directories(m_Folder.Path() / "data");
        SetRegistryFile(m_Folder.Wide("registry.reg"));
        Basic("");
    }
    ~OptionStoreTest() override { SetRegistryFile({}); }

    void Basic(const std::string& text) { m_Folder.Write(".metadata/tool.ini", text); }
    /// Writes the user file; it is opened when the arguments hold "--ini" and UserFile().
    void User(const std::string& text) { m_Folder.Write("user.ini", text); }
    CString UserFile() const { return m_Folder.Wide("user.ini"); }
    void Registry(const std::string& section, const std::string& values) {
        m_Folder.Write("registry.reg", "REGEDIT4\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\VORNAK\\Tool\\" + section + "]\r\n" +
                                           values + "\r\n");
    }

    void Initialize(std::vector<CString> arguments = {}) {
        const ArgumentsGuard guard{std::move(arguments)};
        m_Store->Initialize(m_Folder.Wide(), L"Tool.exe", L"COMPILED", L"1.2", L"today");
    }
    void StartUp(std::vector<CString> arguments = {}) {
        Initialize(std::move(arguments));
        m_Store->OpenConfiguration();
        m_Store->ReadConfiguration();
    }
    /// The store as if no start-up had run yet.
    void Renew() { m_Store = std::make_unique<XOption>(); }

    CString Text(const wchar_t* name, int index = -1) { return m_Store->GetOptionString(name, index); }
    /// The texts of a multiple option in walk order.
    std::vector<CString> Texts(const wchar_t* name) {
        std::vector<CString> texts;
        for (auto* item = m_Store->GetFirstOptionItem(name); item; item = m_Store->GetNextOptionItem(name)) {
            texts.push_back(FormatText(L"%d=%s", item->GetOptionIndex(), item->GetOptionValue()));
        }
        return texts;
    }

    /// What every complete configuration holds.
    static constexpr char DATABASE[] = "[db]\ndictionary-name=d\nrole=r\nregistry=g\n";

    TempFolder m_Folder;
    std::unique_ptr<XOption> m_Store = std::make_unique<XOption>();
};
