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
        bool IgnoresCapsLock;
    } rows[] = {
        {"-capslock lcommand e", 'e', qualifier::LeftAmiga, true},
        {"rawkey CTRL Alt F1", 0xFFBE, qualifier::Control | qualifier::LeftAlt, false},
        {"  -lshift\tdel ", 0xFFFF, 0, false},
        {"capslock \xC3\xA4", 0xE4, qualifier::CapsLock, false},
        {"ctrl \xD0\x9F", 0x0100043F, qualifier::Control, false},
        {"", 0, 0, false},
        {"ctrl", 0, 0, false},
        {"a b", 0, 0, false},
        {"ctrl nokey", 0, 0, false},
    };
    for (const auto& row : rows) {
        const auto keys = ParseKeyCombination(row.Text);
        ASSERT_EQ(keys.has_value(), row.Symbol != 0) << row.Text;
        if (keys) {
            EXPECT_EQ(keys->Symbol, row.Symbol) << row.Text;
            EXPECT_EQ(keys->Qualifiers, row.Qualifiers) << row.Text;
            EXPECT_EQ(keys->IgnoresCapsLock, row.IgnoresCapsLock) << row.Text;
        }
    }
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
