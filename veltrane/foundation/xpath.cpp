#include "veltrane/foundation/xpath.h"

#include <algorithm>

#include "veltrane/platform/files/cfile.h"
#include "veltrane/platform/text/characters.h"

using namespace veltrane::detail;

namespace {

constexpr wchar_t DEFAULT_SEPARATOR = L'\\';

int LastSeparator(const CString& path) {
    return std::max(path.ReverseFind(L'\\'), path.ReverseFind(L'/'));
}

bool EndsInSeparator(const CString& path) {
    return IsPathSeparator(path[path.GetLength() - 1]);
}

CString WithoutLast(const CString& path) {
    return path.Left(path.GetLength() - 1);
}

}  // namespace

bool IsAbsolutePath(const CString& path) {
    return path.Find(L':') >= 0 || path[0] == L'/';
}

bool FileExists(const CString& path) {
    CFileStatus status;
    return CFile::GetStatus(path, status);
}

bool FileExists(const CString& path, const CString& name) {
    return FileExists(BuildFileName(path, name));
}

void SplitFileName(CString& folder, CString& name, CString fullName) {
    const int position = LastSeparator(fullName);
    folder = fullName.Left(position);
    name = fullName.Mid(position + 1);
}

CString BuildFileName(const CString& path, const CString& name) {
    if (name[1] == L':') return name;
    if (path.IsEmpty()) return name;
    if (EndsInSeparator(path) || IsPathSeparator(name[0])) return path + name;
    const int used = LastSeparator(path);
    return path + (used < 0 ? DEFAULT_SEPARATOR : path[used]) + name;
}

CString GetFileName(const CString& path) {
    const CString trimmed = EndsInSeparator(path) ? WithoutLast(path) : path;
    return trimmed.Mid(LastSeparator(trimmed) + 1);
}

CString GetFileNameBase(const CString& name) {
    const int dot = name.ReverseFind(L'.');
    return dot < 0 ? name : name.Left(dot);
}

CString GetFileNameExtension(const CString& name) {
    const int dot = name.ReverseFind(L'.');
    return dot < 0 ? name : name.Mid(dot);
}

CString GetPath(const CString& path) {
    return EndsInSeparator(path) ? WithoutLast(path) : path.Left(LastSeparator(path));
}
