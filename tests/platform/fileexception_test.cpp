#include <gtest/gtest.h>

#include <cerrno>
#include <climits>

#include "platform/cfile.h"

namespace {

TEST(CFileException, MapsTheSystemsNumbersToCauses) {
    struct {
        long number;
        int cause;
    } const cases[] = {
        {0, 0},
        {ENOENT, 2},
        {ENOTDIR, 3},
        {ENAMETOOLONG, 3},
        {ELOOP, 3},
        {EMFILE, 4},
        {ENFILE, 4},
        {EACCES, 5},
        {EPERM, 5},
        {EROFS, 5},
        {EISDIR, 5},
        {EBADF, 6},
        {EMLINK, 8},
        {ESPIPE, 9},
        {EIO, 10},
        {EAGAIN, 11},
        {EWOULDBLOCK, 11},
        {EBUSY, 11},
        {ETXTBSY, 11},
        {ENOLCK, 12},
        {EDEADLK, 12},
        {ENOSPC, 13},
        {EDQUOT, 13},
        {EINVAL, 1},
        {ENXIO, 1},
        {EFBIG, 1},
        {EEXIST, 1},
        {-1, 1},
        {-ENOENT, 1},
        {LONG_MAX, 1},
        {LONG_MIN, 1},
        {0x100000000L + ENOENT, 1},
    };
    for (const auto& [number, cause] : cases) EXPECT_EQ(CFileException::OsErrorToException(number), cause) << number;
}

}  // namespace
