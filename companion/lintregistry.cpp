// Checks of the registry.
#include <algorithm>
#include <utility>

#include "lint.h"
#include "nametext.h"
#include "veltrane/platform/sources/internal/snapshot.h"
#include "veltrane/platform/sources/winreg.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;
using Reason = SourceLine::Reason;
using enum LintCode;

struct {
    Reason reason;
    const wchar_t* text;
} constexpr REASONS[] = {
    {Reason::BadHeader, L"the file does not begin with the header of a registry export; nothing in it is read"},
    {Reason::MalformedKey, L"this key is malformed; the values below it are not read"},
    {Reason::MalformedValue, L"this value is malformed; the line is ignored"},
    {Reason::NoCurrentKey, L"this value does not belong to any key; the line is ignored"},
    {Reason::ReplacedLater, L"a later line sets the value again; this line is ignored"},
    {Reason::RemovedLater, L"a later line removes the value; this line is ignored"},
    {Reason::UnaskableName, L"a name that contains a NUL cannot be read"},
    {Reason::Other, L"this is neither a key nor a value; the line is ignored"},
};

constexpr const wchar_t* OTHER_ROOTS[] = {L"HKEY_CURRENT_USER", L"HKCU", L"HKEY_USERS",          L"HKU",
                                          L"HKEY_CLASSES_ROOT", L"HKCR", L"HKEY_CURRENT_CONFIG", L"HKCC"};

class RegistryLint {
public:
    RegistryLint(LintRun& run, const StartupSource& source) : m_Run(run), m_Source(source) {
        for (const SourceLine& line : source.view.lines) {
            if (line.kind == Kind::Section) m_Paths.insert(Folded(line.section));
        }
    }
    RegistryLint(const RegistryLint&) = delete;
    RegistryLint& operator=(const RegistryLint&) = delete;
    ~RegistryLint() { RegCloseKey(m_hKey); }

    void Walk() {
        for (const SourceLine& line : m_Source.view.lines) {
            if (line.kind == Kind::Section) m_IsLost = false;
            if (line.reason != Reason::None) {
                LintReason(line);
                if (line.reason == Reason::BadHeader) return;
            } else if (line.kind == Kind::Section) {
                LintKey(line);
            } else if (line.kind == Kind::Entry) {
                LintEntry(line);
            }
        }
        LintForeign();
    }

private:
    void Report(const SourceLine& line, const CString& text, const CString& suggestion = {}) {
        m_Run.Report(m_Source, line, {C15, text, suggestion});
    }

    // The values below an invalid key are reported with it.
    void LintReason(const SourceLine& line) {
        if (line.reason == Reason::OtherRoot) return LintRoot(line);
        const bool isOfLostKey = line.reason == Reason::NoCurrentKey && m_IsLost;
        const bool isOurs = line.section.IsEmpty() || m_Run.BelowTool(line.section);
        const auto* const row = std::ranges::find(REASONS, line.reason, [](const auto& known) { return known.reason; });
        if (isOurs && !isOfLostKey && row != std::end(REASONS)) Report(line, row->text);
        if (!isOurs && line.kind == Kind::Section) ++m_nForeign;
        if (line.reason == Reason::MalformedKey) m_IsLost = true;
    }

    // Other roots are not checked; one that no registry has, with a key of the tool, is a slip.
    void LintRoot(const SourceLine& line) {
        m_IsLost = true;
        const int end = std::max(line.section.Find(L'\\'), 0);
        const CString root = line.section.Left(end);
        const auto isRoot = [&](const wchar_t* known) { return root.CompareNoCase(known) == 0; };
        if (!m_Run.BelowTool(line.section.Mid(end + 1)) || std::ranges::any_of(OTHER_ROOTS, isRoot)) {
            ++m_nForeign;
        } else {
            Report(line, FormatText(L"'%s' is not a known root; the key is not read", root), L"HKEY_LOCAL_MACHINE");
        }
    }

    void LintKey(const SourceLine& line) {
        const std::optional<CString> below = m_Run.BelowTool(line.section);
        if (m_Run.FindRegistryKey(line.section) || IsParent(line.section)) return;
        const CString nearest = NearestRow(line.section, m_Run.RegistryKeys(), &RegistryKey::path);
        const bool isInFile = m_Paths.contains(Folded(nearest));  // then it is not a suggestion
        if (!below && (nearest.IsEmpty() || isInFile || IsNeighbour(line.section, nearest))) {
            ++m_nForeign;
        } else if (!below) {
            Report(line, FormatText(L"[%s] is not a key of this tool", line.section), Bracketed(nearest));
        } else if (m_Run.IsOtherDatabase(*below)) {
            LintDatabase(line, *below);
        } else if (m_Run.FindSection(*below).index || !m_Run.DatabaseOfFamily(*below).IsEmpty()) {
            Report(line, L"sections with an index are not read from the registry");
        } else {
            Report(line, FormatText(L"nothing is read from the key [%s]", line.section), Bracketed(nearest));
        }
    }

    void LintDatabase(const SourceLine& line, const CString& database) {
        if (!m_Run.IsNearOwnDatabase(m_Source, database)) return;
        const auto own = std::ranges::find(m_Run.RegistryKeys(), eSectionDatabase, &RegistryKey::section);
        m_Run.Report(
            m_Source, line,
            Note(C15, FormatText(L"[%s] is taken as the key of another database", line.section), Bracketed(own->path)));
    }

    bool IsParent(const CString& path) const {
        return std::ranges::any_of(m_Run.RegistryKeys(), [below = path + L"\\"](const RegistryKey& key) {
            return key.path.Left(below.GetLength()).CompareNoCase(below) == 0;
        });
    }

    void LintEntry(const SourceLine& line) {
        const RegistryKey* const key = m_Run.FindRegistryKey(line.section);
        const CString below = m_Run.BelowTool(line.section).value_or(CString{});
        if (!key && !m_Run.IsOtherDatabase(below)) return;
        const SectionUse section{.section = key ? key->section : eSectionDatabase};
        const XOptionDefinition* const row = m_Run.FindKey(section, line.key).row;
        if (row && row->IsSingle()) {
            LintValue(line, *row, /*isOwn*/ key != nullptr);
        } else if (row) {
            Report(line,
                   FormatText(L"'%s' is an option with several values; it is not read from the registry", line.key));
        } else if (line.key.IsEmpty()) {
            if (!line.value.IsEmpty()) Report(line, L"the default value of a key is not read");
        } else if (!m_Run.IsReferredTo(below, line.key)) {
            Report(line, FormatText(L"'%s' is not a known value of this key", line.key),
                   m_Run.NearestKey(section, line.key));
        }
    }

    void LintValue(const SourceLine& line, const XOptionDefinition& row, bool isOwn) {
        if (!IsText(line)) return LintBytes(line);
        const std::vector<Finding> faults = CheckText(line.key, line.value, row);
        for (const Finding& fault : faults) m_Run.Report(m_Source, line, fault);
        const auto sign = CheckPercent(line.value);
        if (sign && faults.empty()) m_Run.Report(m_Source, line, *sign);
        if (isOwn && line.value.IsEmpty()) LintEmpty(line, row);
    }

    void LintBytes(const SourceLine& line) {
        m_Run.Report(m_Source, line,
                     {.code = C15,
                      .text = FormatText(L"'%s' is not a text; its bytes are read as text", line.key),
                      .part = LinePart::Value});
    }

    // The store tells which sources the empty value hides.
    void LintEmpty(const SourceLine& line, const XOptionDefinition& row) {
        for (const OptionPlace& place : m_Run.startup.options.GetOptionCandidates(row.szLongName, -1).places) {
            if (!place.found || !IsFile(place.layer)) continue;
            m_Run.Report(m_Source, line,
                         {C20, FormatText(L"this empty value hides the value at %s", ShortPlace(place))});
            return;
        }
    }

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

    void LintForeign() {
        if (m_nForeign == 0) return;
        const CString text = FormatText(L"keys of other programs and roots are not checked (%d)", m_nForeign);
        m_Run.Report(m_Source, SourceLine{}, Note(C15, text));
    }

    LintRun& m_Run;
    const StartupSource& m_Source;
    std::set<CString> m_Paths;  // of the keys in the file, folded
    int m_nForeign = 0;
    bool m_IsLost = false;  // the values that follow belong to an invalid key
    CString m_Opened;
    HKEY m_hKey = nullptr;
};

}  // namespace

void LintRegistry(LintRun& run) {
    const SourceSnapshot snapshot;  // the file is read once for all keys
    for (const StartupSource& source : run.sources) {
        if (source.layer == OptionLayer::Registry) RegistryLint{run, source}.Walk();
    }
}

}  // namespace veltrane::config
