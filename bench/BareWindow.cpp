// The yardstick for start and memory: a Qt program with a menu bar and a tree, and nothing else.
// A number as its argument has it fill the tree with as many rows.

#include "BareTree.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.menuBar()->addMenu(u"&File"_s)->addAction(u"E&xit"_s);
    auto* tree = new QTreeWidget(&window);
    tree->setHeaderHidden(true);
    tree->setUniformRowHeights(true);
    window.setCentralWidget(tree);
    window.resize(577, 353);
    if (argc > 1) {
        rivenfall::FillBareTree(*tree, QString::fromLocal8Bit(argv[1]).toInt());
    }
    window.show();
    return QApplication::exec();
}
