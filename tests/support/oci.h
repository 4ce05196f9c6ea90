#pragma once

#include <algorithm>
#include <cstring>
#include <string>

#include "veltrane/platform/process/oci.h"

using namespace veltrane;
using namespace veltrane::detail;

/// What the stand-in was asked.
struct ClientQuestion {
    int count = 0;
    void* handle = nullptr;
    std::uint32_t record = 0;
    unsigned char* sqlState = nullptr;
    std::int32_t codeBefore = -1;
    bool isBufferZero = false;
    std::uint32_t bufferSize = 0;
    std::uint32_t handleType = 0;
};

struct ClientAnswer {
    std::int32_t status = 0;
    std::int32_t number = 0;
    std::string text;
};

/// Stands in for the database client's error function while it lives, and keeps what it was asked.
class ClientGuard {
public:
    ClientGuard(std::int32_t status, std::int32_t number, const std::string& text) {
        s_Answer = {status, number, text};
        s_Asked = {};
        SetOCIErrorGet(ErrorGet);
    }
    ClientGuard(const ClientGuard&) = delete;
    ClientGuard& operator=(const ClientGuard&) = delete;
    ~ClientGuard() { SetOCIErrorGet(nullptr); }

    const ClientQuestion& Asked() const { return s_Asked; }

private:
    static std::int32_t ErrorGet(void* handle, std::uint32_t record, unsigned char* sqlState, std::int32_t* errorCode,
                                 unsigned char* buffer, std::uint32_t bufferSize, std::uint32_t handleType) {
        const bool isZero = std::all_of(buffer, buffer + bufferSize, [](unsigned char byte) { return byte == 0; });
        s_Asked = {s_Asked.count + 1, handle, record, sqlState, *errorCode, isZero, bufferSize, handleType};
        *errorCode = s_Answer.number;
        std::memcpy(buffer, s_Answer.text.data(), std::min<std::size_t>(s_Answer.text.size(), bufferSize));
        return s_Answer.status;
    }

    static inline ClientAnswer s_Answer;
    static inline ClientQuestion s_Asked;
};
