#pragma once

namespace rivenfall {

struct DocumentContent;
struct Options;

/// Changes the document @p content, in memory alone, as the call @p options wants it for this run:
/// values of variables, check marks, and which compilers alone run. Texts are compared as names of
/// variables are; a name given twice has its last value. Tells, and gives False, where the document
/// doesn't hold what is named.
bool ApplyChoices(const Options& options, const DocumentContent& content);

} // namespace rivenfall
