#pragma once

#include <algorithm>
#include <cstring>
#include <tuple>
#include <vector>

#include "support/environment.h"
#include "veltrane/platform/process/oci.h"

struct ClientAnswer {
    std::int32_t status = 0;
    std::int32_t number = 0;
    std::string text;
};
/// Handle, record, state, number before, whether the buffer was zero, its size, type of the handle.
using ClientQuestion =
    std::tuple<void*, std::uint32_t, unsigned char*, std::int32_t, bool, std::uint32_t, std::uint32_t>;

/// Replaces the database client's error function while it lives, and records its calls.
class ClientGuard : Guard {
public:
    explicit ClientGuard(ClientAnswer answer) {
        s_Answer = std::move(answer);
        s_Asked.clear();
        SetOCIErrorGet([](void* handle, std::uint32_t record, unsigned char* sqlState, std::int32_t* errorCode,
                          unsigned char* buffer, std::uint32_t bufferSize, std::uint32_t handleType) {
            const bool isZero = std::all_of(buffer, buffer + bufferSize, [](unsigned char byte) { return byte == 0; });
            s_Asked.emplace_back(handle, record, sqlState, *errorCode, isZero, bufferSize, handleType);
            *errorCode = s_Answer.number;
            std::memcpy(buffer, s_Answer.text.data(), std::min<std::size_t>(s_Answer.text.size(), bufferSize));
            return s_Answer.status;
        });
    }
    ~ClientGuard() { SetOCIErrorGet(nullptr); }

    const std::vector<ClientQuestion>& Asked() const { return s_Asked; }

private:
    static inline ClientAnswer s_Answer;
    static inline std::vector<ClientQuestion> s_Asked;
};
