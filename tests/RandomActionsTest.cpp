#include "WindowDriver.h"

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
    size_t Below(size_t end) { return Random() % end; }
    QString AnyOf(const QStringList& texts) {
        return texts[qsizetype(Below(size_t(texts.size())))];
    }

    /// A script of one action, which the model has carried out.
    QString Invent();
    QString InventFileCommand();
    QString InventAnswer(bool& goesOn, bool always);
    void ExpectAgreement();

    std::mt19937 Random;
    Model Plain;
    /// How many rows the tree on view had before the latest action.
    size_t FormerRows = 0;
};

/// How the user answers where the document has changed, and whether the command goes on then;
/// it does @p always where saving fails.
QString RandomActions::InventAnswer(bool& goesOn, bool always) {
    if (!Plain.Changed) {
        return {};
    }
    const QString answer = AnyOf({u"yes "_s, u"no "_s, u"stay "_s});
    goesOn = answer != u"stay ";
    if (answer != u"yes ") {
        return answer;
    }
    const bool asks = Plain.File.isEmpty();
    const QString file = AnyOf({QString(), u"a.tvq"_s, u"nowhere/a.tvq"_s});
    goesOn = Plain.Save(file) || always;
    return answer + (asks ? u"pick:%1 "_s.arg(file) : QString());
}

QString RandomActions::InventFileCommand() {
    bool goesOn = true;
    const QString file = AnyOf({QString(), u"a.tvq"_s, u"b.tvq"_s, u"nowhere/a.tvq"_s});
    const QString entry = Plain.Exists ? AnyOf({u"N"_s, u"P"_s, u"S"_s, u"A"_s, u"R"_s}) : u"N"_s;
    QString script;
    if (entry == u"N") {
        script = InventAnswer(goesOn, true);
        if (goesOn) {
            Plain.Fresh();
        }
    } else if (entry == u"P") {
        script = InventAnswer(goesOn, false);
        if (goesOn) {
            script += u"pick:%1 "_s.arg(file);
        }
        if (goesOn && Plain.Disk.contains(file)) {
            Plain.Load(Plain.Disk[file], file);
        }
    } else if (entry == u"R") {
    } else {
        const QString former = Plain.File;
        if (entry == u"A") {
            Plain.File.clear();
        }
        script = Plain.File.isEmpty() ? u"pick:%1 "_s.arg(file) : QString();
        if (!Plain.Save(file)) {
            Plain.File = former;
        }
        if (entry == u"A") {
            Plain.SetCaption();
        }
    }
    return script + u"file:"_s + entry;
}

QString RandomActions::Invent() {
    const size_t dice = Below(100);
    if (!Plain.Exists || dice < 12) {
        return InventFileCommand();
    }
    const bool down = Below(2) == 0;
    const size_t count = Plain.Tree().size();
    if (dice < 19 && count < 60) {
        Plain.New();
        return AnyOf({u"New"_s, u"New:Enter"_s});
    }
    if (dice < 25) {
        if (Plain.Siblings(Plain.Selected()).size() > 1) {
            Plain.Remove();
        }
        return u"Remove"_s;
    }
    if (dice < 33) {
        if (Plain.Movable) {
            Plain.Move(down);
        }
        return AnyOf(down ? QStringList{u"Move_down"_s, u"Move:Down"_s}
                          : QStringList{u"Move_up"_s, u"Move:Up"_s});
    }
    if (dice < 38) {
        if (const size_t tab = down; tab != std::exchange(Plain.Tab, tab)) {
            Plain.Rebuild();
        }
        return u"tab:%1"_s.arg(Plain.Tab + 1);
    }
    if (dice < 49) {
        const QString text = AnyOf({u"zz"_s, u"FILE1"_s, u"X"_s, u"${FILE1}"_s, u"z${x}y"_s,
                                    u"${NO}"_s, u"${X"_s, u"z z"_s});
        Plain.Editing = true;
        Plain.Box = down ? text : Plain.Box + text;
        return (down ? u"Value:Ctrl+A Value:Del type:"_s : u"Value:End type:"_s) +
               QString(text).replace(u' ', u'_');
    }
    if (dice < 57) {
        if (Plain.Editing) {
            Plain.Store();
        }
        return AnyOf({u"Ok"_s, u"Value:Enter"_s, u"Document:Return"_s});
    }
    if (dice < 60) {
        if (Plain.Editing) {
            Plain.Select(Plain.Selected());
        }
        return AnyOf({u"Cancel"_s, u"Value:Esc"_s, u"Document:Esc"_s});
    }
    if (dice < 71) {
        if (down ? Plain.Selected() + 1 < count : Plain.Selected() > 0) {
            Plain.Select(Plain.Selected() + (down ? 1 : -1UL));
        }
        return down ? u"Value:Down"_s : u"Value:Up"_s;
    }
    const size_t each = Below(count);
    const bool isBranch = Model::End(Plain.Tree(), each) > each + 1;
    if (!Plain.InSight(each)) {
        return {};
    }
    if (dice < 81) {
        Plain.Select(each);
    } else if (dice < 90 || !isBranch) {
        Plain.Check(each);
    } else {
        Plain.Tree()[each].Open = Plain.Tree()[each].Shown = !Plain.Tree()[each].Shown;
    }
    return (dice < 81                ? u"click:"_s
            : dice < 90 || !isBranch ? u"mark:"_s
                                     : u"branch:"_s) +
           QString::number(each + 1);
}

void RandomActions::ExpectAgreement() {
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

TEST_F(RandomActions, AgreeWithAPlainModel) {
    const auto setting = [](const char* name, unsigned fallback) {
        return qEnvironmentVariable(name, QString::number(fallback)).toUInt();
    };
    const unsigned sequences = setting("RIVENFALL_RANDOM_SEQUENCES", 10);
    const unsigned actions = setting("RIVENFALL_RANDOM_ACTIONS", 300);
    const unsigned seed = setting("RIVENFALL_RANDOM_SEED", std::random_device()());
    std::cout << "RIVENFALL_RANDOM_SEED=" << seed << std::endl;
    for (unsigned sequence = 0; sequence < sequences && !HasFailure(); ++sequence) {
        TakeDown();
        SetGlobalApplication(std::make_shared<Application>());
        Random.seed(seed + sequence);
        Plain = {};
        for (const QString& file : {u"a.tvq"_s, u"b.tvq"_s}) {
            QFile::remove(Path(file));
        }
        std::string latest;
        for (unsigned action = 0; action < actions && !HasFailure(); ++action) {
            FormerRows = Plain.Tree().size();
            const QString script = Invent();
            latest = latest.substr(latest.size() / 2) + script.toStdString() + "; ";
            Act(script);
            ExpectAgreement();
        }
        EXPECT_FALSE(HasFailure()) << "seed " << seed + sequence << ", at last " << latest;
    }
}

} // namespace
