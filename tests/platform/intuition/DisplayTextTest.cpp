#include "platform/intuition/Native.h"

#include <gtest/gtest.h>
#include <string>

namespace intuition {

namespace {

struct TextRow {
    const char* What;
    std::string Bytes;
    QString Shown;
};

TEST(DisplayText, NamesAreShownAsOneHarmlessLine) {
    const TextRow rows[] = {
        {"ampersand", "Pictures & Music", QStringLiteral("Pictures & Music")},
        {"markup", "<b>bold</b>", QStringLiteral("<b>bold</b>")},
        {"newline", "a\nb", QStringLiteral("a↵b")},
        {"line separator", "a\u2028b", QStringLiteral("a↵b")},
        {"tab", "a\tb", QStringLiteral("a⇥b")},
        {"escape", "a\x1B[0m", QStringLiteral("a\uFFFD[0m")},
        {"invalid byte", "x\xFFy", QStringLiteral("x\uFFFDy")},
        {"override of direction", "gpj\u202Eexe", QStringLiteral("gpj\uFFFDexe")},
        {"outside the first plane", "\U0001F4BE", QString::fromUcs4(U"\U0001F4BE")},
    };
    for (const TextRow& row : rows)
        EXPECT_EQ(DisplayText(row.Bytes), row.Shown) << row.What;
}

TEST(DisplayText, EndlessTextIsCutAtAWholeCharacter) {
    const QString shown = DisplayText("x" + std::string(5000, '\xC3') + "\xA4");
    EXPECT_LE(shown.size(), 4097);
    std::string umlauts = "x";
    for (int count = 0; count < 4000; ++count)
        umlauts += "ä";
    EXPECT_TRUE(DisplayText(umlauts).endsWith(QStringLiteral("ä…")));
}

TEST(DisplayText, LabelsTakeNoMnemonicFromNamesButFromMarks) {
    EXPECT_EQ(DisplayTextWithoutMnemonic("A & B_c"), QStringLiteral("A && B_c"));
    EXPECT_EQ(MarkedText("_Quit & go"), QStringLiteral("&Quit && go"));
    EXPECT_EQ(MarkedText("end_"), QStringLiteral("end_"));
}

TEST(DisplayText, TextsThatTheToolkitWouldTakeForMarkupAreEscaped) {
    EXPECT_EQ(HintText("plain\nlines"), QStringLiteral("plain\nlines"));
    EXPECT_FALSE(HintText("<img src=x>").contains(QStringLiteral("<img")));
    EXPECT_EQ(TitleText("a[*]b"), QStringLiteral("a[*][*]b"));
}

TEST(DisplayText, EditedBytesComeBackUnchanged) {
    const std::string texts[] = {"plain", "caf\xE9 \xFF\x80", "ä\U0001F4BE", "\xED\xB3\xBF", "a\nb"};
    for (const std::string& text : texts)
        EXPECT_EQ(BytesOfEditable(EditableText(text)), text);
}

} // namespace

} // namespace intuition
