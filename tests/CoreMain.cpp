#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // A folder in the tester's own that may not be read would turn "no such program" into "no
    // permission".
    qputenv("PATH", "/usr/local/bin:/usr/bin:/bin");
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
