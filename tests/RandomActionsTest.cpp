#include "WindowDriver.h"

#include "support/Title.h"

#include <QTimer>

#include <iostream>
#include <map>
#include <random>

using namespace rivenfall;

namespace {

/// A plain picture of the program: what each action makes of the document and the window.
struct Model {
    using Nodes = std::vector<Sketch>;
    using Trees = std::array<Nodes, 2>;
    /// The ranks, from 0, of a node and of those that it lies below, the outermost first.
    using Place = std::vector<size_t>;

    Trees Document;
    size_t Tab = 0;
    std::array<Place, 2> Selection;
    bool Changed = false, Editing = false, Movable = false;
    QString Box, File, Caption;
    std::map<QString, Trees> Disk;

    Nodes& Tree() { return Document[Tab]; }
    Place& Selected() { return Selection[Tab]; }
    Nodes& Siblings(const Place& place) {
        Nodes* nodes = &Tree();
        for (size_t level = 0; level + 1 < place.size(); ++level) {
            nodes = &(*nodes)[place[level]].Below;
        }
        return *nodes;
    }
    Sketch& At(const Place& place) { return Siblings(place)[place.back()]; }
    /// How many levels a new node at a place has below it.
    size_t LevelsBelow(const Place& place) { return (Tab == 0 ? 3 : 2) - place.size(); }

    static void Collect(const Nodes& nodes, const Place& above, std::vector<Place>& places) {
        for (size_t rank = 0; rank < nodes.size(); ++rank) {
            places.push_back(above);
            places.back().push_back(rank);
            Collect(nodes[rank].Below, Place(places.back()), places);
        }
    }
    /// The places of all nodes from above to below.
    std::vector<Place> Places() {
        std::vector<Place> places;
        Collect(Tree(), {}, places);
        return places;
    }
    /// The position of the selected node, from 0.
    size_t Position() {
        const std::vector<Place> places = Places();
        return size_t(std::find(places.begin(), places.end(), Selected()) - places.begin());
    }

    void Select(const Place& place) {
        Selected() = place;
        Box = At(place).Value;
        Movable = Siblings(place).size() > 1;
        Editing = false;
    }
    void SetCaption() {
        Caption = (File.isEmpty() ? u"New File"_s : File) + u" - "_s + ProgramTitle();
    }
    void Rebuild() {
        SetCaption();
        Select(Place(Selected()));
    }
    void SwitchOthersOff(const Place& on) {
        for (Sketch& each : Siblings(on)) {
            each.Active = &each == &At(on);
        }
    }
    void New() {
        const size_t below = LevelsBelow(Selected());
        const Sketch added(At(Selected()).Value,
                           below == 2 ? Nodes{Sketch("", {"${FILE1}"})} : Nodes(below, Sketch("")));
        Nodes& siblings = Siblings(Selected());
        siblings.insert(siblings.begin() + qsizetype(++Selected().back()), added);
        if (below == 0) {
            SwitchOthersOff(Selected());
        }
        Changed = true;
        Rebuild();
    }
    void Remove() {
        Nodes& siblings = Siblings(Selected());
        size_t& rank = Selected().back();
        siblings.erase(siblings.begin() + qsizetype(rank));
        // The next sibling, else the one before, is selected, and the one before that remembered.
        const size_t neighbour = std::min(rank, siblings.size() - 1);
        if (neighbour > 0) {
            rank = neighbour - 1;
        } else if (siblings.size() == 1 && Selected().size() > 1) {
            Selected().pop_back();
        } else {
            rank = 0;
        }
        Changed = true;
        Rebuild();
    }
    void Move(bool down) {
        Nodes& siblings = Siblings(Selected());
        size_t& rank = Selected().back();
        const Sketch moved = siblings[rank];
        const size_t target = (rank + (down ? 1 : siblings.size() - 1)) % siblings.size();
        siblings.erase(siblings.begin() + qsizetype(rank));
        siblings.insert(siblings.begin() + qsizetype(target), moved);
        rank = target;
        Changed = true;
        Rebuild();
    }
    void Check(const Place& place) {
        At(place).Active = !At(place).Active;
        if (At(place).Active && LevelsBelow(place) == 0) {
            SwitchOthersOff(place);
        }
        Changed = true;
    }
    void Store() {
        At(Selected()).Value = Box;
        Changed = true;
        Rebuild();
    }
    void Load(const Trees& trees, const QString& file) {
        Document = trees;
        File = file;
        Tab = 0;
        Selection = {Place{0}, Place{0}};
        Changed = false;
        Rebuild();
        Movable = true;
    }
    /// Saves to @p chosen, which may be none, or in no folder.
    bool Save(const QString& chosen) {
        if (chosen.isEmpty() || chosen.contains(u'/')) {
            return false;
        }
        File = chosen;
        Disk[File] = Document;
        Changed = false;
        return true;
    }
};

/// A program and its model. Each action is done to both; one that can't be done is left out.
class RandomActions : public WindowTest, public testing::WithParamInterface<unsigned> {
protected:
    RandomActions() {
        Open("sleep(0.5),zz(1)");
        Plain.Load({Sketches("sleep(0.5),zz(1)"), Sketches("FILE1(~)")}, u"document.tvq"_s);
    }

    /// Does @p count actions, and compares program and model after each.
    void ActAtRandom(unsigned count) {
        for (unsigned action = 0; action < count && !HasFailure(); ++action) {
            Act();
            ExpectTheModelAgrees();
        }
    }

    QStringList Done;
    /// The parameter tells the sequences of one given seed apart.
    const unsigned Seed = qEnvironmentVariableIsSet("RIVENFALL_RANDOM_SEED")
                              ? qEnvironmentVariable("RIVENFALL_RANDOM_SEED").toUInt() + GetParam()
                              : std::random_device()();

private:
    size_t Below(size_t end) { return Random() % end; }
    bool Toss() { return Below(2) == 0; }
    const char* AnyOf(const std::vector<const char*>& texts) { return texts[Below(texts.size())]; }

    void Act() {
        // How often in 48 throws of the dice.
        const struct {
            size_t Often;
            const char* Name;
            void (RandomActions::*Do)();
        } actions[] = {{1, "File, New", &RandomActions::FileNew},
                       {1, "File, Open", &RandomActions::FileOpen},
                       {1, "File, Save", &RandomActions::FileSave},
                       {1, "Save as", &RandomActions::FileSaveAs},
                       {4, "New", &RandomActions::PressNew},
                       {3, "Remove", &RandomActions::PressRemove},
                       {4, "Move", &RandomActions::PressMove},
                       {3, "tab", &RandomActions::ClickTab},
                       {5, "type", &RandomActions::TypeText},
                       {4, "store", &RandomActions::StoreText},
                       {1, "cancel", &RandomActions::CancelText},
                       {6, "arrow key", &RandomActions::WalkByArrow},
                       {14, "row", &RandomActions::ClickOnRow}};
        size_t dice = Below(48);
        const auto* action = actions;
        for (; dice >= action->Often; ++action) {
            dice -= action->Often;
        }
        Done += QLatin1StringView(action->Name);
        (this->*action->Do)();
    }

    void FileNew() {
        if (LeaveTheDocument(true)) {
            Plain.Load({Sketches("~(~(${FILE1}))"), Sketches("FILE1(~)")}, {});
        }
        Menu("File", "New");
    }

    void FileOpen() {
        if (LeaveTheDocument(false)) {
            const char* file = AnyOf({"", "a.tvq", "b.tvq", "nowhere/a.tvq"});
            PickFile(file);
            if (Plain.Disk.contains(QLatin1StringView(file))) {
                Plain.Load(Plain.Disk[QLatin1StringView(file)], QLatin1StringView(file));
            }
        }
        Menu("File", "Open");
    }

    void FileSave() {
        Plain.Save(Plain.File.isEmpty() ? PickFileToSaveTo() : Plain.File);
        Menu("File", "Save");
    }

    void FileSaveAs() {
        Plain.Save(PickFileToSaveTo());
        Plain.SetCaption();
        Menu("File", "Save as");
    }

    /// Answers whether to save where the document has changed. True if the command goes on then;
    /// where saving fails it does if @p evenUnsaved.
    bool LeaveTheDocument(bool evenUnsaved) {
        if (!Plain.Changed) {
            return true;
        }
        const MessageBoxAnswer answer = std::array{Yes, No, Cancel}[Below(3)];
        Answer(answer);
        if (answer == Yes) {
            return Plain.Save(Plain.File.isEmpty() ? PickFileToSaveTo() : Plain.File) ||
                   evenUnsaved;
        }
        return answer == No;
    }

    /// Picks a file to save to, in place of what is there, and gives it.
    QString PickFileToSaveTo() {
        const char* file = AnyOf({"", "a.tvq", "b.tvq", "nowhere/a.tvq"});
        PickFile(file);
        if (Plain.Disk.contains(QLatin1StringView(file))) {
            Answer(Yes);
        }
        return QString::fromLatin1(file);
    }

    void PressNew() {
        // All rows fit in the window, so that it has no reason to scroll.
        if (Plain.Places().size() < 12) {
            Plain.New();
            Click("New");
        }
    }

    void PressRemove() {
        if (Plain.Siblings(Plain.Selected()).size() > 1) {
            Plain.Remove();
        }
        Click("Remove");
    }

    void PressMove() {
        const bool down = Toss();
        const bool wasMovable = Plain.Movable;
        if (wasMovable) {
            Plain.Move(down);
        }
        if (!wasMovable || Toss()) {
            Click(down ? "Move down" : "Move up");
        } else {
            Press(down ? Qt::Key_Down : Qt::Key_Up, Window().udnMove.Widget());
        }
    }

    void ClickTab() {
        const size_t tab = Below(2);
        if (tab != std::exchange(Plain.Tab, tab)) {
            Plain.Rebuild();
        }
        Tab(static_cast<int>(tab) + 1);
    }

    void TypeText() {
        const char* text = AnyOf({"zz", "FILE1", "X", "${FILE1}", "z${x}y", "${NO}", "${X", "z z"});
        if (Toss()) {
            Press(Qt::CTRL | Qt::Key_A, Box());
            Press(Qt::Key_Delete);
            Plain.Box.clear();
        }
        Press(Qt::Key_End, Box());
        Type(text);
        Plain.Editing = true;
        Plain.Box += QLatin1StringView(text);
    }

    void ClickOrPress(const char* button, Qt::Key key) {
        if (Toss()) {
            Click(button);
        } else {
            Press(key, Toss() ? Box() : static_cast<QWidget*>(Tree()));
        }
    }

    void StoreText() {
        if (Plain.Editing) {
            Plain.Store();
        }
        ClickOrPress("Ok", Qt::Key_Return);
    }

    void CancelText() {
        if (Plain.Editing) {
            Plain.Select(Model::Place(Plain.Selected()));
        }
        ClickOrPress("Cancel", Qt::Key_Escape);
    }

    void WalkByArrow() {
        const bool down = Toss();
        const std::vector<Model::Place> places = Plain.Places();
        const size_t position = Plain.Position();
        if (down ? position + 1 < places.size() : position > 0) {
            Plain.Select(places[down ? position + 1 : position - 1]);
        }
        Press(down ? Qt::Key_Down : Qt::Key_Up, Box());
    }

    void ClickOnRow() {
        const std::vector<Model::Place> places = Plain.Places();
        const size_t each = Below(places.size());
        const int position = static_cast<int>(each) + 1;
        if (Tree()->visualRect(Row(position)).isEmpty()) {
            return; // A closed branch hides it.
        }
        const size_t spot = Below(Plain.At(places[each]).Below.empty() ? 2 : 3);
        if (spot == 0) {
            Plain.Select(places[each]);
            ClickRow(position);
        } else if (spot == 1) {
            Plain.Check(places[each]);
            Mark(position);
        } else {
            Branch(position);
        }
    }

    void ExpectTheModelAgrees() {
        const bool siblings = Plain.Siblings(Plain.Selected()).size() > 1;
        EXPECT_EQ(Stored(1), Outline(Plain.Document[0]));
        EXPECT_EQ(Stored(2), Outline(Plain.Document[1]));
        EXPECT_EQ(Window().Caption(), Plain.Caption);
        Expect({.Tree = Outline(Plain.Tree(), static_cast<int>(Plain.Position()) + 1),
                .Enabled = std::string("New") + (siblings ? " Remove" : "") +
                           (Plain.Movable ? " Move" : "") + " Value" +
                           (Plain.Editing ? " Ok Cancel" : ""),
                .Box = Plain.Box.toStdString(),
                .Changed = Plain.Changed});
    }

    std::mt19937 Random{Seed};
    Model Plain;
};

TEST_P(RandomActions, AgreeWithAPlainModel) {
    std::cout << "RIVENFALL_RANDOM_SEED=" << Seed << '\n' << std::flush;
    // The first ones while a child of a run lives.
    QTimer::singleShot(0, &Window(), [this] {
        EXPECT_TRUE(Runner().Running());
        ActAtRandom(60);
    });
    Menu("File", "Run");
    EXPECT_EQ(Done.size(), 60);
    ActAtRandom(240);
    EXPECT_FALSE(HasFailure()) << "the latest actions: "
                               << Done.join(u"; "_s).right(200).toStdString();
}

INSTANTIATE_TEST_SUITE_P(Each, RandomActions, testing::Range(0u, 10u));

} // namespace
