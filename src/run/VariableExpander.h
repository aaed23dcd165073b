#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace rivenfall {

class DataNodes;

/// Puts the values of variables in the place of references, for the length of one run: the
/// variables may not change meanwhile. What one text has found out about them serves the next one.
class VariableExpander {
public:
    /// @p variables is the root of the variables and outlives the object, as @p unresolved does: it
    /// gets each name that a reference found no value for, once.
    explicit VariableExpander(const DataNodes& variables, QStringList* unresolved = nullptr);

    /// @p Text with every reference `${NAME}` replaced by the value of that variable: the first
    /// active variable of the name, compared without regard to case, and its first active value,
    /// expanded in turn. What can't be resolved gives nothing; a reference that is never closed
    /// stays as it is; a value that refers to itself is cut off there. Changes nothing.
    ///
    /// A text that grows beyond LongestText characters becomes one of TooLongLength characters. So
    /// does one whose variables refer to each other in so many ways that the run would not come to
    /// an end, and one with which the texts of the run would take too much memory.
    QString Expand(const QString& Text);

    /// Much more than a program can be handed in all its arguments together.
    static constexpr qsizetype LongestText = 1 << 22;

    /// More than twice what the kernel takes in one argument, which is 32 pages of memory
    /// (execve(2)), so that the start of a program with such a text fails, with 7. No more: the log
    /// shows it.
    static qsizetype TooLongLength();

private:
    /// How far the expansion has got in a text: in the one that was asked for, or in the value of a
    /// variable.
    struct Place {
        QStringView Text;
        qsizetype Position = 0;
        size_t Variable = 0;
        /// Where in the output the text's own begins.
        qsizetype OutputBegin = 0;
        /// A reference below met a variable that was being expanded already.
        bool Cut = false;
    };

    /// What has become of a variable so far in this run.
    struct State {
        /// The value; null for a variable without an active one.
        const QString* Value = nullptr;
        bool Seen = false;
        std::optional<QString> Expansion = {};
    };

    void TakeStep();
    void LeaveText();
    void Write(QStringView text);
    bool IsTooMuch() const;
    void NoteUnresolved(const QString& name);

    /// The number from 0 of the first active variable of each name, without its case.
    QHash<QString, size_t> pobjNumbers;
    QStringList* pobjUnresolved;
    QSet<QString> pobjNoted;
    std::vector<State> pobjStates;
    /// Per variable: its value is being expanded. Without allocation between two calls.
    std::vector<bool> pblnVariableBusy;
    /// The text that was asked for, and the values in values that lead to the one at hand.
    std::vector<Place> pobjPlaces;
    QString pstrOutput;
    /// What every text that is too long becomes, one for all in a run.
    QString pstrTooLong;
    /// How many characters were written, and how many are kept; see MostWork and MostKept.
    qint64 plngWork = 0;
    qint64 plngKept = 0;
};

} // namespace rivenfall
