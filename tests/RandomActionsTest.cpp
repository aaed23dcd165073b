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
        size_t next = static_cast<size_t>(above + 1);
        while (next < Tree().size() && Above(Tree(), next) == above) {
            siblings.push_back(next);
            next = End(Tree(), next);
        }
        return siblings;
    }

    /// The positions of the lines that can hide a line.
    std::vector<size_t> Hiding(size_t each) const {
        std::vector<size_t> lines;
        for (int above = Above(Document[Tab], each); above >= 0;
             above = Above(Document[Tab], size_t(above))) {
            lines.push_back(size_t(above));
        }
        return lines;
    }
    bool InSight(size_t each) {
        const std::vector<size_t> hiding = Hiding(each);
        return std::all_of(hiding.begin(), hiding.end(), [&](size_t a) { return Tree()[a].Shown; });
    }
    /// Opens on the screen what hides a line.
    void Reveal(size_t each) {
        for (const size_t above : Hiding(each)) {
            Tree()[above].Shown = true;
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
    std::string LatestScripts() {
        return Scripts.last(std::min<qsizetype>(Scripts.size(), 12)).join(u"; "_s).toStdString();
    }

    /// How many actions began while a child lived.
    unsigned ActionsBesideAChild = 0;

private:
    size_t Below(size_t end) { return Random() % end; }
    bool OneOfTwo() { return Below(2) == 0; }
    QString AnyOf(const QStringList& texts) {
        return texts[qsizetype(Below(size_t(texts.size())))];
    }

    // Each of these makes the model do an action, and gives the script of it for the program. The
    // script is empty where the action can't be done.
    QString Invent();
    QString GiveFileCommand();
    QString ChooseNew();
    QString ChooseOpen();
    QString ChooseSave();
    QString ChooseSaveAs();
    QString PressNew();
    QString PressRemove();
    QString PressMove();
    QString ClickTab();
    QString TypeText();
    QString StoreText();
    QString CancelText();
    QString WalkByArrow();
    QString ClickLabel();
    QString ClickMark();
    QString ClickBranch();
    QString AnswerWhetherToSave(bool& goesOn, bool evenUnsaved);
    QString InventFileToSaveTo(QString& file);

    void ExpectTheModelAgrees();

    std::mt19937 Random;
    Model Plain;
    QStringList Scripts;
    /// How many rows the tree on view had before the latest action.
    size_t FormerRows = 0;
};

QString RandomActions::Invent() {
    if (!Plain.Exists) {
        return ChooseNew();
    }
    const std::pair<size_t, QString (RandomActions::*)()> actions[] = {
        {12, &RandomActions::GiveFileCommand}, {7, &RandomActions::PressNew},
        {6, &RandomActions::PressRemove},      {8, &RandomActions::PressMove},
        {5, &RandomActions::ClickTab},         {11, &RandomActions::TypeText},
        {8, &RandomActions::StoreText},        {3, &RandomActions::CancelText},
        {11, &RandomActions::WalkByArrow},     {10, &RandomActions::ClickLabel},
        {9, &RandomActions::ClickMark},        {10, &RandomActions::ClickBranch}};
    size_t dice = Below(100);
    for (const auto& [weight, invent] : actions) {
        if (dice < weight) {
            return (this->*invent)();
        }
        dice -= weight;
    }
    ADD_FAILURE() << "the weights don't add up to 100";
    return {};
}

QString RandomActions::GiveFileCommand() {
    switch (Below(5)) {
    case 0:
        return ChooseNew();
    case 1:
        return ChooseOpen();
    case 2:
        return ChooseSave();
    case 3:
        return ChooseSaveAs();
    default:
        return u"file:Run"_s;
    }
}

/// How the user answers where the document has changed, and whether the command goes on then;
/// where saving fails it does if @p evenUnsaved.
QString RandomActions::AnswerWhetherToSave(bool& goesOn, bool evenUnsaved) {
    goesOn = true;
    if (!Plain.Changed) {
        return {};
    }
    const QString answer = AnyOf({u"yes "_s, u"no "_s, u"stay "_s});
    if (answer != u"yes ") {
        goesOn = answer == u"no ";
        return answer;
    }
    QString file;
    const QString choice = Plain.File.isEmpty() ? InventFileToSaveTo(file) : QString();
    goesOn = Plain.Save(file) || evenUnsaved;
    return answer + choice;
}

/// What the user chooses where the program asks for a file to save to.
QString RandomActions::InventFileToSaveTo(QString& file) {
    file = AnyOf({QString(), u"a.tvq"_s, u"b.tvq"_s, u"nowhere/a.tvq"_s});
    return u"pick:%1 "_s.arg(file);
}

QString RandomActions::ChooseNew() {
    bool goesOn = false;
    const QString answer = AnswerWhetherToSave(goesOn, true);
    if (goesOn) {
        Plain.Fresh();
    }
    return answer + u"file:New"_s;
}

QString RandomActions::ChooseOpen() {
    bool goesOn = false;
    QString script = AnswerWhetherToSave(goesOn, false);
    if (goesOn) {
        const QString file = AnyOf({QString(), u"a.tvq"_s, u"b.tvq"_s, u"nowhere/a.tvq"_s});
        script += u"pick:%1 "_s.arg(file);
        if (Plain.Disk.contains(file)) {
            Plain.Load(Plain.Disk[file], file);
        }
    }
    return script + u"file:Open"_s;
}

QString RandomActions::ChooseSave() {
    QString file;
    const QString choice = Plain.File.isEmpty() ? InventFileToSaveTo(file) : QString();
    Plain.Save(file);
    return choice + u"file:Save"_s;
}

QString RandomActions::ChooseSaveAs() {
    QString file;
    const QString choice = InventFileToSaveTo(file);
    const QString former = std::exchange(Plain.File, {});
    if (!Plain.Save(file)) {
        Plain.File = former;
    }
    Plain.SetCaption();
    return choice + u"file:Save_as"_s;
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
    const bool down = OneOfTwo();
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
    const bool anew = OneOfTwo();
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
    const bool down = OneOfTwo();
    if (down && Plain.Selected() + 1 < Plain.Tree().size()) {
        Plain.Select(Plain.Selected() + 1);
    } else if (!down && Plain.Selected() > 0) {
        Plain.Select(Plain.Selected() - 1);
    }
    return down ? u"Value:Down"_s : u"Value:Up"_s;
}

QString RandomActions::ClickLabel() {
    const size_t each = Below(Plain.Tree().size());
    if (!Plain.InSight(each)) {
        return {};
    }
    Plain.Select(each);
    return u"click:%1"_s.arg(each + 1);
}

QString RandomActions::ClickMark() {
    const size_t each = Below(Plain.Tree().size());
    if (!Plain.InSight(each)) {
        return {};
    }
    Plain.Check(each);
    return u"mark:%1"_s.arg(each + 1);
}

QString RandomActions::ClickBranch() {
    const size_t each = Below(Plain.Tree().size());
    const bool isBranch = Model::End(Plain.Tree(), each) > each + 1;
    if (!isBranch || !Plain.InSight(each)) {
        return {};
    }
    Line& line = Plain.Tree()[each];
    line.Open = line.Shown = !line.Shown;
    return u"branch:%1"_s.arg(each + 1);
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
               DocumentImage(Sketches("sleep(0.3),zz(1)"), Sketches("FILE1(~)")));
    Plain.Disk[u"run.tvq"_s] = {Lines{{0, u"sleep"_s}, {1, u"0.3"_s}, {0, u"zz"_s}, {1, u"1"_s}},
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
        EXPECT_EQ(Log(), Frame(u"sleep 0.3"_s, u"success"_s) + u"\r\n"_s +
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
        ActInsideARun(20);
        ActAtRandom(actions - actions / 2);
        EXPECT_FALSE(HasFailure()) << "seed " << seed + sequence << ", at last " << LatestScripts();
    }
    EXPECT_GE(ActionsBesideAChild, sequences);
}

} // namespace
