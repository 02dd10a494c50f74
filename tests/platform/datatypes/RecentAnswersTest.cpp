#include "platform/datatypes/RecentAnswers.h"

#include <gtest/gtest.h>

namespace {

TEST(RecentAnswers, ForgetTheOldestAndNeverStopKeeping) {
    constexpr std::size_t most = datatypes::AnswersPerGeneration;
    datatypes::RecentAnswers<std::size_t, std::size_t> answers;
    for (std::size_t i = 0; i < most * 5 / 4; ++i) // more than one generation, all of it found again
        answers.Keep(i, i + 1);
    for (std::size_t i = 0; i < most * 5 / 4; ++i)
        ASSERT_EQ(answers.Find(i), i + 1);
    for (std::size_t i = most * 5 / 4; i < most * 5; ++i)
        answers.Keep(i, i + 1);
    EXPECT_EQ(answers.Find(most * 5 - 1), most * 5);
    EXPECT_FALSE(answers.Find(std::size_t{0}));
    EXPECT_FALSE(answers.Find(most));
}

} // namespace
