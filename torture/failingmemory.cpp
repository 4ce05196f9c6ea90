#include "failingmemory.h"

#include <cstdio>
#include <cstdlib>
#include <new>

namespace {

std::int64_t g_Left = 0;  // allocations until the failing one; 0: none fails
bool g_FromThereOn = false;
bool g_HasFailed = false;
std::int64_t g_Count = 0;

// For a program that preloads this. Counts from the first allocation on: libraries create their objects before any
// function of this file could be called.
void ReadEnvironment() noexcept {
    const char* const number = std::getenv("TORTURE_FAIL_AT");
    if (number) torture::FailAt(std::atoll(number), std::getenv("TORTURE_FROM_THERE_ON") != nullptr);
}

bool Fails() noexcept {
    if (g_Count++ == 0) ReadEnvironment();
    if (g_Left == 0 || --g_Left > 0) return false;
    g_HasFailed = true;
    if (g_FromThereOn) g_Left = 1;
    return true;
}

void* Allocate(std::size_t size) noexcept {
    return Fails() ? nullptr : std::malloc(size != 0 ? size : 1);
}

[[gnu::destructor]] void WriteCount() noexcept {
    const char* const name = std::getenv("TORTURE_COUNT_FILE");
    std::FILE* const file = name ? std::fopen(name, "w") : nullptr;
    if (!file) return;
    std::fprintf(file, "%lld\n", static_cast<long long>(g_Count));
    std::fclose(file);
}

}  // namespace

void torture::FailAt(std::int64_t number, bool fromThereOn) noexcept {
    g_HasFailed = false;
    g_FromThereOn = fromThereOn;
    g_Left = number;
}

bool torture::EndFailing() noexcept {
    g_Left = 0;
    return g_HasFailed;
}

// As the standard requires: a program may install a handler that ends it.
void* operator new(std::size_t size) {
    for (;;) {
        if (void* const memory = Allocate(size)) return memory;
        const std::new_handler handler = std::get_new_handler();
        if (!handler) throw std::bad_alloc{};
        handler();
    }
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept try {
    return operator new(size);
} catch (const std::bad_alloc&) {
    return nullptr;
}
void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
    return operator new(size, nothrow);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
