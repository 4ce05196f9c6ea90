#pragma once

#include "support/arguments.h"
#include "support/support.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/sources/winreg.h"

/// A store below a folder of its own: metadata, configuration, registry and the folder "data" for what is written.
class OptionStoreTest : public testing::Test {
protected:
    OptionStoreTest() {
        std::filesystem::create_directories(m_Folder.Path() / "data");
        SetRegistryFile(m_Folder.Wide("registry.reg"));
        Basic("");
    }
    ~OptionStoreTest() override { SetRegistryFile({}); }

    void Basic(const std::string& text) { m_Folder.Write(".metadata/tool.ini", text); }
    /// Writes a basic file that begins with what every complete configuration needs.
    void Complete(const std::string& more) { Basic(DATABASE + more); }
    /// Writes the user file; it is opened if the arguments contain "--ini" and UserFile().
    void User(const std::string& text) { m_Folder.Write("user.ini", text); }
    CString UserFile() const { return m_Folder.Wide("user.ini"); }
    CString DataFolder() const { return m_Folder.Wide("data"); }
    void Registry(const std::string& section, const std::string& values) {
        m_Folder.Write("registry.reg", "REGEDIT4\n[HKLM\\SOFTWARE\\VORNAK\\Tool\\" + section + "]\n" + values + "\n");
    }

    void Renew() {
        m_Store = std::make_unique<XOption>();
        m_Store->KeepOrigins(m_bKeepsOrigins);
    }
    void Initialize(std::vector<CString> arguments) {
        const ArgumentsGuard guard{std::move(arguments)};
        m_Store->Initialize(m_Folder.Wide(), L"Tool.exe", L"COMPILED", L"1.2", L"today");
    }
    void Open(std::vector<CString> arguments) {
        Renew();
        Initialize(std::move(arguments));
        m_Store->OpenConfiguration();
    }
    void Start(std::vector<CString> arguments) {
        Open(std::move(arguments));
        m_Store->ReadConfiguration();
    }
    CString Retrieved(const wchar_t* name) {
        m_Store->RetrieveOption(name);
        return Text(name);
    }

    CString Text(const wchar_t* name, int index = -1) { return m_Store->GetOptionString(name, index); }
    /// The texts of a multiple option in walk order: "1=a 2=b "
    CString Texts(const wchar_t* name) {
        CString texts;
        for (auto* item = m_Store->GetFirstOptionItem(name); item; item = m_Store->GetNextOptionItem(name)) {
            texts += FormatText(L"%d=%s ", item->GetOptionIndex(), item->GetOptionValue());
        }
        return texts;
    }

    static constexpr char DATABASE[] = "[db]\ndictionary-name=d\nrole=r\nregistry=g\n";

    TempFolder m_Folder;
    bool m_bKeepsOrigins = false;
    std::unique_ptr<XOption> m_Store = std::make_unique<XOption>();
};
