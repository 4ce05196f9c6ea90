#include "lspinput.h"

#include <poll.h>
#include <unistd.h>

#include "veltrane/platform/files/internal/nativefile.h"

namespace veltrane::config {

FileInput::int_type FileInput::underflow() {
    const ssize_t count = detail::Retried([&] { return read(m_File, m_Bytes.data(), m_Bytes.size()); });
    if (count <= 0) return traits_type::eof();
    setg(m_Bytes.data(), m_Bytes.data(), m_Bytes.data() + count);
    return traits_type::to_int_type(m_Bytes[0]);
}

std::streamsize FileInput::showmanyc() {
    pollfd asked{m_File, POLLIN, 0};
    return poll(&asked, 1, 0) > 0 && (asked.revents & POLLIN) != 0 ? 1 : 0;
}

}  // namespace veltrane::config
