#include "WindowDriver.h"

#include "controls/MessageDialog.h"

#include <QMessageBox>
#include <QTimer>

using namespace rivenfall;

namespace {

const QString Title = u"OMRA Rivenfall Compiler Controller 1.5.0"_s;
/// Calls @p act with each dialog of the kind @p Dialog that comes up while @p show runs.
template <typename Dialog>
void AnswerEach(const std::function<void(Dialog&)>& act, const std::function<void()>& show) {
    QTimer hand;
    QObject::connect(&hand, &QTimer::timeout, &hand, [&act] {
        if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget()))
            act(*dialog);
    });
    hand.start(20);
    show();
}

TEST(MessageDialogTest, AnswersTheSameKeysOnEveryDesktop) {
    const auto answer = [](MessageBoxStyle style, Qt::Key key) {
        MessageBoxAnswer given{};
        AnswerEach<QMessageBox>(
            [key](QMessageBox& box) {
                EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(Title) + 100);
                QTest::keyClick(&box, key);
            },
            [&] { given = ShowMessageDialog(u"?"_s, style, Title); });
        return given;
    };
    // The orders of buttons of the platforms, by their numbers.
    for (const char* layout : {"0", "1", "2", "3"}) {
        qApp->setStyleSheet(u"QDialogButtonBox { button-layout: %1 }"_s.arg(QLatin1String(layout)));
        EXPECT_EQ(answer(MessageBoxStyle::YesNoCancel, Qt::Key_Return), MessageBoxAnswer::Yes);
        EXPECT_EQ(answer(MessageBoxStyle::YesNoCancel, Qt::Key_Escape), MessageBoxAnswer::Cancel);
        EXPECT_EQ(answer(MessageBoxStyle::YesNo, Qt::Key_Return), MessageBoxAnswer::Yes);
        EXPECT_EQ(answer(MessageBoxStyle::YesNo, Qt::Key_Escape), MessageBoxAnswer::No);
    }
    qApp->setStyleSheet({});
    EXPECT_EQ(answer(MessageBoxStyle::Error, Qt::Key_Escape), MessageBoxAnswer::Ok);
}

} // namespace
