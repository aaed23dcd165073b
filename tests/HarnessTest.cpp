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
    const auto open = [this] { Open("a,b"); };
    const Case holds = {.Acts = {"mark:2"},
                        .Tree = "*a,!b",
                        .Enabled = "New Remove Move Value",
                        .Box = "a",
                        .Changed = true};
    ExpectEach(open, {holds});
    std::vector<Case> others(6, holds);
    others[0].Acts = {};
    others[1].Tree = "a,*!b";
    others[2].Enabled = "New Value";
    others[3].Box = "b";
    others[4].Changed = false;
    others[5].Acts = {"mark:2 pick:a"};
    for (const Case& each : others) {
        EXPECT_NONFATAL_FAILURE(ExpectEach(open, {each}), "");
    }
}

} // namespace
