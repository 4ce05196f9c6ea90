#pragma once

#include <unistd.h>

#include <cstdlib>
#include <string>

#include "veltrane/platform/text/encoding.h"

/// A file in the system's temporary folder, removed at the end.
class BenchFile {
public:
    explicit BenchFile(const std::string& bytes) {
        const int file = mkstemp(m_Name.data());
        if (file < 0 || ::write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
        ::close(file);
        m_Wide = veltrane::FromUtf8(m_Name);
    }
    BenchFile(const BenchFile&) = delete;
    BenchFile& operator=(const BenchFile&) = delete;
    ~BenchFile() { ::unlink(m_Name.c_str()); }

    const char* Name() const { return m_Name.c_str(); }
    const wchar_t* Wide() const { return m_Wide.GetString(); }

private:
    std::string m_Name = "/tmp/veltrane-bench-XXXXXX";
    CString m_Wide;
};
