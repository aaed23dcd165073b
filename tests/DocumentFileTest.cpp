#include "CoreHarness.h"

#include "data/DataNode.h"
#include "document/DocumentFile.h"

using namespace rivenfall;

namespace {

const std::vector<Sketch> SomeCompilers = Sketches("cc(-o(a,!b),!-g),!ld");
const std::vector<Sketch> SomeVariables = Sketches("FILE1(x,y),!~");

class DocumentFileTest : public testing::Test {
protected:
    QString Path(const QString& name) const { return Folder.filePath(name); }

    QTemporaryDir Folder;
};

TEST_F(DocumentFileTest, AByteOrderMarkInFrontOfAValueStays) {
    const QString marked = QChar::ByteOrderMark + u"value"_s;
    DataNodes compilers, variables;
    compilers.Add(marked);
    compilers.Add(QChar::ByteOrderMark + QString(100000, u'v'));
    EXPECT_EQ(WriteDocumentFile(Path(u"a.tvq"_s), compilers, variables), QString());
    DocumentContent content;
    EXPECT_EQ(ReadDocumentFile(Path(u"a.tvq"_s), content), QString());
    EXPECT_EQ(content.Compilers.Item(1)->Value(), marked);
    EXPECT_EQ(content.Compilers.Item(2)->Value(), compilers.Item(2)->Value());
}

TEST_F(DocumentFileTest, NothingIsSavedThatCouldNotBeOpenedAgain) {
    const QString path = StoreBytes(Path(u"old.tvq"_s), DocumentImage(SomeCompilers));
    DataNodes compilers, variables;
    compilers.Add(QString(64 << 20, u'v'));
    EXPECT_TRUE(WriteDocumentFile(path, compilers, variables).contains(u"can be opened again"_s));
    EXPECT_EQ(BytesOf(path), DocumentImage(SomeCompilers));
    compilers.Item(1)->SetValue(QString((64 << 20) - 1000, u'v'));
    EXPECT_EQ(WriteDocumentFile(path, compilers, variables), QString());
    DocumentContent content;
    EXPECT_EQ(ReadDocumentFile(path, content), QString());
    EXPECT_EQ(content.Compilers.Item(1)->Value(), compilers.Item(1)->Value());
}

} // namespace
