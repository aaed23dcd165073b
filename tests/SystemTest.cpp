#include "system/PropertyBag.h"

#include <gtest/gtest.h>

using namespace rivenfall;

namespace {

TEST(PropertyBagTest, WritesTheseBytes) {
    PropertyBag bag;
    bag.WriteProperty("Value", QString::fromUtf8("é"));
    bag.WriteProperty("Active", true, true);
    bag.WriteProperty("Off", false, true);
    bag.WriteProperty("On", true);
    bag.WriteProperty("B", QByteArray("\0\xFF", 2));
    bag.WriteProperty("Empty", QString());
    EXPECT_EQ(bag.Contents().toHex(),
              "a56556616c756562c3a9634f6666f4624f6ef561424200ff65456d70747960");
}

TEST(PropertyBagTest, RefusesWhatIsNoImage) {
    // No map or one of no known length, lengths beyond the end, a name that is no text, texts that
    // are no UTF-8, numbers of more than 32 bits, and values of no known kind.
    for (const char* image :
         {"", "80", "bf", "bb7fffffffffffffff", "a161617b7fffffffffffffff61", "a161615affffffff00",
          "a10000", "a162c328f4", "a1616162c328", "a161611a80000000", "a161613a80000000",
          "a16161f6", "a16161a0", "a161615f4161ff"}) {
        PropertyBag bag;
        bag.WriteProperty("Old", 1);
        EXPECT_THROW(bag.SetContents(QByteArray::fromHex(image)), PropertyBagError) << image;
        EXPECT_EQ(bag.Contents().toHex(), "a0") << image;
    }
}

} // namespace
