#include "sak/Requesters.h"

#include "platform/dos/Errors.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace solvane {
namespace {

class Requesters : public testing::Test {
protected:
    void SetUp() override {
        Before = intuition::SetRequestHandler([this](const intuition::EasyRequestSpec& spec) {
            Shown.push_back(spec);
            return Answer;
        });
    }
    void TearDown() override { intuition::SetRequestHandler(std::move(Before)); }

    intuition::RequestHandler Before;
    std::vector<intuition::EasyRequestSpec> Shown;
    int Answer = 0;
};

TEST_F(Requesters, PassTheirPartsAndTheAnswer) {
    Answer = 2;
    EXPECT_EQ(SAK_EasyRequest(nullptr, RequesterTitle, RequesterImage::Question, "Delete %s of %lu?",
                              "_Yes|_No|_Cancel", "\"100%s\"", 5),
              2);
    ASSERT_EQ(Shown.size(), 1U);
    EXPECT_EQ(Shown[0].Title, "Solvane");
    EXPECT_EQ(Shown[0].Text, "Delete \"100%s\" of 5?");
    EXPECT_EQ(Shown[0].Image, RequesterImage::Question);
    EXPECT_EQ(Shown[0].Gadgets, (std::vector<std::string>{"_Yes", "_No", "_Cancel"}));
}

TEST_F(Requesters, ShowACompleteTextAsItIs) {
    SAK_EasyRequest(nullptr, RequesterTitle, RequesterImage::Error, "No drawer \"100%% %s\".", "_Continue");
    EXPECT_EQ(Shown.at(0).Text, "No drawer \"100%% %s\".");
    EXPECT_EQ(Shown.at(0).Gadgets, std::vector<std::string>{"_Continue"});
}

TEST_F(Requesters, CutOverlongTexts) {
    SAK_EasyRequest(nullptr, RequesterTitle, RequesterImage::Error, "%s", "_Continue",
                    std::string(2046, 'x') + "\xC3\xA4");
    EXPECT_EQ(Shown.at(0).Text.size(), 2046U);
}

TEST_F(Requesters, TellTheDosError) {
    SAK_IOErr = dos::ErrorObjectNotFound;
    SAK_IOError(nullptr, RequesterTitle, "Error loading prefs file.",
                "DOS error message:", "_Continue|_Abort");
    EXPECT_EQ(Shown.at(0).Text,
              "Error loading prefs file.\n\nDOS error message:\n" + dos::Fault(dos::ErrorObjectNotFound));
    EXPECT_EQ(Shown.at(0).Image, RequesterImage::Error);
}

TEST_F(Requesters, MissingVolumeIsAskedForUntilItIsThereOrTheUserGivesUp) {
    {
        const MissingVolumeRequests missing;
        intuition::SetRequestHandler([this](const intuition::EasyRequestSpec& spec) {
            Shown.push_back(spec);
            return Shown.size() == 1 ? 1 : 0;
        });
        EXPECT_FALSE(dos::Lock("Stick:a"));
        EXPECT_EQ(dos::IoErr(), dos::ErrorDeviceNotMounted);
        ASSERT_EQ(Shown.size(), 2U); // looked again after the first answer
        EXPECT_EQ(Shown[0].Text, "Please insert volume Stick in any drive");
        EXPECT_EQ(Shown[0].Gadgets, (std::vector<std::string>{"_Retry", "_Cancel"}));
        const WithoutRequesters quiet;
        EXPECT_FALSE(dos::Lock("Stick:a"));
        std::jthread([] { EXPECT_FALSE(dos::Lock("Stick:a")); });
    }
    EXPECT_FALSE(dos::Lock("Stick:a"));
    EXPECT_EQ(Shown.size(), 2U);
}

TEST_F(Requesters, SystemRequestersComeBackAsTheyWere) {
    EnableRequesters();
    { const WithoutRequesters outer, inner; }
    EXPECT_TRUE(dos::SetRequesters(true));
    DisableRequesters();
    { const WithoutRequesters inner; }
    EXPECT_FALSE(dos::SetRequesters(true));
}

} // namespace
} // namespace solvane
