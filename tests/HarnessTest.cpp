#include "WindowDriver.h"

#include <gtest/gtest-spi.h>

using namespace rivenfall;

namespace {

/// What a slip of the pen in a test comes to.
class HarnessTest : public WindowTest {};

TEST_F(HarnessTest, AMalformedOutlineFails) {
    for (const char* outline :
         {"a(b", "a(b(c)", "a)b", "a(b))", "a(b)c", "a,,b", "a,", ",a", "a()", "!", "a(,b)"}) {
        SCOPED_TRACE(outline);
        EXPECT_NONFATAL_FAILURE(Sketches(outline), "utline");
    }
    EXPECT_NONFATAL_FAILURE(Open("a(p(v(w)))"), "nothing can be below v");
    EXPECT_NONFATAL_FAILURE(Open("a", "X(1(2))"), "nothing can be below 1");
}

} // namespace
