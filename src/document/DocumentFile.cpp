#include "document/DocumentFile.h"

#include "data/DataNode.h"
#include "files/FileError.h"
#include "files/FilePath.h"
#include "files/FileSaving.h"
#include "files/OpenFile.h"
#include "system/PropertyBag.h"

#include <new>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView Description("OMRA Rivenfall Compiler Controller File Version 0.2");
constexpr QLatin1StringView FirstVersion("TAVQEF#0001");
constexpr QLatin1StringView SecondVersion("TAVQEF#0002");
constexpr QLatin1StringView ThirdVersion("TAVQEF#0003");

/// More than a million nodes take. Reading a file takes four times its size, and up to thirty times
/// where somebody made it to be costly.
constexpr qint64 LargestFile = 64LL << 20;

/// The bytes of the file. Throws FileError.
QByteArray ReadBytes(const QString& fileName) {
    const OpenFile file = OpenOrdinary(AT_FDCWD, PathBytes(fileName), O_RDONLY);
    const off_t size = file.Status().st_size;
    if (size > LargestFile) {
        throw FileError{u"it is larger than any document"_s};
    }
    if (size == 0) {
        throw FileError{u"it is empty"_s};
    }
    return file.Read();
}

void LoadContent(const QString& fileName, DocumentContent& content) {
    PropertyBag fileBag;
    fileBag.SetContents(ReadBytes(fileName));
    const QVariant identification =
        fileBag.ReadProperty("_FileFormatIdentification", QString(FirstVersion));
    if (identification == QVariant(QString(FirstVersion))) {
        content.Compilers.LoadFromBag(fileBag);
        MakeDefaultVariable(content.Variables);
        return;
    }
    content.HasVariables = identification == QVariant(QString(ThirdVersion));
    if (!content.HasVariables && identification != QVariant(QString(SecondVersion))) {
        throw PropertyBagError{u"its format \"%1\" is unknown"_s.arg(identification.toString())};
    }
    const PropertyBag contentBag = fileBag.ReadBag("_Content");
    content.Compilers.LoadFromBag(contentBag.ReadBag("Compilers"));
    if (content.HasVariables) {
        content.Variables.LoadFromBag(contentBag.ReadBag("Variables"));
    } else {
        MakeDefaultVariable(content.Variables);
    }
}

QByteArray ImageOf(const DataNodes& compilers, const DataNodes& variables) {
    PropertyBag contentBag;
    contentBag.WriteProperty("Compilers", compilers.SaveToBag().Contents());
    contentBag.WriteProperty("Variables", variables.SaveToBag().Contents());
    PropertyBag fileBag;
    fileBag.WriteProperty("_FileFormatDescription", QString(Description));
    fileBag.WriteProperty("_FileFormatIdentification", QString(ThirdVersion));
    fileBag.WriteProperty("_Content", contentBag.Contents());
    return fileBag.Contents();
}

QString Sentence(const QString& verb, const QString& fileName, const QString& reason) {
    return u"The file %1 can't be %2: %3."_s.arg(fileName, verb, reason);
}

} // namespace

DocumentContent::DocumentContent() {
    Compilers.SetDataNodesType(NodeKind::Compiler);
    Variables.SetDataNodesType(NodeKind::Variable);
}

void MakeDefaultVariable(DataNodes& variables) {
    variables.Clear();
    variables.Add(u"FILE1"_s)->Childs()->Add();
}

QString ReadDocumentFile(const QString& fileName, DocumentContent& content) {
    QString reason;
    try {
        LoadContent(fileName, content);
        return {};
    } catch (const PropertyBagError& error) {
        reason = error.Reason;
    } catch (const FileError& error) {
        reason = error.Reason;
    } catch (const std::bad_alloc&) {
        reason = u"it takes more memory than there is"_s;
    }
    return Sentence(u"opened"_s, fileName, reason);
}

QString WriteDocumentFile(const QString& fileName, const DataNodes& compilers,
                          const DataNodes& variables) {
    try {
        const QByteArray image = ImageOf(compilers, variables);
        if (image.size() > LargestFile) {
            throw FileError{u"the document is larger than can be opened again"_s};
        }
        SaveFile(fileName, image);
        return {};
    } catch (const FileError& error) {
        return Sentence(u"saved"_s, fileName, error.Reason);
    }
}

} // namespace rivenfall
