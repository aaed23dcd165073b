#include "WindowDriver.h"

#include <gtest/gtest-spi.h>

using namespace rivenfall;

namespace {

/// What a slip of the pen in a test comes to.
class HarnessTest : public WindowTest {};

TEST_F(HarnessTest, AWordThatCantBeDoneFailsAndEndsTheScript) {
    Open("a(p(v)),b", "X", "branch:1");
    for (const char* word :
         {"Nothing", "click",     "click:x",   "click:0",   "click:5", "click:2",
          "mark:-1", "branch:4",  "branch:9",  "tab:0",     "tab:3",   "tab:x",
          "type:",   "Ok:",       "New:Nokey", "Value:A,B", "file:Z",  "file:Sve",
          "file:",   "edit:Copy", "yes:1",     "pick",      ":",       ":Enter"}) {
        SCOPED_TRACE(word);
        EXPECT_NONFATAL_FAILURE(Act(QLatin1StringView(word) + u" New"_s), "can't do");
    }
    Expect({.Tree = "*a[p(v)],b", .Enabled = "New Remove Move Value", .Box = "a"});
    EXPECT_NONFATAL_FAILURE(Act("file:Exit New"), "can't do \"New\"");
}

TEST_F(HarnessTest, AMalformedOutlineFails) {
    for (const char* outline :
         {"a(b", "a(b(c)", "a)b", "a(b))", "a(b)c", "a,,b", "a,", ",a", "a()", "!", "a(,b)"}) {
        SCOPED_TRACE(outline);
        EXPECT_NONFATAL_FAILURE(Sketches(outline), "utline");
    }
    EXPECT_NONFATAL_FAILURE(Open("a(p(v(w)))"), "nothing can be below v");
    EXPECT_NONFATAL_FAILURE(Open("a", "X(1(2))"), "nothing can be below 1");
}

TEST_F(HarnessTest, ACaseThatDoesntHoldFails) {
    const Case holds = {.Tree = "*a,b", .Enabled = "New Remove Move Value", .Box = "a"};
    std::vector<Case> others(5, holds);
    others[0].Tree = std::string("a,*b");
    others[1].Enabled = std::string("New Value");
    others[2].Box = std::string("b");
    others[3].Changed = true;
    others[4].Acts = {"pick:a"};
    for (const Case& each : others) {
        Open("a,b");
        Expect(holds);
        EXPECT_NONFATAL_FAILURE(Expect(each), "");
    }
    EXPECT_NONFATAL_FAILURE(ExpectEach([] {}, {holds}), "tells nothing to do");
}

} // namespace
