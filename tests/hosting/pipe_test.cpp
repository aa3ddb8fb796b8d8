#include "hosting/pipe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <vector>

namespace mirelon::hosting {
namespace {

std::vector<int> openDescriptors() {
    std::vector<int> open;
    for (int descriptor = 0; descriptor < 256; ++descriptor)
        if (fcntl(descriptor, F_GETFD) >= 0)
            open.push_back(descriptor);
    return open;
}

TEST(Pipe, ClosesNothingButItsEndsAndEachOnce) {
    const int first = open("/dev/null", O_RDONLY); // 0, unless the program has an input
    for (const auto close : {&Pipe::closeReader, &Pipe::closeWriter}) {
        const auto before = openDescriptors();
        {
            Pipe pipe;
            (pipe.*close)();
            const int next = open("/dev/null", O_RDONLY); // has the number that is free now
            const auto open = openDescriptors();
            (pipe.*close)();
            EXPECT_EQ(openDescriptors(), open);
            ::close(next);
        }
        EXPECT_EQ(openDescriptors(), before);
    }
    close(first);
}

} // namespace
} // namespace mirelon::hosting
