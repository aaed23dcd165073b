#include "CoreHarness.h"

#include "system/PropertyBag.h"

#include <QFile>
#include <QRegularExpression>

namespace rivenfall {

using namespace Qt::StringLiterals;

std::vector<Sketch> Sketches(const char* outline) {
    static const QRegularExpression parts(u"(!?)([^(),]+)|[()]"_s);
    Sketch root("");
    std::vector<Sketch*> open = {&root};
    for (const auto& part : parts.globalMatch(QString::fromUtf8(outline))) {
        if (part.captured() == u"(") {
            open.push_back(&open.back()->Below.back());
        } else if (part.captured() == u")") {
            open.pop_back();
        } else {
            const QString value = part.captured(2);
            open.back()->Below.emplace_back(value == u"~" ? QString() : value);
            open.back()->Below.back().Active = part.captured(1).isEmpty();
        }
    }
    EXPECT_EQ(open.size(), 1u) << outline;
    return root.Below;
}

QByteArray CollectionImage(const std::vector<Sketch>& nodes, int levels) {
    PropertyBag collection;
    collection.WriteProperty("Count", static_cast<int>(nodes.size()));
    int position = 0;
    for (const Sketch& sketch : nodes) {
        PropertyBag node;
        node.WriteProperty("Value", sketch.Value);
        node.WriteProperty("Active", sketch.Active, true);
        if (levels > 0) {
            node.WriteProperty("Childs", CollectionImage(sketch.Below, levels - 1));
        }
        collection.WriteProperty("Item" + QByteArray::number(++position), node.Contents());
    }
    return collection.Contents();
}

QByteArray DocumentImage(const std::vector<Sketch>& compilers,
                         const std::vector<Sketch>& variables) {
    PropertyBag content;
    content.WriteProperty("Compilers", CollectionImage(compilers, 2));
    content.WriteProperty("Variables", CollectionImage(variables, 1));
    PropertyBag file;
    file.WriteProperty("_FileFormatDescription",
                       u"OMRA Rivenfall Compiler Controller File Version 0.2"_s);
    file.WriteProperty("_FileFormatIdentification", u"TAVQEF#0003"_s);
    file.WriteProperty("_Content", content.Contents());
    return file.Contents();
}

Sketch Shell(const QString& script, const QStringList& arguments) {
    Sketch compiler("sh", {"-c", script});
    compiler.Below.insert(compiler.Below.end(), arguments.begin(), arguments.end());
    return compiler;
}

QString StoreBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    EXPECT_EQ(file.write(bytes), bytes.size());
    return path;
}

QByteArray BytesOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

QString Frame(const QString& issue, const QString& result) {
    const QString dashes(53, u'-');
    return u"# /"_s + dashes + u"\r\n# | "_s + issue + u"\r\n# | ["_s + result + u"]\r\n# \\"_s +
           dashes + u"\r\n"_s;
}

} // namespace rivenfall
