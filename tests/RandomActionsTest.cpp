#include "WindowDriver.h"

#include <iostream>
#include <map>
#include <random>

using namespace rivenfall;

namespace {

/// A node of the model.
struct Item {
    QString Value;
    bool On = true;
    /// What the document knows of the branch, and what the window shows.
    bool Open = true, Shown = true;
    std::vector<Item> Below;
};

using Items = std::vector<Item>;

/// Where an item stands: its place from 0 on each level.
using Place = std::vector<size_t>;

struct Content {
    std::array<Items, 2> Trees;
};

/// A plain picture of the program: what each action makes of the document and
/// the window.
class Model {
public:
    Content Document;
    size_t Tab = 0;
    std::array<int, 2> Positions = {1, 1};
    bool Exists = false, Changed = false, Editing = false;
    bool Movable = false;
    QString Box, File, Caption, Log;
    std::map<QString, Content> Disk;

    Items& Tree() { return Document.Trees[Tab]; }
    int& Position() { return Positions[Tab]; }

    /// The places of all items, in the order of the tree.
    std::vector<Place> Order() {
        std::vector<Place> order;
        Walk(Tree(), {}, order);
        return order;
    }
    Place Selected() { return Order()[static_cast<size_t>(Position()) - 1]; }
    int PositionOf(const Place& place) {
        const std::vector<Place> order = Order();
        return static_cast<int>(std::find(order.begin(), order.end(), place) - order.begin()) + 1;
    }
    Items& Siblings(const Place& place) {
        Items* items = &Tree();
        for (size_t level = 0; level + 1 < place.size(); ++level)
            items = &(*items)[place[level]].Below;
        return *items;
    }
    Item& At(const Place& place) { return Siblings(place)[place.back()]; }
    bool IsAlternative(const Place& place) const { return place.size() == (Tab == 0 ? 3 : 2); }

    /// Opens on the screen what hides an item.
    void Reveal(Place place) {
        for (place.pop_back(); !place.empty(); place.pop_back())
            At(place).Shown = true;
    }
    void Select(int position) {
        Position() = position;
        Reveal(Selected());
        Box = At(Selected()).Value;
        Movable = Siblings(Selected()).size() > 1;
        Editing = false;
    }
    void Rebuild() {
        const std::vector<Place> order = Order();
        for (const Place& place : order)
            At(place).Shown = At(place).Open;
        for (auto place = order.rbegin(); place != order.rend(); ++place) {
            if (At(*place).Open) {
                Reveal(*place);
                break;
            }
        }
        SetCaption();
        Select(Position());
    }
    void SetCaption() {
        Caption = (File.isEmpty() ? u"New File"_qs : File) +
                  u" - OMRA Rivenfall Compiler Controller 1.5.0"_qs;
    }
    /// True if no closed branch hides the item.
    bool InSight(Place place) {
        for (place.pop_back(); !place.empty(); place.pop_back()) {
            if (!At(place).Shown)
                return false;
        }
        return true;
    }
    /// Takes over what the window may choose where its rows don't all fit: a
    /// rebuild also opens what hides the item at the former place of the top row.
    void TakeOver(const QString& shown) {
        const Item* selected = &At(Selected());
        for (const Place& place : Order()) {
            if (Order().size() <= 16 || shown == Outline(Tree(), true, selected))
                return;
            const Content former = Document;
            Reveal(place);
            if (shown != Outline(Tree(), true, &At(Selected())))
                Document = former;
        }
    }
    void New() {
        Place place = Selected();
        Item added{At(place).Value, true, true, true, {}};
        if (!IsAlternative(place))
            added.Below = {Item()};
        if (Tab == 0 && place.size() == 1)
            added.Below[0].Below = {Item{u"${FILE1}"_qs, true, true, true, {}}};
        Items& siblings = Siblings(place);
        siblings.insert(siblings.begin() + static_cast<std::ptrdiff_t>(++place.back()), added);
        if (IsAlternative(place))
            SwitchOthersOff(place);
        Rebuild();
        Select(PositionOf(place));
        Changed = true;
    }
    void Remove() {
        Place place = Selected();
        Items& siblings = Siblings(place);
        siblings.erase(siblings.begin() + static_cast<std::ptrdiff_t>(place.back()));
        // The next sibling, else the one before, is selected, and the one before
        // that remembered.
        const size_t neighbour = std::min(place.back(), siblings.size() - 1);
        if (neighbour > 0) {
            place.back() = neighbour - 1;
            Position() = PositionOf(place);
        } else if (siblings.size() == 1) {
            place.pop_back();
            Position() = place.empty() ? 1 : PositionOf(place);
        }
        Changed = true;
        Rebuild();
    }
    void Move(bool down) {
        Place place = Selected();
        Items& siblings = Siblings(place);
        const Item moved = siblings[place.back()];
        siblings.erase(siblings.begin() + static_cast<std::ptrdiff_t>(place.back()));
        const size_t places = siblings.size() + 1;
        place.back() = (place.back() + (down ? 1 : places - 1)) % places;
        siblings.insert(siblings.begin() + static_cast<std::ptrdiff_t>(place.back()), moved);
        Changed = true;
        Rebuild();
        Select(PositionOf(place));
    }
    void Check(const Place& place) {
        At(place).On = !At(place).On;
        if (At(place).On && IsAlternative(place))
            SwitchOthersOff(place);
        Changed = true;
    }
    void Store() {
        At(Selected()).Value = Box;
        Changed = true;
        Rebuild();
    }
    void Load(const Content& content, const QString& file) {
        Document = content;
        File = file;
        Tab = 0;
        Positions = {1, 1};
        Exists = true;
        Changed = false;
        for (size_t tab : {1U, 0U}) {
            Tab = tab;
            for (const Place& place : Order())
                At(place).Open = true;
        }
        Rebuild();
        Movable = true;
    }
    void Fresh() {
        Content content;
        content.Trees[0] = {Item()};
        content.Trees[0][0].Below = {Item()};
        content.Trees[0][0].Below[0].Below = {Item{u"${FILE1}"_qs, true, true, true, {}}};
        content.Trees[1] = {Item{u"FILE1"_qs, true, true, true, {Item()}}};
        Load(content, {});
    }
    /// Saves to @p chosen where the document has no file; empty is a dialog that
    /// is cancelled.
    bool Save(const QString& chosen) {
        const QString file = File.isEmpty() ? chosen : File;
        if (file.isEmpty() || file.contains(u'/'))
            return false;
        File = file;
        Disk[File] = Document;
        Changed = false;
        return true;
    }
    QString Expanded(const QString& text, std::vector<const Item*> busy = {}) const {
        const qsizetype open = text.indexOf(u"${"_qs);
        const qsizetype close = open < 0 ? -1 : text.indexOf(u'}', open);
        if (close < 0)
            return text;
        const QString name = text.sliced(open + 2, close - open - 2);
        QString value;
        for (const Item& variable : Document.Trees[1]) {
            if (!variable.On || variable.Value.compare(name, Qt::CaseInsensitive) != 0)
                continue;
            for (const Item& each : variable.Below) {
                if (!each.On || std::count(busy.begin(), busy.end(), &variable) > 0)
                    continue;
                std::vector<const Item*> inner = busy;
                inner.push_back(&variable);
                value = Expanded(each.Value, inner);
                break;
            }
            break;
        }
        return text.first(open) + value + Expanded(text.sliced(close + 1), busy);
    }
    /// Runs a document none of whose programs exist.
    void Run() {
        QStringList frames;
        for (const Item& compiler : Document.Trees[0]) {
            if (!compiler.On)
                continue;
            QStringList words = {Expanded(compiler.Value)};
            for (const Item& parameter : compiler.Below) {
                if (parameter.On && !parameter.Value.isEmpty())
                    words += Expanded(parameter.Value);
                for (const Item& value : parameter.Below) {
                    if (parameter.On && value.On && !value.Value.isEmpty())
                        words += Expanded(value.Value);
                }
            }
            for (QString& word : words) {
                if (word.isEmpty() || word.contains(u' '))
                    word = u'"' + word + u'"';
            }
            frames += Frame(words.join(u' '), u"error: CreateProcess failed (2)"_qs);
        }
        if (!frames.isEmpty()) {
            Log = frames.join(u"\r\n"_qs);
            return;
        }
        Log += (Log.isEmpty() ? u""_qs : u"\r\n"_qs) +
               Frame(u"No compilers to run!"_qs, u"Please select some..."_qs);
    }
    /// The outline of a tree: of the window's, or of the document's.
    QString Outline(const Items& items, bool window, const Item* selected = nullptr) const {
        QStringList nodes;
        for (const Item& item : items) {
            const bool open = window ? item.Shown : item.Open;
            QString node = &item == selected ? u"*"_qs : QString();
            node += (item.On ? u""_qs : u"!"_qs) + (item.Value.isEmpty() ? u"~"_qs : item.Value);
            if (!item.Below.empty())
                node += (open ? u'(' : u'[') + Outline(item.Below, window, selected) +
                        (open ? u')' : u']');
            nodes += node;
        }
        return nodes.join(u',');
    }

private:
    static void Walk(const Items& items, const Place& above, std::vector<Place>& order) {
        for (size_t each = 0; each < items.size(); ++each) {
            Place place = above;
            place.push_back(each);
            order.push_back(place);
            Walk(items[each].Below, place, order);
        }
    }
    void SwitchOthersOff(const Place& place) {
        Items& siblings = Siblings(place);
        for (size_t each = 0; each < siblings.size(); ++each) {
            if (each != place.back())
                siblings[each].On = false;
        }
    }
};

/// The number in the environment variable @p name, or @p fallback.
unsigned Setting(const char* name, unsigned fallback) {
    bool set = false;
    const unsigned number = qEnvironmentVariable(name).toUInt(&set);
    return set ? number : fallback;
}

class RandomActions : public WindowTest {
protected:
    unsigned Below(size_t end) { return static_cast<unsigned>(Random() % end); }
    QString AnyOf(const QStringList& texts) { return texts[Below(texts.size())]; }

    /// A script of one action, which the model has carried out.
    QString Invent();
    QString Answer(bool& goesOn, bool inFileNew);
    void ExpectAgreement();

    std::mt19937 Random;
    Model Plain;
};

/// How the user answers where the document has changed, and what comes of it.
QString RandomActions::Answer(bool& goesOn, bool inFileNew) {
    goesOn = true;
    if (!Plain.Changed)
        return {};
    const QString answer = AnyOf({u"yes "_qs, u"no "_qs, u"stay "_qs});
    if (answer == u"stay ")
        goesOn = false;
    if (answer != u"yes ")
        return answer;
    if (!Plain.File.isEmpty()) {
        Plain.Save({});
        return answer;
    }
    const QString file = AnyOf({QString(), u"a.tvq"_qs, u"nowhere/a.tvq"_qs});
    goesOn = Plain.Save(file) || inFileNew;
    return answer + (file.isEmpty() ? u"pick: "_qs : u"pick:%1 "_qs.arg(file));
}

QString RandomActions::Invent() {
    const QStringList words = {u"zz"_qs,     u"FILE1"_qs, u"X"_qs,   u"${FILE1}"_qs,
                               u"z${X}y"_qs, u"${NO}"_qs, u"${X"_qs, u"z z"_qs};
    bool goesOn = true;
    const unsigned dice = Below(100);
    if (!Plain.Exists || dice < 3) {
        const QString answer = Answer(goesOn, true);
        if (goesOn)
            Plain.Fresh();
        return answer + u"file:N"_qs;
    }
    if (dice < 7) {
        QString script = Answer(goesOn, false);
        const QString file = AnyOf({QString(), u"a.tvq"_qs, u"b.tvq"_qs, u"none.tvq"_qs});
        if (!goesOn)
            return script + u"file:P"_qs;
        if (Plain.Disk.contains(file))
            Plain.Load(Content(Plain.Disk[file]), file);
        return script + u"pick:%1 file:P"_qs.arg(file);
    }
    if (dice < 11) {
        const QString file = AnyOf({QString(), u"a.tvq"_qs, u"b.tvq"_qs, u"nowhere/a.tvq"_qs});
        if (Below(2) == 0) {
            const bool asks = Plain.File.isEmpty();
            Plain.Save(file);
            return asks ? u"pick:%1 file:S"_qs.arg(file) : u"file:S"_qs;
        }
        const QString former = std::exchange(Plain.File, {});
        if (!Plain.Save(file))
            Plain.File = former;
        Plain.SetCaption();
        return u"pick:%1 file:A"_qs.arg(file);
    }
    if (dice < 13) {
        Plain.Run();
        return u"file:R"_qs;
    }
    const Place selected = Plain.Selected();
    const int count = static_cast<int>(Plain.Order().size());
    if (dice < 20 && count < 60) {
        Plain.New();
        return AnyOf({u"new"_qs, u"new:Enter"_qs});
    }
    if (dice < 26) {
        if (Plain.Siblings(selected).size() > 1)
            Plain.Remove();
        return u"remove"_qs;
    }
    if (dice < 34) {
        const bool down = Below(2) == 0;
        if (Plain.Movable)
            Plain.Move(down);
        return down ? AnyOf({u"down"_qs, u"move:Down"_qs}) : AnyOf({u"up"_qs, u"move:Up"_qs});
    }
    if (dice < 39) {
        const size_t tab = Below(2);
        if (tab != std::exchange(Plain.Tab, tab))
            Plain.Rebuild();
        return u"tab:%1"_qs.arg(tab + 1);
    }
    if (dice < 50) {
        const QString text = AnyOf(words);
        Plain.Editing = true;
        Plain.Box = Below(3) == 0 ? Plain.Box + text : text;
        return (Plain.Box == text ? u"box:Ctrl+A box:Del "_qs : u"box:End "_qs) + u"type:"_qs +
               QString(text).replace(u' ', u'_');
    }
    if (dice < 58) {
        if (Plain.Editing)
            Plain.Store();
        return AnyOf({u"ok"_qs, u"box:Enter"_qs, u"tree:Return"_qs});
    }
    if (dice < 61) {
        if (Plain.Editing)
            Plain.Select(Plain.Position());
        return AnyOf({u"cancel"_qs, u"box:Esc"_qs, u"tree:Esc"_qs});
    }
    if (dice < 72) {
        const bool down = Below(2) == 0;
        const int target = Plain.Position() + (down ? 1 : -1);
        if (target >= 1 && target <= count)
            Plain.Select(target);
        return down ? u"box:Down"_qs : u"box:Up"_qs;
    }
    const Place place = Plain.Order()[Below(static_cast<size_t>(count))];
    const int position = Plain.PositionOf(place);
    if (!Plain.InSight(place))
        return {};
    if (dice < 82) {
        Plain.Select(position);
        return u"click:%1"_qs.arg(position);
    }
    if (dice < 91) {
        Plain.Check(place);
        return u"mark:%1"_qs.arg(position);
    }
    if (Plain.At(place).Below.empty())
        return {};
    Plain.At(place).Shown = Plain.At(place).Open = !Plain.At(place).Shown;
    return u"branch:%1"_qs.arg(position);
}

void RandomActions::ExpectAgreement() {
    Plain.TakeOver(QString::fromStdString(Shown()));
    const Item* selected = &Plain.At(Plain.Selected());
    EXPECT_EQ(Shown(), Plain.Outline(Plain.Tree(), true, selected).toStdString());
    EXPECT_EQ(Stored(Program().Compilers()),
              Plain.Outline(Plain.Document.Trees[0], false).toStdString());
    EXPECT_EQ(Stored(Program().Variables()),
              Plain.Outline(Plain.Document.Trees[1], false).toStdString());
    EXPECT_EQ(Window().tvwContent.SelectedItem()->Index(), Plain.Position());
    const bool siblings = Plain.Siblings(Plain.Selected()).size() > 1;
    EXPECT_EQ(State(), std::string("N") + (siblings ? "R" : "-") + (Plain.Movable ? "M" : "-") +
                           "V" + (Plain.Editing ? "OC" : "--"));
    EXPECT_EQ(Box()->text(), Plain.Box);
    EXPECT_EQ(Window().Caption(), Plain.Caption);
    EXPECT_EQ(Log(), Plain.Log);
    EXPECT_EQ(Changed(), Plain.Changed);
}

TEST_F(RandomActions, AgreeWithAPlainModel) {
    const unsigned sequences = Setting("RIVENFALL_RANDOM_SEQUENCES", 10);
    const unsigned actions = Setting("RIVENFALL_RANDOM_ACTIONS", 300);
    const unsigned seed = Setting("RIVENFALL_RANDOM_SEED", std::random_device()());
    std::cout << "RIVENFALL_RANDOM_SEED=" << seed << std::endl;
    for (unsigned sequence = 0; sequence < sequences && !HasFailure(); ++sequence) {
        TakeDown();
        SetGlobalApplication(std::make_shared<Application>());
        Random.seed(seed + sequence);
        Plain = {};
        for (const QString& file : {u"a.tvq"_qs, u"b.tvq"_qs})
            QFile::remove(Path(file));
        QStringList history;
        for (unsigned action = 0; action < actions && !HasFailure(); ++action) {
            const QString script = Invent();
            history += script;
            Act(script);
            ExpectAgreement();
        }
        EXPECT_FALSE(HasFailure())
            << "seed " << seed + sequence << ", " << history.size() << " actions: "
            << history.last(std::min<qsizetype>(12, history.size())).join(u" / "_qs).toStdString();
    }
}

} // namespace
