#include "WindowDriver.h"

#include "support/Title.h"

#include <QTimer>

#include <iostream>
#include <map>
#include <random>

using namespace rivenfall;

namespace {

/// A plain picture of the program: what each action makes of the document and the window. A tree
/// is a list of lines, and a position counts them from 0.
class Model {
public:
    using Trees = std::array<Lines, 2>;

    Trees Document;
    size_t Tab = 0;
    std::array<size_t, 2> Positions = {0, 0};
    bool Exists = false, Changed = false, Editing = false, Movable = false;
    QString Box, File, Caption;
    std::map<QString, Trees> Disk;

    Lines& Tree() { return Document[Tab]; }
    size_t& Selected() { return Positions[Tab]; }
    bool IsAlternative(size_t each) { return Tree()[each].Level == (Tab == 0 ? 2 : 1); }

    /// The position behind the branch of a line, and the one of the line that it lies below.
    static size_t End(const Lines& tree, size_t each) {
        size_t end = each + 1;
        while (end < tree.size() && tree[end].Level > tree[each].Level) {
            ++end;
        }
        return end;
    }
    static int Above(const Lines& tree, size_t each) {
        int above = static_cast<int>(each) - 1;
        while (above >= 0 && tree[size_t(above)].Level >= tree[each].Level) {
            --above;
        }
        return above;
    }
    /// The positions of a line and its siblings.
    std::vector<size_t> Siblings(size_t each) {
        std::vector<size_t> siblings;
        const int above = Above(Tree(), each);
        size_t next = above < 0 ? 0 : static_cast<size_t>(above) + 1;
        while (next < Tree().size() && Above(Tree(), next) == above) {
            siblings.push_back(next);
            next = End(Tree(), next);
        }
        return siblings;
    }

    /// True if no closed branch hides a line.
    bool InSight(size_t each) {
        const int above = Above(Tree(), each);
        return above < 0 || (Tree()[size_t(above)].Shown && InSight(size_t(above)));
    }
    /// Opens on the screen what hides a line.
    void Reveal(size_t each) {
        for (int above = Above(Tree(), each); above >= 0; above = Above(Tree(), size_t(above))) {
            Tree()[size_t(above)].Shown = true;
        }
    }
    void Select(size_t each) {
        Selected() = each;
        Reveal(each);
        Box = Tree()[each].Value;
        Movable = Siblings(each).size() > 1;
        Editing = false;
    }
    void SetCaption() {
        Caption = (File.isEmpty() ? u"New File"_s : File) + u" - "_s + ProgramTitle();
    }
    void Rebuild() {
        for (Line& line : Tree()) {
            line.Shown = line.Open;
        }
        size_t last = Tree().size() - 1;
        while (last > 0 && !Tree()[last].Open) {
            --last;
        }
        Reveal(last);
        SetCaption();
        Select(Selected());
    }
    void SwitchOthersOff(size_t on) {
        for (const size_t each : Siblings(on)) {
            Tree()[each].On = each == on;
        }
    }
    void New() {
        const Line& line = Tree()[Selected()];
        Lines added = {{line.Level, line.Value}};
        for (int level = line.Level + 1; level <= (Tab == 0 ? 2 : 1); ++level) {
            added.push_back({level, {}});
        }
        if (Tab == 0 && line.Level == 0) {
            added[2].Value = u"${FILE1}"_s;
        }
        const size_t place = End(Tree(), Selected());
        Tree().insert(Tree().begin() + qsizetype(place), added.begin(), added.end());
        if (IsAlternative(place)) {
            SwitchOthersOff(place);
        }
        Rebuild();
        Select(place);
        Changed = true;
    }
    void Remove() {
        const std::vector<size_t> siblings = Siblings(Selected());
        const int above = Above(Tree(), Selected());
        const size_t rank = Rank();
        Tree().erase(Tree().begin() + qsizetype(Selected()),
                     Tree().begin() + qsizetype(End(Tree(), Selected())));
        // The next sibling, else the one before, is selected, and the one before that remembered.
        const size_t neighbour = std::min(rank, siblings.size() - 2);
        if (neighbour > 0) {
            Selected() = siblings[neighbour - 1];
        } else if (siblings.size() == 2) {
            Selected() = static_cast<size_t>(std::max(above, 0));
        }
        Changed = true;
        Rebuild();
    }
    void Move(bool down) {
        const std::vector<size_t> siblings = Siblings(Selected());
        const size_t count = siblings.size();
        const size_t target = (Rank() + (down ? 1 : count - 1)) % count;
        const auto begin = Tree().begin() + qsizetype(Selected());
        const Lines branch(begin, Tree().begin() + qsizetype(End(Tree(), Selected())));
        const size_t first = siblings[0];
        Tree().erase(begin, begin + qsizetype(branch.size()));
        size_t place = first;
        for (size_t passed = 0; passed < target; ++passed) {
            place = End(Tree(), place);
        }
        Tree().insert(Tree().begin() + qsizetype(place), branch.begin(), branch.end());
        Changed = true;
        Rebuild();
        Select(place);
    }
    void Check(size_t each) {
        Tree()[each].On = !Tree()[each].On;
        if (Tree()[each].On && IsAlternative(each)) {
            SwitchOthersOff(each);
        }
        Changed = true;
    }
    void Store() {
        Tree()[Selected()].Value = Box;
        Changed = true;
        Rebuild();
    }
    void Load(Trees trees, const QString& file) {
        for (Lines& tree : trees) {
            for (Line& line : tree) {
                line.Open = true;
            }
        }
        Document = trees;
        File = file;
        Tab = 0;
        Positions = {0, 0};
        Exists = true;
        Changed = false;
        Rebuild();
        Movable = true;
    }
    void Fresh() {
        Load({Lines{{0, {}}, {1, {}}, {2, u"${FILE1}"_s}}, Lines{{0, u"FILE1"_s}, {1, {}}}}, {});
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

private:
    /// The place of the selected line among its siblings, from 0.
    size_t Rank() {
        const std::vector<size_t> siblings = Siblings(Selected());
        return size_t(std::find(siblings.begin(), siblings.end(), Selected()) - siblings.begin());
    }
};

/// A program and its model. Each action is done to both; one that can't be done is left out.
class RandomActions : public WindowTest {
protected:
    /// A new program, a model of it, and the file of the document that ActInsideARun runs.
    void StartOver(unsigned seed);
    /// Does @p count actions, and compares program and model after each.
    void ActAtRandom(unsigned count);
    /// Runs a document whose child lives for a while, and does @p count actions inside of the run.
    void ActInsideARun(unsigned count);

    QStringList Done;
    /// How many actions began while a child lived.
    unsigned ActionsBesideAChild = 0;

private:
    size_t Below(size_t end) { return Random() % end; }
    bool Toss() { return Below(2) == 0; }
    const char* AnyOf(const std::vector<const char*>& texts) { return texts[Below(texts.size())]; }

    void Act();
    void FileNew();
    void FileOpen();
    void FileSave();
    void FileSaveAs();
    void FileRun();
    bool LeaveTheDocument(bool evenUnsaved);
    QString PickFileToSaveTo();
    void PressNew();
    void PressRemove();
    void PressMove();
    void ClickTab();
    void TypeText();
    void StoreText();
    void CancelText();
    void WalkByArrow();
    void ClickOnRow();

    void ExpectTheModelAgrees();

    std::mt19937 Random;
    Model Plain;
};

void RandomActions::Act() {
    // How often in 50 throws of the dice.
    const struct {
        size_t Often;
        const char* Name;
        void (RandomActions::*Do)();
    } actions[] = {
        {1, "File, New", &RandomActions::FileNew},     {1, "File, Open", &RandomActions::FileOpen},
        {1, "File, Save", &RandomActions::FileSave},   {1, "Save as", &RandomActions::FileSaveAs},
        {2, "File, Run", &RandomActions::FileRun},     {4, "New", &RandomActions::PressNew},
        {3, "Remove", &RandomActions::PressRemove},    {4, "Move", &RandomActions::PressMove},
        {3, "tab", &RandomActions::ClickTab},          {5, "type", &RandomActions::TypeText},
        {4, "store", &RandomActions::StoreText},       {1, "cancel", &RandomActions::CancelText},
        {6, "arrow key", &RandomActions::WalkByArrow}, {14, "row", &RandomActions::ClickOnRow}};
    size_t dice = Plain.Exists ? Below(50) : 0;
    const auto* action = actions;
    for (; dice >= action->Often; ++action) {
        dice -= action->Often;
    }
    Done += QLatin1StringView(action->Name);
    (this->*action->Do)();
}

void RandomActions::FileNew() {
    if (LeaveTheDocument(true)) {
        Plain.Fresh();
    }
    Menu("File", "New");
}

void RandomActions::FileOpen() {
    if (LeaveTheDocument(false)) {
        const char* file = AnyOf({"", "a.tvq", "b.tvq", "nowhere/a.tvq"});
        PickFile(file);
        if (Plain.Disk.contains(QLatin1StringView(file))) {
            Plain.Load(Plain.Disk[QLatin1StringView(file)], QLatin1StringView(file));
        }
    }
    Menu("File", "Open");
}

void RandomActions::FileSave() {
    Plain.Save(Plain.File.isEmpty() ? PickFileToSaveTo() : Plain.File);
    Menu("File", "Save");
}

void RandomActions::FileSaveAs() {
    Plain.Save(PickFileToSaveTo());
    Plain.SetCaption();
    Menu("File", "Save as");
}

void RandomActions::FileRun() {
    Menu("File", "Run");
}

/// Answers whether to save where the document has changed. True if the command goes on then; where
/// saving fails it does if @p evenUnsaved.
bool RandomActions::LeaveTheDocument(bool evenUnsaved) {
    if (!Plain.Changed) {
        return true;
    }
    const MessageBoxAnswer answer = std::array{Yes, No, Cancel}[Below(3)];
    Answer(answer);
    if (answer == Yes) {
        return Plain.Save(Plain.File.isEmpty() ? PickFileToSaveTo() : Plain.File) || evenUnsaved;
    }
    return answer == No;
}

/// Picks files to save to until the program takes one, and gives that.
QString RandomActions::PickFileToSaveTo() {
    for (;;) {
        const char* file = AnyOf({"", "a.tvq", "b.tvq", "b", "nowhere/a.tvq"});
        PickFile(file);
        const QString taken =
            QLatin1StringView(file) == u"b" ? u"b.tvq"_s : QString::fromLatin1(file);
        if (!Plain.Disk.contains(taken)) {
            return taken;
        }
        Answer(Toss() ? Yes : No);
        if (TheUser.Answers.back() == Yes) {
            return taken;
        }
    }
}

void RandomActions::PressNew() {
    // All rows fit in the window, so that it has no reason to scroll.
    if (Plain.Tree().size() < 12) {
        Plain.New();
        Click("New");
    }
}

void RandomActions::PressRemove() {
    if (Plain.Siblings(Plain.Selected()).size() > 1) {
        Plain.Remove();
    }
    Click("Remove");
}

void RandomActions::PressMove() {
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

void RandomActions::ClickTab() {
    const size_t tab = Below(2);
    if (tab != std::exchange(Plain.Tab, tab)) {
        Plain.Rebuild();
    }
    Tab(static_cast<int>(tab) + 1);
}

void RandomActions::TypeText() {
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

void RandomActions::StoreText() {
    if (Plain.Editing) {
        Plain.Store();
    }
    if (Toss()) {
        Click("Ok");
    } else {
        Press(Qt::Key_Return, Toss() ? Box() : static_cast<QWidget*>(Tree()));
    }
}

void RandomActions::CancelText() {
    if (Plain.Editing) {
        Plain.Select(Plain.Selected());
    }
    if (Toss()) {
        Click("Cancel");
    } else {
        Press(Qt::Key_Escape, Toss() ? Box() : static_cast<QWidget*>(Tree()));
    }
}

void RandomActions::WalkByArrow() {
    const bool down = Toss();
    if (down ? Plain.Selected() + 1 < Plain.Tree().size() : Plain.Selected() > 0) {
        Plain.Select(down ? Plain.Selected() + 1 : Plain.Selected() - 1);
    }
    Press(down ? Qt::Key_Down : Qt::Key_Up, Box());
}

void RandomActions::ClickOnRow() {
    const size_t each = Below(Plain.Tree().size());
    const int position = static_cast<int>(each) + 1;
    if (!Plain.InSight(each)) {
        return;
    }
    const size_t spot = Below(Model::End(Plain.Tree(), each) > each + 1 ? 3 : 2);
    if (spot == 0) {
        Plain.Select(each);
        ClickRow(position);
    } else if (spot == 1) {
        Plain.Check(each);
        Mark(position);
    } else {
        Line& line = Plain.Tree()[each];
        line.Open = line.Shown = !line.Shown;
        Branch(position);
    }
}

void RandomActions::ExpectTheModelAgrees() {
    const int selected = static_cast<int>(Plain.Selected()) + 1;
    const bool siblings = Plain.Siblings(Plain.Selected()).size() > 1;
    EXPECT_EQ(Stored(1), Outline(Plain.Document[0], &Line::Open));
    EXPECT_EQ(Stored(2), Outline(Plain.Document[1], &Line::Open));
    EXPECT_EQ(Window().tvwContent.SelectedItem()->Index(), selected);
    EXPECT_EQ(Window().Caption(), Plain.Caption);
    Expect({.Tree = Outline(Plain.Tree(), &Line::Shown, selected),
            .Enabled = std::string("New") + (siblings ? " Remove" : "") +
                       (Plain.Movable ? " Move" : "") + " Value" +
                       (Plain.Editing ? " Ok Cancel" : ""),
            .Box = Plain.Box.toStdString(),
            .Changed = Plain.Changed});
}

void RandomActions::StartOver(unsigned seed) {
    StartAnew();
    Random.seed(seed);
    Plain = {};
    Done.clear();
    QFile::remove(Path("a.tvq"));
    QFile::remove(Path("b.tvq"));
    StoreBytes(Path("run.tvq"), DocumentImage(Sketches("sleep(0.5),zz(1)"), Sketches("FILE1(~)")));
    Plain.Disk[u"run.tvq"_s] = {Lines{{0, u"sleep"_s}, {1, u"0.5"_s}, {0, u"zz"_s}, {1, u"1"_s}},
                                Lines{{0, u"FILE1"_s}, {1, {}}}};
}

void RandomActions::ActAtRandom(unsigned count) {
    for (unsigned action = 0; action < count && !HasFailure(); ++action) {
        ActionsBesideAChild += Runner().Running();
        Act();
        ExpectTheModelAgrees();
    }
}

void RandomActions::ActInsideARun(unsigned count) {
    if (Plain.Changed) {
        Answer(No);
    }
    PickFile("run.tvq");
    Menu("File", "Open");
    Plain.Load(Plain.Disk[u"run.tvq"_s], u"run.tvq"_s);
    ExpectTheModelAgrees();

    const qsizetype before = Done.size();
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, &clock, [&] {
        if (Runner().Running()) {
            clock.stop();
            ActAtRandom(count);
        }
    });
    clock.start(0);
    Menu("File", "Run");
    EXPECT_EQ(Done.size(), before + count);
    ExpectTheModelAgrees();
    // Whatever was done meanwhile, the run is that of the document at its start; but another run
    // inside of it empties the log.
    if (!Done.mid(before).contains(u"File, Run")) {
        EXPECT_EQ(Log(), Frame(u"sleep 0.5"_s, u"success"_s) + u"\r\n"_s +
                             Frame(u"zz 1"_s, u"error: CreateProcess failed (2)"_s));
    }
}

TEST_F(RandomActions, AgreeWithAPlainModel) {
    const auto setting = [](const char* name, unsigned fallback) {
        return qEnvironmentVariable(name, QString::number(fallback)).toUInt();
    };
    const unsigned sequences = setting("RIVENFALL_RANDOM_SEQUENCES", 10);
    const unsigned actions = setting("RIVENFALL_RANDOM_ACTIONS", 300);
    const unsigned seed = setting("RIVENFALL_RANDOM_SEED", std::random_device()());
    std::cout << "RIVENFALL_RANDOM_SEED=" << seed << std::endl;
    for (unsigned sequence = 0; sequence < sequences && !HasFailure(); ++sequence) {
        StartOver(seed + sequence);
        ActAtRandom(actions / 2);
        ActInsideARun(60);
        ActAtRandom(actions - actions / 2);
        EXPECT_FALSE(HasFailure())
            << "seed " << seed + sequence
            << ", the latest actions: " << Done.join(u"; "_s).right(200).toStdString();
    }
    EXPECT_GE(ActionsBesideAChild, sequences);
}

} // namespace
