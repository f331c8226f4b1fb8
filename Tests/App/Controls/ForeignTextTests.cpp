#include "Controls/ForeignText.h"

#include <QTextDocument>
#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(ForeignText, isOneLineWithoutDirectionalFormatting) {
    EXPECT_EQ(foreign::line(QStringLiteral("a\nb\tc\u2028d\u2029e\u0085f")), QStringLiteral("a b c d e f"));
    EXPECT_EQ(foreign::line(QStringLiteral("\u202A\u202B\u202C\u202D\u202Ea\u2066\u2067\u2068\u2069")),
              QStringLiteral("a"));
    // Marks belong to the letters around them; so do joiners.
    EXPECT_EQ(foreign::line(QStringLiteral("a\u200Eb\u200Dc")), QStringLiteral("a\u200Eb\u200Dc"));
}

TEST(ForeignText, isIsolatedByOnePairThatItCannotClose) {
    EXPECT_EQ(foreign::isolated(QStringLiteral("a\u2069b\u2067")), QStringLiteral("\u2068ab\u2069"));
    EXPECT_TRUE(foreign::isolated(QStringLiteral(" \u202E\n")).isEmpty());
}

TEST(ForeignText, isBlankIfNothingIsVisible) {
    EXPECT_TRUE(foreign::isBlank({}));
    EXPECT_TRUE(foreign::isBlank(QStringLiteral("\u202E \t")));
    EXPECT_FALSE(foreign::isBlank(QStringLiteral("/")));
}

TEST(ForeignText, isNoMarkupInAToolTip) {
    const QString text = QStringLiteral("<img src=x> & <b>shop</b> &amp;");
    const QString toolTip = foreign::toolTip(text);
    EXPECT_TRUE(Qt::mightBeRichText(toolTip)) << "else it would be shown with its escapes";
    QTextDocument document;
    document.setHtml(toolTip);
    EXPECT_EQ(document.toPlainText(), text);
}

} // namespace
} // namespace corvane
