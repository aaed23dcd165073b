#include "CoreHarness.h"

#include "data/DataNode.h"
#include "document/DocumentFile.h"

using namespace rivenfall;

namespace {

TEST(DocumentFileTest, AByteOrderMarkInFrontOfAValueStays) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.tvq"_s);
    const QString marked = QChar::ByteOrderMark + u"value"_s;
    DataNodes compilers, variables;
    compilers.Add(marked);
    compilers.Add(QChar::ByteOrderMark + QString(100000, u'v'));
    EXPECT_EQ(WriteDocumentFile(path, compilers, variables), QString());
    DocumentContent content;
    EXPECT_EQ(ReadDocumentFile(path, content), QString());
    EXPECT_EQ(content.Compilers.Item(1)->Value(), marked);
    EXPECT_EQ(content.Compilers.Item(2)->Value(), compilers.Item(2)->Value());
}

} // namespace
