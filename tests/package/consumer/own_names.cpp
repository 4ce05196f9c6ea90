// A host that has names, folders and a client header of its own; the library's headers follow the client's.
#include <client/oci.h>
#include <cstring>

#include "platform/text/cstring.h"
#include "veltrane/collections/XSet.h"
#include "veltrane/collections/xmap.h"
#include "veltrane/foundation/xoci.h"
#include "veltrane/logging/xlogging.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/process/oci.h"
#include "veltrane/platform/text/encoding.h"
#include "veltrane/platform/text/format.h"

class XCommand {};
class XFlag {};
class XSetting {};
class XRule {};
struct Literal {};
struct TypeName {};
namespace detail {
struct Guarded {};
}  // namespace detail
CString Nearest(const CString&, const std::vector<CString>&) {
    return L"own";
}
std::string Replaced(std::string, std::string_view, std::string_view) {
    return "own";
}
std::string Troff(std::string_view) {
    return "own";
}
bool IsAscii(const HostText& text) {
    return text.text[0] > 0;
}
template <class... Parts>
int MakeError(const Parts&... parts) {
    return static_cast<int>(sizeof...(parts));
}

sword OCIErrorGet(void*, ub4, OraText*, sb4* errcodep, OraText* bufp, ub4, ub4 type) {
    *errcodep = type == OCI_HTYPE_ERROR ? 942 : OCI_ERROR;
    std::strcpy(reinterpret_cast<char*>(bufp), "of the client");
    return 0;
}

std::string TextOfTheClient() {
    const XCommand command;
    const XFlag flag;
    const XSetting setting;
    const XRule rule;
    const detail::Guarded guarded;
    if (MakeError(command, flag, setting, rule, guarded, Literal{}, TypeName{}) != 7 || !IsAscii({"a"})) return {};

    veltrane::SetOCIErrorGet(&::OCIErrorGet);
    int handle = 0;
    const veltrane::OCIErrorText error = veltrane::ReadOCIError(&handle);
    veltrane::SetOCIErrorGet(nullptr);
    return std::to_string(error.number) + ' ' + veltrane::ToUtf8(error.text);
}
