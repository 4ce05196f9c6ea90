#include "failingmemory.h"

#include <cstdlib>
#include <new>

namespace {

std::int64_t g_Left = 0;  // allocations until the failing one; 0: none fails
bool g_FromThereOn = false;
bool g_HasFailed = false;

bool Fails() noexcept {
    if (g_Left == 0 || --g_Left > 0) return false;
    g_HasFailed = true;
    if (g_FromThereOn) g_Left = 1;
    return true;
}

void* Allocate(std::size_t size) noexcept {
    return Fails() ? nullptr : std::malloc(size != 0 ? size : 1);
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

void* operator new(std::size_t size) {
    if (void* const memory = Allocate(size)) return memory;
    throw std::bad_alloc{};
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
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
