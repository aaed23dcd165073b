#include "runner/DocumentText.h"

#include "data/DataNode.h"
#include "document/DocumentFile.h"
#include "runner/Output.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

QString Escaped(QString value) {
    return VisibleText(value.replace(u'\\', u"\\\\"_s));
}

QString MarkOf(const DataNode& node) {
    return node.Active() ? u"[x]"_s : u"[ ]"_s;
}

void AddNodes(QString& text, const DataNodes& nodes, qsizetype level) {
    for (const std::shared_ptr<DataNode>& node : nodes) {
        text += QString(2 * level, u' ') + MarkOf(*node);
        if (!node->Value().isEmpty()) {
            text += u' ' + Escaped(node->Value());
        }
        text += u'\n';
        if (node->Childs()) {
            AddNodes(text, *node->Childs(), level + 1);
        }
    }
}

} // namespace

QByteArray DocumentText(const DocumentContent& content) {
    QString text = u"Compilers\n"_s;
    AddNodes(text, content.Compilers, 1);
    text += u"Variables\n"_s;
    AddNodes(text, content.Variables, 1);
    return text.toUtf8();
}

QByteArray DocumentList(const DocumentContent& content) {
    QString text;
    for (const std::shared_ptr<DataNode>& variable : content.Variables) {
        QString first;
        QString others;
        for (const std::shared_ptr<DataNode>& value : *variable->Childs()) {
            if (variable->Active() && value->Active() && first.isEmpty()) {
                first = u" = "_s + Escaped(value->Value());
            } else {
                others += u" | "_s + Escaped(value->Value());
            }
        }
        text += Escaped(variable->Value()) + first + others + u'\n';
    }
    for (const std::shared_ptr<DataNode>& compiler : content.Compilers) {
        text += MarkOf(*compiler) + u' ' + Escaped(compiler->Value()) + u'\n';
    }
    return text.toUtf8();
}

} // namespace rivenfall
