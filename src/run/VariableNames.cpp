#include "run/VariableNames.h"

namespace rivenfall {

QString FoldedName(QStringView name) {
    // Each character by itself, as QString compares: QString::toCaseFolded makes "ss" of "ß".
    std::u32string characters = name.toString().toStdU32String();
    for (char32_t& character : characters) {
        character = QChar::toCaseFolded(character);
    }
    return QString::fromStdU32String(characters);
}

} // namespace rivenfall
