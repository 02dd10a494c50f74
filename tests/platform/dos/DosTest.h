// What tests of dos start from: a temporary tree as the volume "Test:" (device "TD0:"), and a table of host
// calls that is whole again afterwards.
#pragma once

#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/HostCalls.h"
#include "platform/dos/Locks.h"
#include "platform/dos/MediumInfo.h"
#include "platform/dos/VolumeTable.h"
#include "platform/dos/Volumes.h"
#include "tests/support/TempTree.h"
#include "tests/support/Texts.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <string_view>
#include <vector>

// Stands for a host call that fails: Calls().Write = Failing<ENOSPC>();
template <int Error>
struct Failing {
    template <typename Result, typename... Arguments>
    using Call = Result (*)(Arguments...);
    template <typename Result, typename... Arguments>
    operator Call<Result, Arguments...>() const {
        return [](Arguments...) {
            errno = Error;
            return static_cast<Result>(-1);
        };
    }
};

// Why a call was refused; 0 for one that was not.
template <typename Result>
long Refusal(const Result& result) {
    return result ? 0 : dos::IoErr();
}

inline void AddDisk(const std::string& device, const std::string& volume, const std::string& root,
                    dos::NameRule names, dos::MetadataRule metadata = dos::MetadataRule::Xattr) {
    EXPECT_TRUE(dos::AddVolume(
        {.Device = device, .Volume = volume, .HostRoot = root, .Names = names, .Metadata = metadata}));
}

class DosTest : public testing::Test {
protected:
    explicit DosTest(dos::NameRule names = dos::NameRule::Exact) {
        // Whoever counts calls does not want those about the machine's own disks.
        dos::Places().Blocks = dos::Places().Labels = Tree.Path("none");
        EXPECT_TRUE(
            dos::AddVolume({.Device = "TD0", .Volume = "Test", .HostRoot = Tree.Root(), .Names = names}));
        EXPECT_TRUE(dos::AddVolume({.Device = "DH2", .Volume = "Host", .HostRoot = "/"}));
    }
    ~DosTest() override {
        dos::CurrentDir(dos::FileLock());
        if (HasReplaced)
            dos::Host() = dos::RealHost();
        dos::Places() = {};
        dos::ResetVolumeTable();
    }

    // The table of host calls, for replacing entries until the test ends.
    [[nodiscard]] dos::HostCalls& Calls() {
        HasReplaced = true;
        return dos::Host();
    }

    TempTree Tree;
    bool HasReplaced = false;
};

// The objects of a drawer by name; ends with the reason for the end of the walk in IoErr.
inline std::map<std::string, dos::ExamineData> List(std::string_view path) {
    std::map<std::string, dos::ExamineData> objects;
    dos::DirContext context = dos::ObtainDirContext(path);
    while (context) {
        const dos::ExamineData* object = dos::ExamineDir(context);
        if (!object)
            break;
        EXPECT_TRUE(objects.emplace(object->Name, *object).second) << "twice: " << object->Name;
    }
    return objects;
}

using Names = std::vector<std::string>;

inline Names NamesIn(std::string_view path) {
    return TextsOf(List(path), [](const auto& object) { return object.first; });
}

// The full name of what a path leads to, or "error N".
inline std::string Find(std::string_view path) {
    const dos::FileLock lock = dos::Lock(path);
    return lock ? dos::NameFromLock(lock) : "error " + std::to_string(dos::IoErr());
}
