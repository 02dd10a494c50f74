#include "Catalogs/compile/CatalogSource.h"

#include <gmock/gmock.h>

namespace catalogs {
namespace {

using testing::ElementsAre, testing::HasSubstr, testing::IsEmpty;

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

TEST(CatalogSource, FaultsOfADescriptionAreFoundWithTheirLines) {
    struct Row {
        const char *Source, *Finding;
    };
    const Row rows[] = {{"MSG_A (2//)\na\nMSG_B (2//)\nb\n", "a.cd:3: 2 does not lie above"},
                        {"MSG_A (1//)\na\nMSG_A (2//)\nb\n", "a.cd:3: MSG_A comes twice"},
                        {"MSG_A (1503//)\n", "a.cd:1: is not"},
                        {"MSG_A (1)\n", "a.cd:1: is not"},
                        {"MSG_A (1//3)\nlong\n", "a.cd:1: MSG_A has 4"},
                        {"MSG_A (1//)\na\\t\n", "a.cd:2: unknown escape"}};
    for (const Row& row : rows) {
        Findings findings;
        static_cast<void>(ParseDescription(row.Source, "a.cd", findings));
        EXPECT_THAT(findings, ElementsAre(HasSubstr(row.Finding))) << row.Source;
    }
}

TEST(CatalogSource, ATranslationKeepsWhatTheProgramPutsIn) {
    struct Row {
        const char *English, *Translated;
        bool IsRight;
        const char* Name = "MSG_A";
    };
    const Row rows[] = {{"%s %lu", "%s: %u", true},
                        {"%s %lu", "%lu %s", false},
                        {"%s %lu", "%2$lu %1$s", true},
                        {"%s", "x", false},
                        {"100%% %s", "%s 100%%", false},
                        {"%s 100%%", "%s: 100%%", true},
                        {"%-a day", "Tag %-a", true},
                        {"%-a day", "Tag %a", false},
                        {"%<B %^p", "%>B %^p", false},
                        {"%-", "%", false},
                        {"a", "thirteen long", false},
                        {"a", "", false},
                        {"{f} x", "{f} y", true},
                        {"{f} x", "{F} y", false},
                        {"_A|_B", "_X|_Y", true, "MSG_GAD"},
                        {"_A|_B", "_X|_x", false, "MSG_GAD"},
                        {"_A|_B", "_X|Y", false, "MSG_GAD"},
                        {"_A|_B", "_X", false, "MSG_GAD"}};
    for (const Row& row : rows) {
        EXPECT_EQ(FindingsOf(row.English, row.Translated, row.Name).empty(), row.IsRight)
            << row.English << " / " << row.Translated;
    }
}

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
