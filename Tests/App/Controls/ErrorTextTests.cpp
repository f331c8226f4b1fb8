#include "Controls/ErrorText.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

// The text that a text view returns has other line ends and spaces than these.
TEST(ErrorText, theSameMessageOnceMoreLeavesTheSelection) {
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

} // namespace
} // namespace corvane
