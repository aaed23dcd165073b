#include "CoreHarness.h"

#include "system/PropertyBag.h"

#include <QFile>

#include <algorithm>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// Takes @p sign from the front of @p outline if it stands there.
bool Take(QStringView& outline, QChar sign) {
    const bool there = outline.startsWith(sign);
    outline = outline.sliced(there ? 1 : 0);
    return there;
}

std::vector<Sketch> TakeLevel(QStringView& outline);

/// Takes one node, with what is below it, from the front of @p outline.
Sketch TakeNode(QStringView& outline) {
    const bool off = Take(outline, u'!');
    const auto end = std::find_if(outline.begin(), outline.end(),
                                  [](QChar each) { return QStringView(u"(),").contains(each); });
    const QString value = outline.first(end - outline.begin()).toString();
    outline = outline.sliced(value.size());
    EXPECT_NE(value, QString()) << "in an outline \"~\" stands for an empty value";
    Sketch node(value == u"~" ? QString() : value);
    node.Active = !off;
    if (Take(outline, u'(')) {
        node.Below = TakeLevel(outline);
        EXPECT_TRUE(Take(outline, u')')) << "the outline lacks a closing bracket";
    }
    return node;
}

/// Takes a node and its siblings from the front of @p outline.
std::vector<Sketch> TakeLevel(QStringView& outline) {
    std::vector<Sketch> nodes;
    do {
        nodes.push_back(TakeNode(outline));
    } while (Take(outline, u','));
    return nodes;
}

} // namespace

std::vector<Sketch> Sketches(const char* outline) {
    const QString text = QString::fromUtf8(outline);
    QStringView rest = text;
    std::vector<Sketch> nodes;
    if (!rest.isEmpty()) {
        nodes = TakeLevel(rest);
    }
    EXPECT_EQ(rest.toString(), QString()) << "the outline goes on behind its last node";
    return nodes;
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

QString ProgramFolder() {
    return QString::fromUtf8(RIVENFALL_PROGRAMS);
}

} // namespace rivenfall
