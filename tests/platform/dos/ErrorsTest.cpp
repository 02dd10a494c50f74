#include "platform/dos/Errors.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <thread>

namespace {

TEST(ErrorsTest, FaultPutsTheHeaderBeforeTheText) {
    EXPECT_EQ(dos::Fault(205, "Work:x"), "Work:x: object not found");
    EXPECT_EQ(dos::Fault(304), "***Break");
    EXPECT_EQ(dos::Fault(0, "header"), "");
    EXPECT_EQ(dos::Fault(777, "x"), "x: Error code 777");
    EXPECT_EQ(dos::Fault(-3), "Error code -3");
}

TEST(ErrorsTest, EveryErrorHasATextBelow80Bytes) {
    int known = 0;
    for (long code = 1; code < 400; ++code) {
        const std::string text = dos::Fault(code);
        EXPECT_LT(text.size(), 80U);
        known += text.starts_with("Error code") ? 0 : 1;
    }
    EXPECT_EQ(known, 47);
}

TEST(ErrorsTest, HostErrorsDependOnTheOperationWhereDosTellsThemApart) {
    using enum dos::Operation;
    struct Row {
        int Host;
        dos::Operation Operation;
        long Code;
    };
    const Row rows[] = {
        {0, Read, 0},         {ENOENT, Delete, 205}, {EACCES, Delete, 222},
        {EPERM, Write, 223},  {EACCES, Read, 224},   {EACCES, Lookup, 224},
        {EINVAL, Seek, 219},  {EINVAL, Lookup, 210}, {ENOTEMPTY, Delete, 216},
        {EDQUOT, Write, 221}, {EROFS, Write, 214},   {EOPNOTSUPP, Write, 209},
        {EXDEV, Rename, 215}, {EUCLEAN, Read, 213},  {99999, Read, 209},
    };
    for (const Row& row : rows)
        EXPECT_EQ(dos::ErrorFromErrno(row.Host, row.Operation), row.Code) << row.Host;
}

TEST(ErrorsTest, EachThreadHasItsOwnLastError) {
    dos::SetIoErr(205);
    std::thread([] {
        EXPECT_EQ(dos::IoErr(), 0);
        dos::SetIoErr(103);
    }).join();
    EXPECT_EQ(dos::IoErr(), 205);
}

} // namespace
