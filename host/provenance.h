#pragma once

#include <map>
#include <set>
#include <vector>

#include "veltrane/options/xoption.h"
#include "veltrane/platform/sources/trace.h"

/// Where the value of an option item came from.
struct Origin {
    const wchar_t* layer = L"";  ///< "command line", "registry", "user file", ...
    CString file = {};           ///< empty where there is no file
    int line = 0;                ///< 0 where the answer has no line of its own
    CString section = {};
};

/// Watches the questions to the configuration sources while it lives, and tells from them where values came from.
class Provenance {
public:
    Provenance();
    Provenance(const Provenance&) = delete;
    Provenance& operator=(const Provenance&) = delete;
    ~Provenance();

    /// To be called behind each step of start-up: settles the origin of the items that the step brought.
    void Settle(XOption& options);

    /// The origin of an item of the store.
    const Origin& Of(const XOptionItem* item) const;

    /// The newest answer of a file that has one of the texts as its key, or as a reference or path in its value; null
    /// when there is none.
    const veltrane::SourceEvent* AnswerBehind(const std::vector<CString>& texts) const;

private:
    Origin Find(XOption& options, const XOptionItem& item);
    bool IsCompleted(XOption& options, const CString& name, const CString& given, const CString& value) const;
    const veltrane::SourceEvent* AnswerFor(XOption& options, const XOptionItem& item, const CString& name);
    const veltrane::SourceEvent* ClaimBare(const CString& value, const CString& name, const CString& section);

    veltrane::SourceTrace m_Before;
    std::vector<veltrane::SourceEvent> m_Answers;  // what was found, in the order of the questions
    std::size_t m_nStep = 0;                       // the first answer of this step
    std::set<std::size_t> m_Claimed;               // answers of keys without index that have an item
    CString m_BasicFile;
    std::map<CString, CString> m_Typed;  // by long name
    std::map<const XOptionItem*, Origin> m_Origins;
};
