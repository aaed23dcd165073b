#include "Harness.h"

#include <cstdlib>

using namespace rivenfall;

namespace {

/// What Qt does where the screen goes away, from inside its reader of events.
TEST(EndTest, AnExitFromInsideTheEventLoopIsClean) {
    const auto loseTheScreen = [] {
        SetGlobalApplication(std::make_shared<Application>());
        GlobalApplication()->FileNew();
        std::exit(0);
    };
    EXPECT_EXIT(loseTheScreen(), testing::ExitedWithCode(EXIT_FAILURE), "");
}

} // namespace
