#include "CoreHarness.h"

#include "system/PropertyBag.h"

#include <QDir>
#include <QFile>

#include <sys/resource.h>

namespace rivenfall {

namespace {

/// The nodes at the front of @p outline, up to the end of their level.
std::vector<Sketch> Sketches(QStringView& outline) {
    std::vector<Sketch> nodes;
    while (!outline.isEmpty() && outline.front() != u')') {
        outline = outline.sliced(outline.front() == u',' ? 1 : 0);
        const bool off = outline.startsWith(u'!');
        qsizetype end = off ? 1 : 0;
        while (end < outline.size() && !QStringView(u"(),").contains(outline[end])) {
            ++end;
        }
        Sketch node(outline.first(end).sliced(off ? 1 : 0).toString().remove(u'~'));
        outline = outline.sliced(end);
        if (outline.startsWith(u'(')) {
            outline = outline.sliced(1);
            node.Below = Sketches(outline);
            outline = outline.sliced(1);
        }
        node.Active = !off;
        nodes.push_back(node);
    }
    return nodes;
}

} // namespace

std::vector<Sketch> Sketches(const char* outline) {
    const QString text = QString::fromUtf8(outline);
    QStringView rest = text;
    return Sketches(rest);
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

int OpenDescriptors() {
    return static_cast<int>(QDir(u"/proc/self/fd"_s).entryList().size());
}

void WithFileSizeLimit(quint64 bytes, const std::function<void()>& act) {
    rlimit former;
    getrlimit(RLIMIT_FSIZE, &former);
    const rlimit tight = {bytes, former.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
    act();
    setrlimit(RLIMIT_FSIZE, &former);
}

QString ProgramFolder() {
    return QStringLiteral(RIVENFALL_PROGRAMS);
}

} // namespace rivenfall
