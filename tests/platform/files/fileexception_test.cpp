#include <gtest/gtest.h>

#include <cerrno>
#include <climits>

#include "veltrane/platform/files/cfile.h"

namespace {

TEST(CFileException, MapsTheSystemsNumbersToCauses) {
    const std::pair<int, std::vector<long>> cases[] = {
        {0, {0}},
        {1, {EINVAL, ENXIO, EFBIG, EEXIST, -1, -ENOENT, LONG_MAX, LONG_MIN, 0x100000000L + ENOENT}},
        {2, {ENOENT}},
        {3, {ENOTDIR, ENAMETOOLONG, ELOOP}},
        {4, {EMFILE, ENFILE}},
        {5, {EACCES, EPERM, EROFS, EISDIR}},
        {6, {EBADF}},
        {8, {EMLINK}},
        {9, {ESPIPE}},
        {10, {EIO}},
        {11, {EAGAIN, EWOULDBLOCK, EBUSY, ETXTBSY}},
        {12, {ENOLCK, EDEADLK}},
        {13, {ENOSPC, EDQUOT}},
    };
    for (const auto& [cause, numbers] : cases) {
        for (const long number : numbers) EXPECT_EQ(CFileException::OsErrorToException(number), cause) << number;
    }
}

}  // namespace
