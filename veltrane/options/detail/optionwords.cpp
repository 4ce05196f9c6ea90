#include <algorithm>
#include <cstddef>
#include <new>

#include "veltrane/platform/process/internal/loading.h"
#include "veltrane/platform/text/cstring.h"

// The memory of what xoptiondefinition.h declares as CString[]. All copies of the library in a process share it, so the
// first one creates the words. Never destroyed: objects of a host may still read them at the end.
alignas(CString) VELTRANE_API std::byte g_BooleanWords[2 * sizeof(CString)] asm("g_BooleanStrings");
alignas(CString) VELTRANE_API std::byte g_TrillianWords[3 * sizeof(CString)] asm("g_TrillianStrings");

namespace {

template <std::size_t Size, std::size_t Count>
void MakeOnce(std::byte (&words)[Size], const wchar_t* const (&texts)[Count]) {
    static_assert(Size == Count * sizeof(CString));
    if (std::ranges::any_of(words, [](std::byte byte) { return byte != std::byte{}; })) return;
    for (std::size_t i = 0; i < Count; ++i) new (words + i * sizeof(CString)) CString{texts[i]};
}

// Initialised before the objects of a host that is linked statically with the library.
[[gnu::constructor(101)]] void MakeWords() {
    veltrane::detail::WhileLoading([] {
        MakeOnce(g_BooleanWords, {L"false", L"true"});
        MakeOnce(g_TrillianWords, {L"false", L"true", L"auto"});
    });
}

}  // namespace
