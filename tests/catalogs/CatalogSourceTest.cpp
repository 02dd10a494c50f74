#include "Catalogs/compile/CatalogSource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace catalogs {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Findings FindingsOf(std::string_view english, std::string_view translated, std::string_view name = "MSG_A") {
    Findings findings;
    const std::string head = std::string(name) + " (1//12)\n";
    const Description description = ParseDescription(head + std::string(english) + "\n", "a.cd", findings);
    EXPECT_THAT(findings, IsEmpty());
    const std::string source = std::string(name) + "\n" + std::string(translated) + "\n";
    static_cast<void>(ParseTranslation(source, "a.ct", description, findings));
    return findings;
}

TEST(CatalogSource, ReadsNumbersLimitsEscapesAndContinuations) {
    Findings findings;
    const auto description = ParseDescription("; comment\n#version 7\nMSG_A (1/2/9)\none\\ntwo\n;\n"
                                              "MSG_B (40//)\na \\\n;b \\\\\n",
                                              "a.cd", findings);
    EXPECT_THAT(findings, IsEmpty());
    ASSERT_EQ(description.Texts.size(), 2U);
    EXPECT_EQ(description.Version, 7U);
    EXPECT_EQ(description.Texts[0].Text, "one\ntwo");
    EXPECT_EQ(description.Texts[1].Number, 40);
    EXPECT_EQ(description.Texts[1].Text, "a ;b \\");

    const auto catalog = ParseTranslation("## version $VER: a.catalog 7.1 (1.1.2020)\n## codeset 106\n"
                                          "## language deutsch\nMSG_B\nzwei\nMSG_A\neins\n",
                                          "a.ct", description, findings);
    EXPECT_THAT(findings, IsEmpty());
    EXPECT_EQ(catalog.CodeSet, locale::CodeSetUtf8);
    EXPECT_EQ(catalog.Language, "deutsch");
    ASSERT_EQ(catalog.Texts.size(), 2U);
    EXPECT_EQ(catalog.Texts[0].Id, 40);
}

struct BadDescription {
    const char* Source;
    const char* Finding;
};

class CatalogDescription : public testing::TestWithParam<BadDescription> {};

TEST_P(CatalogDescription, IsRefusedWithItsLine) {
    Findings findings;
    static_cast<void>(ParseDescription(GetParam().Source, "a.cd", findings));
    EXPECT_THAT(findings, ElementsAre(HasSubstr(GetParam().Finding)));
}

INSTANTIATE_TEST_SUITE_P(
    Faults, CatalogDescription,
    testing::Values(BadDescription{"MSG_A (2//)\na\nMSG_B (2//)\nb\n", "a.cd:3: 2 does not lie above"},
                    BadDescription{"MSG_A (1//)\na\nMSG_A (2//)\nb\n", "a.cd:3: MSG_A comes twice"},
                    BadDescription{"MSG_A (1503//)\n", "a.cd:1: is not"},
                    BadDescription{"MSG_A (1)\n", "a.cd:1: is not"},
                    BadDescription{"MSG_A (1//3)\nlong\n", "a.cd:1: MSG_A has 4"},
                    BadDescription{"MSG_A (1//)\na\\t\n", "a.cd:2: unknown escape"}));

struct Pair {
    const char* English;
    const char* Translated;
    bool IsRight;
    const char* Name = "MSG_A";
};

class CatalogTranslation : public testing::TestWithParam<Pair> {};

TEST_P(CatalogTranslation, KeepsWhatTheProgramPutsIn) {
    const Pair& pair = GetParam();
    EXPECT_EQ(FindingsOf(pair.English, pair.Translated, pair.Name).empty(), pair.IsRight)
        << pair.English << " / " << pair.Translated;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CatalogTranslation,
    testing::Values(Pair{"%s %lu", "%s: %u", true}, Pair{"%s %lu", "%lu %s", false},
                    Pair{"%s %lu", "%2$lu %1$s", true}, Pair{"%s", "x", false},
                    Pair{"100%% %s", "%s 100%%", false}, Pair{"%s 100%%", "%s: 100%%", true},
                    Pair{"a", "thirteen long", false}, Pair{"a", "", false}, Pair{"{f} x", "{f} y", true},
                    Pair{"{f} x", "{F} y", false}, Pair{"_A|_B", "_X|_Y", true, "MSG_GAD"},
                    Pair{"_A|_B", "_X|_x", false, "MSG_GAD"}, Pair{"_A|_B", "_X", false, "MSG_GAD"}));

TEST(CatalogSource, ATranslationIsComplete) {
    Findings findings;
    const auto description = ParseDescription("#version 2\nMSG_A (1//)\na\n", "a.cd", findings);
    static_cast<void>(
        ParseTranslation("## version $VER: a 1.9 (1.1.2020)\nMSG_B\nb\n", "a.ct", description, findings));
    EXPECT_THAT(findings, ElementsAre("a.ct:2: MSG_B is unknown or comes twice",
                                      HasSubstr("MSG_A is missing"), HasSubstr("version lies below")));
}

} // namespace
} // namespace catalogs
