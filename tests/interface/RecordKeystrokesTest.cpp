#include "interface/RecordKeystrokes.h"

#include "platform/intuition/FormRequesters.h"
#include "platform/intuition/Requesters.h"

#include <deque>
#include <gmock/gmock.h>

namespace solvane {
namespace {

TEST(RecordKeystrokesTest, AsksUntilThereIsACombinationThatCanBeUsed) {
    std::vector<std::string> told;
    std::deque<intuition::FormAnswer> answers;
    std::string shown;
    intuition::SetRequestHandler([&told](const intuition::EasyRequestSpec& spec) {
        told.push_back(spec.Text);
        return 0;
    });
    intuition::SetFormHandler([&](const intuition::FormSpec& spec) {
        shown += "[" + spec.Fields.front().Text + (spec.Checks.front().Set ? "+]" : "]");
        const intuition::FormAnswer answer = answers.front();
        answers.pop_front();
        return answer;
    });
    RecordKeystrokesBuffer = "-capslock ctrl e";
    answers = {{1, {""}, 0, {true}}, {1, {"ctrl"}, 0, {false}}, {0, {"ctrl x"}, 0, {true}}};
    EXPECT_FALSE(RecordKeystrokesReq());
    EXPECT_EQ(RecordKeystrokesBuffer.View(), "-capslock ctrl e");
    EXPECT_EQ(shown, "[ctrl e+][+][ctrl]");
    EXPECT_THAT(told, testing::ElementsAre("Value can not be empty.", "Invalid hot key combonation."));
    answers = {{1, {"alt f1"}, 0, {true}}, {1, {"alt f1"}, 0, {false}}};
    EXPECT_TRUE(RecordKeystrokesReq());
    EXPECT_EQ(RecordKeystrokesBuffer.View(), "-CAPSLOCK alt f1");
    EXPECT_TRUE(RecordKeystrokesReq());
    EXPECT_EQ(RecordKeystrokesBuffer.View(), "alt f1");
    intuition::SetFormHandler({});
    intuition::SetRequestHandler({});
}

} // namespace
} // namespace solvane
