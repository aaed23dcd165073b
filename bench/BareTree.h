#pragma once

class QTreeWidget;

namespace rivenfall {

/// Fills the empty @p tree in one batch with the @p count nodes that VisitSample tells of, with
/// their check marks, and expands it: the least that Qt asks for the same picture.
void FillBareTree(QTreeWidget& tree, int count);

} // namespace rivenfall
