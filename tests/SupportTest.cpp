#include "CoreHarness.h"

#include "support/SupportLibrary.h"

using namespace rivenfall;

namespace {

TEST(SupportTest, AListIsOneCommandLine) {
    StringList items;
    EXPECT_EQ(items.Text().toStdString(), "");
    for (const char* item : {"cd", "C:\\work", "", "a b", "say \"hi\""}) {
        items.Add(QLatin1StringView(item), true);
    }
    EXPECT_EQ(items.Item(1).toStdString(), "cd");
    EXPECT_EQ(items.Text().toStdString(), R"(cd C:\work "" "a b" "say \"hi\"")");
    items.Remove(1);
    EXPECT_EQ(items.Item(1).toStdString(), "C:\\work");

    StringList tokens = SupportLibrary::CommandLineList();
    tokens.SetText(items.Text());
    EXPECT_EQ(tokens.Count(), 4);
    EXPECT_EQ(tokens.Item(3).toStdString(), "a b");
}

} // namespace
