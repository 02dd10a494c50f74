#include "platform/locale/DatePattern.h"

#include <gtest/gtest.h>

namespace {

TEST(DatePatternTest, TranslatesPatternsOfTheHost) {
    struct Row {
        std::string_view Pattern, Codes;
    };
    const Row rows[] = {
        {"dddd, d. MMMM yyyy", "%a, %-d. %b %Y"},
        {"ddd, dd/MM/yy", "%a, %d/%m/%y"},
        {"M/d/yy h:mm AP", "%-m/%-d/%y %Q:%M %p"},
        {"hh:mm:ss ap", "%I:%M:%S %p"},
        {"AP h시 m분 s초 t", "%p %Q시 %-M분 %-S초"},
        {"H.mm.ss t", "%q.%M.%S"},
        {"HH:mm:ss", "%H:%M:%S"},
        {"h:mm", "%q:%M"}, // without AM or PM the hours run to 23
        {"H:mm:ss (t)", "%q:%M:%S"},
        {"t HH:mm:ss", "%H:%M:%S"},
        {"HH t mm", "%H %M"},
        {"yyyy年M月d日dddd", "%Y年%-m月%-d日%a"},
        {"d 'de' MMMM 'de' yyyy", "%-d de %b de %Y"},
        {"yyyy 'o''clock' ''yy", "%Y o'clock '%y"},
        {"h 'Am' '%' mm%", "%q Am %% %M%%"},
        {"'open", "open"},
        {"ss.zzz", "%S."},
        {"", ""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(locale::CodesFromPattern(row.Pattern), row.Codes) << row.Pattern;
}

} // namespace
