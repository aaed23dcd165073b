#include "WindowDriver.h"

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
        Caption = (File.isEmpty() ? u"New File"_s : File) +
                  u" - OMRA Rivenfall Compiler Controller 1.5.0"_s;
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
    /// Saves to @p chosen where the document has no file; that may be none, or in no folder.
    bool Save(const QString& chosen) {
        if (File.isEmpty() && (chosen.isEmpty() || chosen.contains(u'/'))) {
            return false;
        }
        File = File.isEmpty() ? chosen : File;
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

class RandomActions : public WindowTest {
protected:
    /// A new program, a model of it, and the file of the document that ActInsideARun runs.
    void StartOver(unsigned seed);
    /// Does @p count actions, and compares program and model after each.
    void ActAtRandom(unsigned count);
    /// Runs a document whose child lives for a while, and does @p count actions inside of the run.
    void ActInsideARun(unsigned count);

    QStringList Scripts;
    /// How many actions began while a child lived.
    unsigned ActionsBesideAChild = 0;

private:
    size_t Below(size_t end) { return Random() % end; }
    QString AnyOf(const QStringList& texts) {
        return texts[qsizetype(Below(size_t(texts.size())))];
    }

    // Each of these makes the model do an action, and gives the script of it for the program. The
    // script is empty where the action can't be done.
    QString Invent();
    QString ChooseFromTheMenu();
    QString AnswerWhetherToSave(bool& goesOn, bool evenUnsaved);
    QString InventFileToSaveTo(QString& file);
    QString PressNew();
    QString PressRemove();
    QString PressMove();
    QString ClickTab();
    QString TypeText();
    QString StoreText();
    QString CancelText();
    QString WalkByArrow();
    QString ClickRow();

    void ExpectTheModelAgrees();

    std::mt19937 Random;
    Model Plain;
    /// How many rows the tree on view had before the latest action.
    size_t FormerRows = 0;
};

QString RandomActions::Invent() {
    // The functions for 50 throws of the dice.
    const std::pair<size_t, QString (RandomActions::*)()> actions[] = {
        {6, &RandomActions::ChooseFromTheMenu}, {4, &RandomActions::PressNew},
        {3, &RandomActions::PressRemove},       {4, &RandomActions::PressMove},
        {3, &RandomActions::ClickTab},          {5, &RandomActions::TypeText},
        {4, &RandomActions::StoreText},         {1, &RandomActions::CancelText},
        {6, &RandomActions::WalkByArrow},       {14, &RandomActions::ClickRow}};
    size_t dice = Below(50);
    const auto* action = actions;
    for (; dice >= action->first; ++action) {
        dice -= action->first;
    }
    return Plain.Exists ? (this->*action->second)() : ChooseFromTheMenu();
}

QString RandomActions::ChooseFromTheMenu() {
    const QString entry =
        Plain.Exists ? AnyOf({u"New"_s, u"Open"_s, u"Save"_s, u"Save_as"_s, u"Run"_s}) : u"New"_s;
    bool goesOn = true;
    QString script;
    QString file;
    if (entry == u"New") {
        script = AnswerWhetherToSave(goesOn, true);
        if (goesOn) {
            Plain.Fresh();
        }
    } else if (entry == u"Open") {
        script = AnswerWhetherToSave(goesOn, false);
        file = goesOn ? AnyOf({u""_s, u"a.tvq"_s, u"b.tvq"_s, u"nowhere/a.tvq"_s}) : QString();
        script += goesOn ? u"pick:%1 "_s.arg(file) : QString();
        if (Plain.Disk.contains(file)) {
            Plain.Load(Plain.Disk[file], file);
        }
    } else if (entry == u"Save") {
        script = Plain.File.isEmpty() ? InventFileToSaveTo(file) : QString();
        Plain.Save(file);
    } else if (entry == u"Save_as") {
        script = InventFileToSaveTo(file);
        const QString former = std::exchange(Plain.File, {});
        if (!Plain.Save(file)) {
            Plain.File = former;
        }
        Plain.SetCaption();
    }
    return script + u"file:"_s + entry;
}

/// How the user answers where the document has changed, and whether the command goes on then;
/// where saving fails it does if @p evenUnsaved.
QString RandomActions::AnswerWhetherToSave(bool& goesOn, bool evenUnsaved) {
    if (!Plain.Changed) {
        return {};
    }
    const QString answer = AnyOf({u"yes "_s, u"no "_s, u"stay "_s});
    QString file;
    QString choice;
    if (answer == u"yes ") {
        choice = Plain.File.isEmpty() ? InventFileToSaveTo(file) : QString();
        goesOn = Plain.Save(file) || evenUnsaved;
    } else {
        goesOn = answer == u"no ";
    }
    return answer + choice;
}

/// What the user chooses in the dialogs for a file to save to, until the program takes it.
QString RandomActions::InventFileToSaveTo(QString& file) {
    QString script;
    bool taken = true;
    do {
        file = AnyOf({QString(), u"a.tvq"_s, u"b.tvq"_s, u"b"_s, u"nowhere/a.tvq"_s});
        script += u"pick:%1 "_s.arg(file);
        file += file == u"b" ? u".tvq"_s : QString();
        taken = !Plain.Disk.contains(file) || Below(2) == 0;
        script += !Plain.Disk.contains(file) ? QString() : taken ? u"yes "_s : u"no "_s;
    } while (!taken);
    return script;
}

QString RandomActions::PressNew() {
    if (Plain.Tree().size() >= 60) {
        return {};
    }
    Plain.New();
    return AnyOf({u"New"_s, u"New:Enter"_s});
}

QString RandomActions::PressRemove() {
    if (Plain.Siblings(Plain.Selected()).size() > 1) {
        Plain.Remove();
    }
    return u"Remove"_s;
}

QString RandomActions::PressMove() {
    const bool down = Below(2) == 0;
    if (Plain.Movable) {
        Plain.Move(down);
    }
    return down ? AnyOf({u"Move_down"_s, u"Move:Down"_s}) : AnyOf({u"Move_up"_s, u"Move:Up"_s});
}

QString RandomActions::ClickTab() {
    const size_t tab = Below(2);
    if (tab != std::exchange(Plain.Tab, tab)) {
        Plain.Rebuild();
    }
    return u"tab:%1"_s.arg(tab + 1);
}

QString RandomActions::TypeText() {
    const bool anew = Below(2) == 0;
    const QString text = AnyOf(
        {u"zz"_s, u"FILE1"_s, u"X"_s, u"${FILE1}"_s, u"z${x}y"_s, u"${NO}"_s, u"${X"_s, u"z z"_s});
    Plain.Editing = true;
    Plain.Box = anew ? text : Plain.Box + text;
    return (anew ? u"Value:Ctrl+A Value:Del type:"_s : u"Value:End type:"_s) +
           QString(text).replace(u' ', u'_');
}

QString RandomActions::StoreText() {
    if (Plain.Editing) {
        Plain.Store();
    }
    return AnyOf({u"Ok"_s, u"Value:Enter"_s, u"Document:Return"_s});
}

QString RandomActions::CancelText() {
    if (Plain.Editing) {
        Plain.Select(Plain.Selected());
    }
    return AnyOf({u"Cancel"_s, u"Value:Esc"_s, u"Document:Esc"_s});
}

QString RandomActions::WalkByArrow() {
    const bool down = Below(2) == 0;
    if (down ? Plain.Selected() + 1 < Plain.Tree().size() : Plain.Selected() > 0) {
        Plain.Select(down ? Plain.Selected() + 1 : Plain.Selected() - 1);
    }
    return down ? u"Value:Down"_s : u"Value:Up"_s;
}

QString RandomActions::ClickRow() {
    const size_t each = Below(Plain.Tree().size());
    const bool isBranch = Model::End(Plain.Tree(), each) > each + 1;
    const QString spot = AnyOf({u"click"_s, u"mark"_s, isBranch ? u"branch"_s : u"mark"_s});
    Line& line = Plain.Tree()[each];
    if (!Plain.InSight(each)) {
        return {};
    }
    if (spot == u"click") {
        Plain.Select(each);
    } else if (spot == u"mark") {
        Plain.Check(each);
    } else {
        line.Open = line.Shown = !line.Shown;
    }
    return u"%1:%2"_s.arg(spot).arg(each + 1);
}

void RandomActions::ExpectTheModelAgrees() {
    ExpectTheWindowAgrees();
    const std::string shown = Shown();
    const int selected = static_cast<int>(Plain.Selected()) + 1;
    // Where the rows of the former tree didn't all fit, which may be that of the other tab, a
    // rebuild also opens what hides the item that has the place of the former top row.
    const int fitting = Tree()->viewport()->height() / Tree()->sizeHintForRow(0);
    const bool scrolled = std::max(FormerRows, Plain.Tree().size()) > size_t(fitting);
    for (size_t top = 0; scrolled && top < Plain.Tree().size() &&
                         shown != Outline(Plain.Tree(), &Line::Shown, selected);
         ++top) {
        const Lines former = Plain.Tree();
        Plain.Reveal(top);
        if (shown != Outline(Plain.Tree(), &Line::Shown, selected)) {
            Plain.Tree() = former;
        }
    }
    EXPECT_EQ(shown, Outline(Plain.Tree(), &Line::Shown, selected));
    EXPECT_EQ(Stored(1), Outline(Plain.Document[0], &Line::Open));
    EXPECT_EQ(Stored(2), Outline(Plain.Document[1], &Line::Open));
    EXPECT_EQ(Window().tvwContent.SelectedItem()->Index(), selected);
    const bool siblings = Plain.Siblings(Plain.Selected()).size() > 1;
    EXPECT_EQ(Enabled(), std::string("New") + (siblings ? " Remove" : "") +
                             (Plain.Movable ? " Move" : "") + " Value" +
                             (Plain.Editing ? " Ok Cancel" : ""));
    EXPECT_EQ(Box()->text(), Plain.Box);
    EXPECT_EQ(Window().Caption(), Plain.Caption);
    EXPECT_EQ(Changed(), Plain.Changed);
}

void RandomActions::StartOver(unsigned seed) {
    TakeDown();
    SetGlobalApplication(std::make_shared<Application>());
    Random.seed(seed);
    Plain = {};
    Scripts.clear();
    for (const QString& file : {u"a.tvq"_s, u"b.tvq"_s}) {
        QFile::remove(Path(file));
    }
    StoreBytes(Path(u"run.tvq"_s),
               DocumentImage(Sketches("sleep(0.5),zz(1)"), Sketches("FILE1(~)")));
    Plain.Disk[u"run.tvq"_s] = {Lines{{0, u"sleep"_s}, {1, u"0.5"_s}, {0, u"zz"_s}, {1, u"1"_s}},
                                Lines{{0, u"FILE1"_s}, {1, {}}}};
}

void RandomActions::ActAtRandom(unsigned count) {
    for (unsigned action = 0; action < count && !HasFailure(); ++action) {
        ActionsBesideAChild += Runner().Running();
        FormerRows = Plain.Tree().size();
        Scripts += Invent();
        Act(Scripts.last());
        ExpectTheModelAgrees();
    }
}

void RandomActions::ActInsideARun(unsigned count) {
    FormerRows = Plain.Tree().size();
    Scripts += (Plain.Changed ? u"no "_s : QString()) + u"pick:run.tvq file:Open"_s;
    Plain.Load(Plain.Disk[u"run.tvq"_s], u"run.tvq"_s);
    Act(Scripts.last());
    ExpectTheModelAgrees();

    const qsizetype before = Scripts.size();
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, &clock, [&] {
        if (Runner().Running()) {
            clock.stop();
            ActAtRandom(count);
        }
    });
    clock.start(0);
    Act("file:Run");
    EXPECT_EQ(Scripts.size(), before + count);
    ExpectTheModelAgrees();
    // Whatever was done meanwhile, the run is that of the document at its start; but another run
    // inside of it empties the log.
    if (!Scripts.mid(before).contains(u"file:Run")) {
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
        EXPECT_FALSE(HasFailure()) << "seed " << seed + sequence << ", actions "
                                   << Scripts.join(u"; "_s).right(400).toStdString();
    }
    EXPECT_GE(ActionsBesideAChild, sequences);
}

} // namespace
