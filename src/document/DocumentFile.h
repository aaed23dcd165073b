#pragma once

#include "data/DataNodes.h"

#include <QString>

namespace rivenfall {

/// What one document file holds.
struct DocumentContent {
    /// Two empty roots.
    DocumentContent();

    /// The file keeps its variables; an older one has none and gets the default variable.
    bool HasVariables = false;
    /// A root of compilers and a root of variables, owned here and heard by nobody.
    DataNodes Compilers;
    DataNodes Variables;
};

/// Gives the root @p variables what a new document has: one variable with an empty value.
void MakeDefaultVariable(DataNodes& variables);

/// Reads the document file @p fileName into @p content, whole or not at all. Gives the reason of a
/// failure as a sentence; empty for success.
QString ReadDocumentFile(const QString& fileName, DocumentContent& content);

/// Writes a document with these trees to the file @p fileName, as SaveFile does: the former file
/// stays whole until the new one is complete on the disk. Gives the reason of a failure as a
/// sentence; empty for success.
QString WriteDocumentFile(const QString& fileName, const DataNodes& compilers,
                          const DataNodes& variables);

} // namespace rivenfall
