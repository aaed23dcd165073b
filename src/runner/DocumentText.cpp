#include "runner/DocumentText.h"

#include "data/DataNode.h"
#include "document/DocumentFile.h"
#include "runner/VisibleText.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

void AddNodes(QString& text, const DataNodes& nodes, qsizetype level) {
    for (const std::shared_ptr<DataNode>& node : nodes) {
        text += QString(2 * level, u' ') + (node->Active() ? u"[x]"_s : u"[ ]"_s);
        if (!node->Value().isEmpty()) {
            QString value = node->Value();
            text += u' ' + VisibleText(value.replace(u'\\', u"\\\\"_s));
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

} // namespace rivenfall
