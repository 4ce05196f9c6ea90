#pragma once

#include <array>
#include <streambuf>

namespace veltrane::config {

/// A file that is read as it comes, such as a pipe: in_avail() tells whether a byte can be read without waiting.
class FileInput : public std::streambuf {
public:
    static constexpr int STANDARD_INPUT = 0;

    /// @param file  descriptor, which stays open
    explicit FileInput(int file) : m_File(file) {}

protected:
    int_type underflow() override;
    std::streamsize showmanyc() override;

private:
    int m_File;
    std::array<char, 65'536> m_Bytes;  // what a pipe holds
};

}  // namespace veltrane::config
