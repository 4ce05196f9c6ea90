#include "veltrane/collections/xmap.h"

#include <memory>

#include "veltrane/collections/sharedempty.h"
#include "veltrane/foundation/xraise.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

// The key of an entry; -1 with an empty value without one.
template <class Value>
int Read(const std::pair<const int, Value>* entry, Value& out) {
    out = entry ? entry->second : Value{};
    return entry ? entry->first : -1;
}

}  // namespace

XMapInt2CString::~XMapInt2CString() = default;

void XMapInt2CString::Insert(int key, const CString& text) {
    if (Get(key) != text) m_Map.Set(key, text);
}

int XMapInt2CString::Find(const CString& text) const {
    for (const auto& [key, value] : m_Map.All()) {
        if (value == text) return key;
    }
    return -1;
}

const CString& XMapInt2CString::Get(int key) const {
    static const XLasting<CString> tEmpty;
    const CString* text = m_Map.Get(key);
    return text ? *text : tEmpty.value;
}

int XMapInt2CString::GetFirst(CString& out) {
    return Read(m_Map.First(), out);
}

int XMapInt2CString::GetNext(CString& out) {
    return Read(m_Map.Next(), out);
}

int XMapInt2CString::GetMaxKey() {
    int max = -1;
    for (const auto* entry = m_Map.First(); entry && entry->first >= 0; entry = m_Map.Next()) max = entry->first;
    return max;
}

XMapInt2SetOfInt::~XMapInt2SetOfInt() {
    for (const auto& [key, set] : m_Map) delete set;
}

XSetInt* XMapInt2SetOfInt::Find(int key) const {
    const auto found = m_Map.find(key);
    return found == m_Map.end() ? nullptr : found->second;
}

void XMapInt2SetOfInt::Insert(int key, XSetInt* set) {
    if (set) m_Map.insert_or_assign(key, set);
}

void XMapInt2SetOfInt::Insert(int key, const CString& list) {
    if (Find(key)) {
        throw MakeError(XSource{L".\\xsetint"}(L"XMapInt2SetOfInt::Insert"),
                        L"There are already classes defined as 'obsolete' in database '%d'", key);
    }
    auto set = std::make_unique<XSetInt>();
    set->BuildSet(list);
    if (set->IsEmpty()) return;
    m_Map.emplace(key, set.get());
    static_cast<void>(set.release());
}

XMapInt2IntTupel::~XMapInt2IntTupel() = default;

void XMapInt2IntTupel::Insert(int key, int first, int second) {
    const IntTupel* const held = m_Map.Get(key);
    if (!held || (held->nFirst == 0 && held->nSecond == 0)) m_Map.Set(key, {first, second});
}

int XMapInt2IntTupel::GetFirst(IntTupel& out) {
    return Read(m_Map.First(), out);
}

int XMapInt2IntTupel::GetNext(IntTupel& out) {
    return Read(m_Map.Next(), out);
}
