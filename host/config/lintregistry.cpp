// Checks of the registry.
#include <algorithm>
#include <utility>

#include "lint.h"
#include "nearest.h"
#include "veltrane/platform/sources/winreg.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;
using Reason = SourceLine::Reason;

struct {
    Reason reason;
    const wchar_t* text;
} constexpr REASONS[] = {
    {Reason::BadHeader, L"the file begins with no header of an export: nothing of it is read"},
    {Reason::MalformedKey, L"this is no key: the values below it are never read"},
    {Reason::OtherRoot, L"a key of another root: it is never read"},
    {Reason::MalformedValue, L"this is no value and is passed over"},
    {Reason::NoCurrentKey, L"a value that belongs to no key is never read"},
    {Reason::ReplacedLater, L"a later line gives the value anew: this one is never read"},
    {Reason::RemovedLater, L"a later line deletes it: it is never read"},
    {Reason::UnaskableName, L"nobody can ask for a name that holds a NUL"},
    {Reason::Other, L"the line is passed over"},
};

CString Folded(CString text) {
    return text.MakeLower();
}

class RegistryLint {
public:
    RegistryLint(LintRun& run, const LintSource& source) : m_Run(run), m_Source(source) {
        AddKeys();
        for (const SourceLine& line : source.view.lines) {
            const bool isOfDatabase =
                line.kind == Kind::Entry && run.UseOf({.section = eSectionDatabase}, line.key).row != nullptr;
            if (isOfDatabase && IsBelowRoot(line.section)) m_Databases.insert(Folded(line.section));
        }
    }
    RegistryLint(const RegistryLint&) = delete;
    RegistryLint& operator=(const RegistryLint&) = delete;
    ~RegistryLint() { RegCloseKey(m_hKey); }

    void Walk() {
        for (const SourceLine& line : m_Source.view.lines) {
            if (line.reason != Reason::None) {
                LintReason(line);
                if (line.reason == Reason::BadHeader) return;
            } else if (line.kind == Kind::Section) {
                LintKey(line);
            } else if (line.kind == Kind::Entry) {
                LintEntry(line);
            }
        }
    }

private:
    struct Key {
        CString path;  // folded
        enumCfgSection section;
    };

    // The store tells in which keys it looks.
    void AddKeys() {
        for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
            const auto isKnown = [&](const Key& key) { return key.section == row->eSection; };
            if (row->eOption == eOptionTitle || !row->IsSingle() || std::ranges::any_of(m_Keys, isKnown)) continue;
            for (const OptionPlace& place : m_Run.startup.options.GetOptionCandidates(row->szLongName, -1).places) {
                if (place.layer != OptionLayer::Registry) continue;
                m_Keys.push_back({Folded(place.section), row->eSection});
                m_Paths.push_back(place.section);
                const int below = m_Run.startup.options.GetSectionName(row->eSection).GetLength() + 1;
                m_Root = Folded(place.section.Left(place.section.GetLength() - below));
            }
        }
    }

    const Key* KeyOf(const CString& path) const {
        const auto found = std::ranges::find(m_Keys, Folded(path), &Key::path);
        return found == m_Keys.end() ? nullptr : &*found;
    }
    bool IsBelowRoot(const CString& path) const { return Folded(path).Left(m_Root.GetLength() + 1) == m_Root + L"\\"; }

    void Warn(const SourceLine& line, const CString& text, const CString& suggestion = {}) {
        m_Run.Report(m_Source, line, {"C15", Severity::Warning, text, suggestion});
    }

    void LintReason(const SourceLine& line) {
        const bool isOurs = line.section.IsEmpty() || IsBelowRoot(line.section);
        const auto* const row = std::ranges::find(REASONS, line.reason, [](const auto& known) { return known.reason; });
        if (isOurs && row != std::end(REASONS)) Warn(line, row->text);
    }

    // Keys of other programs are none of ours, unless one looks like a slip.
    void LintKey(const SourceLine& line) {
        if (KeyOf(line.section) || IsParent(line.section)) return;
        if (m_Databases.contains(Folded(line.section))) return LintDatabase(line);
        const CString nearest = Nearest(line.section, m_Paths);
        if (IsBelowRoot(line.section)) {
            Warn(line, L"nothing is looked for in the key [" + line.section + L"]", Bracketed(nearest));
        } else if (!nearest.IsEmpty()) {
            Warn(line, L"[" + line.section + L"] is no key of this tool", Bracketed(nearest));
        }
    }

    static CString Bracketed(const CString& path) { return path.IsEmpty() ? path : L"[" + path + L"]"; }
    bool IsParent(const CString& path) const {
        return std::ranges::any_of(m_Keys, [folded = Folded(path) + L"\\"](const Key& key) {
            return key.path.Left(folded.GetLength()) == folded;
        });
    }

    void LintDatabase(const SourceLine& line) {
        const auto own = std::ranges::find(m_Keys, eSectionDatabase, &Key::section);
        if (own == m_Keys.end()) return;
        const CString& path = m_Paths[static_cast<std::size_t>(own - m_Keys.begin())];
        if (!m_Run.IsNearDatabase(m_Source, line.section, path)) return;
        const CString text = L"[" + line.section + L"] counts as the key of another database";
        m_Run.Report(m_Source, line, {"C15", Severity::Note, text, Bracketed(path)});
    }

    void LintEntry(const SourceLine& line) {
        const Key* const key = KeyOf(line.section);
        if (!key) return;
        const SectionUse section{.section = key->section};
        const XOptionDefinition* const row = m_Run.UseOf(section, line.key).row;
        if (row && row->IsSingle()) {
            if (IsText(line)) return LintText(m_Run, m_Source, line, *row);
            Warn(line, L"'" + line.key + L"' is no text: its bytes are read as one");
        } else if (row) {
            Warn(line, L"'" + line.key + L"' has several values, which are never looked for in the registry");
        } else if (!m_Run.IsReferredTo(line.key)) {
            Warn(line, L"'" + line.key + L"' is not asked for in this key", m_Run.NearestKey(section, line.key));
        }
    }

    // A key is opened once for all its values: each opening reads the file.
    bool IsText(const SourceLine& line) {
        if (line.section != m_Opened) {
            RegCloseKey(std::exchange(m_hKey, nullptr));
            RegOpenKeyExW(HKEY_LOCAL_MACHINE, line.section.GetString(), 0, KEY_READ, &m_hKey);
            m_Opened = line.section;
        }
        std::uint32_t type = REG_SZ;
        RegQueryValueExW(m_hKey, line.key.GetString(), nullptr, &type, nullptr, nullptr);
        return type == REG_SZ || type == REG_EXPAND_SZ;
    }

    LintRun& m_Run;
    const LintSource& m_Source;
    std::vector<Key> m_Keys;
    std::vector<CString> m_Paths;  // as the store spells them
    CString m_Root;
    std::set<CString> m_Databases;  // folded
    CString m_Opened;
    HKEY m_hKey = nullptr;
};

}  // namespace

void LintRegistry(LintRun& run) {
    for (const LintSource& source : run.sources) {
        if (source.layer == OptionLayer::Registry) RegistryLint{run, source}.Walk();
    }
}

}  // namespace veltrane::config
