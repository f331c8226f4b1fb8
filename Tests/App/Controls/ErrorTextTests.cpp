#include "Controls/ErrorText.h"

#include <QCoreApplication>
#include <QFocusEvent>
#include <gtest/gtest.h>

namespace corvane {
namespace {

// The text that a text view returns has different line ends and spaces.
TEST(ErrorText, settingTheSameMessageAgainKeepsTheSelection) {
    QWidget window;
    ErrorText error(&window);
    window.show();
    for (const QString& message : {QStringLiteral("notify = [\"x\"]\r\nNothing was changed."),
                                   QStringLiteral("my\u00A0folder"), QStringLiteral("a\u2028b")}) {
        error.setMessage(message);
        EXPECT_EQ(error.message(), message);
        error.selectAll();
        error.setMessage(message);
        EXPECT_TRUE(error.textCursor().hasSelection()) << message.toStdString();
    }
}

TEST(ErrorText, aSelectionIsClearedWithTheFocusButNotByAMenuOrAnInactiveWindow) {
    QWidget window;
    ErrorText error(&window);
    error.setMessage(QStringLiteral("Nothing was changed."));
    const auto isSelectedAfterLosing = [&error](Qt::FocusReason reason) {
        error.selectAll();
        QFocusEvent lost(QEvent::FocusOut, reason);
        QCoreApplication::sendEvent(&error, &lost);
        return error.textCursor().hasSelection();
    };
    EXPECT_TRUE(isSelectedAfterLosing(Qt::PopupFocusReason));
    EXPECT_TRUE(isSelectedAfterLosing(Qt::ActiveWindowFocusReason));
    EXPECT_FALSE(isSelectedAfterLosing(Qt::TabFocusReason));
    EXPECT_FALSE(isSelectedAfterLosing(Qt::MouseFocusReason));
}

} // namespace
} // namespace corvane
