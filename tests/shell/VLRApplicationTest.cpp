#include "shell/VLRApplication.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

bool press(int key, Qt::KeyboardModifiers modifiers)
{
    const QKeyEvent event(QEvent::KeyPress, key, modifiers);
    return VLRApplication::sendEditingShortcut(&event);
}

} // namespace

TEST(VLRApplicationTest, EditingShortcutsReachTheFocusedFieldOnlyWithExactlyCtrlOrCtrlShift)
{
    QWidget window;
    auto* field = new QLineEdit("draft", &window);
    (new QVBoxLayout(&window))->addWidget(field);
    window.show();
    QApplication::setActiveWindow(&window);
    field->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == field; }));

    EXPECT_TRUE(press(Qt::Key_A, Qt::ControlModifier));
    EXPECT_EQ(field->selectedText(), "draft");
    EXPECT_TRUE(press(Qt::Key_X, Qt::ControlModifier));
    EXPECT_EQ(field->text(), "");
    EXPECT_TRUE(press(Qt::Key_Z, Qt::ControlModifier));
    EXPECT_EQ(field->text(), "draft");
    EXPECT_TRUE(press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier));
    EXPECT_EQ(field->text(), "");
    field->undo();

    // Anything more held, or no control with the action, leaves the key to
    // the normal path.
    field->selectAll();
    EXPECT_FALSE(press(Qt::Key_X, Qt::ControlModifier | Qt::ShiftModifier));
    EXPECT_FALSE(press(Qt::Key_C, Qt::ControlModifier | Qt::AltModifier));
    EXPECT_FALSE(press(Qt::Key_V, Qt::NoModifier));
    EXPECT_EQ(field->text(), "draft");
    field->clearFocus();
    window.setFocus();
    EXPECT_FALSE(press(Qt::Key_A, Qt::ControlModifier));
}
