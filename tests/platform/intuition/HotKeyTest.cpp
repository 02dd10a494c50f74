#include "platform/intuition/HotKey.h"

#include "platform/intuition/KeyNames.h"
#include "tests/platform/intuition/Stage.h"

#include <QLineEdit>

namespace intuition {

namespace {

TEST(KeyCombinationTest, IsReadFromItsTextOrRefused) {
    const struct {
        const char* Text;
        std::uint32_t Symbol; // 0: refused
        unsigned Qualifiers;
        unsigned Ignored;
    } rows[] = {
        {"-capslock lcommand e", 'e', qualifier::LeftAmiga, qualifier::CapsLock},
        {"rawkey CTRL Alt F1", 0xFFBE, qualifier::Control | qualifier::LeftAlt, 0},
        {"  -lshift\t-capslock del ", 0xFFFF, 0, qualifier::LeftShift | qualifier::CapsLock},
        {"capslock \xC3\xA4", 0xE4, qualifier::CapsLock, 0},
        {"ctrl \xD0\x9F", 0x06D0, qualifier::Control, 0}, // Cyrillic pe, as keyboards name it
        {"", 0, 0, 0},
        {"ctrl", 0, 0, 0},
        {"a b", 0, 0, 0},
        {"ctrl nokey", 0, 0, 0},
    };
    for (const auto& row : rows) {
        const auto keys = ParseKeyCombination(row.Text);
        ASSERT_EQ(keys.has_value(), row.Symbol != 0) << row.Text;
        if (keys) {
            EXPECT_EQ(keys->Symbol, row.Symbol) << row.Text;
            EXPECT_EQ(keys->Qualifiers, row.Qualifiers) << row.Text;
            EXPECT_EQ(keys->Ignored, row.Ignored) << row.Text;
        }
    }
}

TEST(KeyCombinationTest, FindsItsKeyInAnyLayoutAndAnotherLevelOnlyWithShift) {
    // A US keyboard with a Russian layout behind it, and a key that names its letter by number.
    const std::uint32_t table[] = {'1', '!', '1', '!', 'a', 'A', 0x06C6, 0x06E6, 0x0100043F, 0, 0, 0};
    const std::pair<const char*, std::optional<std::size_t>> rows[] = {
        {"ctrl 1", 0},        {"shift !", 0},          {"ctrl !", std::nullopt},
        {"shift a", 1},       {"ctrl \xD1\x84", 1},    {"alt shift \xD0\xA4", 1},
        {"ctrl \xD0\xBF", 2}, {"ctrl b", std::nullopt}};
    for (const auto& [text, key] : rows)
        EXPECT_EQ(FindKey(table, 4, *ParseKeyCombination(text)), key) << text;
}

class KeyFieldTest : public OnDisplay {};

TEST_F(KeyFieldTest, ShowsWhatIsPressedAndThatCanBeReadAgain) {
    QLineEdit field;
    ShowPressedKeys(field);
    const struct {
        int Key;
        Qt::KeyboardModifiers Held;
        const char* Shown;
    } rows[] = {{Qt::Key_E, Qt::ControlModifier | Qt::AltModifier, "ctrl alt e"},
                {Qt::Key_Control, Qt::ControlModifier, "ctrl alt e"},
                {Qt::Key_Tab, Qt::NoModifier, "ctrl alt e"},
                {Qt::Key_Tab, Qt::ControlModifier, "ctrl tab"},
                {Qt::Key_F5, Qt::MetaModifier | Qt::ShiftModifier, "lcommand shift f5"}};
    for (const auto& row : rows) {
        QTest::keyClick(&field, static_cast<Qt::Key>(row.Key), row.Held);
        EXPECT_EQ(field.text().toStdString(), row.Shown);
        EXPECT_TRUE(ParseKeyCombination(row.Shown)) << row.Shown;
    }
    EXPECT_FALSE(DisplayHasHotKeys()) << "there is no desktop";
    EXPECT_FALSE(SetHotKey(*ParseKeyCombination("ctrl e"), exec::FindTask(), 0));
}

} // namespace

} // namespace intuition
