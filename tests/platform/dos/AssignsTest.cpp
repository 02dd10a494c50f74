#include "platform/dos/Changes.h"
#include "tests/platform/dos/DosTest.h"

namespace {

class AssignsTest : public DosTest {
protected:
    AssignsTest() {
        for (const char* drawer : {"a", "b", "c"})
            Tree.Drawer(drawer);
        Tree.Plant({"a/one", "b/one", "b/two"});
    }

    [[nodiscard]] static Names Targets(std::string_view name) {
        for (const dos::AssignInfo& assign : dos::Assigns())
            if (assign.Name == name)
                return assign.Targets;
        return {};
    }
    [[nodiscard]] static std::optional<dos::AssignKind> Kind(std::string_view name) {
        for (const dos::AssignInfo& assign : dos::Assigns())
            if (assign.Name == name)
                return assign.Kind;
        return {};
    }
    void Rename(std::string_view from, std::string_view to) const {
        std::filesystem::rename(Tree.Path(from), Tree.Path(to));
    }
};

TEST_F(AssignsTest, KindDecidesWhenTheDrawerIsBound) {
    ASSERT_TRUE(dos::SetAssign("Now", dos::AssignKind::Directory, {"Test:a"}));
    ASSERT_TRUE(dos::SetAssign("Late", dos::AssignKind::Late, {"Test:a"}));
    ASSERT_TRUE(dos::SetAssign("Path", dos::AssignKind::NonBinding, {"Test:a"}));
    Rename("a", "moved");
    EXPECT_EQ(Find("Now:one"), "Test:moved/one");
    EXPECT_EQ(Find("Late:one"), "error 205");
    EXPECT_EQ(Find("Path:one"), "error 205");
    Rename("b", "a");
    EXPECT_EQ(Kind("Late"), dos::AssignKind::Late);
    EXPECT_EQ(Find("Late:two"), "Test:a/two"); // bound here
    EXPECT_EQ(Find("Path:two"), "Test:a/two");
    EXPECT_EQ(Kind("Late"), dos::AssignKind::Directory);
    Rename("a", "b");
    EXPECT_EQ(Find("Late:two"), "Test:b/two");
    EXPECT_EQ(Find("Path:two"), "error 205");
    EXPECT_EQ(Kind("Path"), dos::AssignKind::NonBinding);
}

TEST_F(AssignsTest, DrawersAreAddedAtEitherEndAndTakenOut) {
    ASSERT_TRUE(dos::AddToAssign("N", "Test:b", dos::AssignEnd::Last)); // makes it
    ASSERT_TRUE(dos::AddToAssign("N", "Test:c", dos::AssignEnd::Last));
    ASSERT_TRUE(dos::AddToAssign("n", "Test:a", dos::AssignEnd::First));
    EXPECT_EQ(Targets("N"), (Names{"Test:a", "Test:b", "Test:c"}));
    EXPECT_EQ(Find("N:one"), "Test:a/one");
    EXPECT_EQ(Find("N:two"), "Test:b/two");
    ASSERT_TRUE(dos::AddToAssign("N", "Test:c/", dos::AssignEnd::First)); // it is there already
    EXPECT_EQ(Targets("N").size(), 3u);
    Rename("a", "away");
    ASSERT_TRUE(dos::RemoveFromAssign("N", "Test:away"));
    EXPECT_EQ(Find("N:one"), "Test:b/one");
    std::filesystem::remove(Tree.Path("c"));
    ASSERT_TRUE(dos::RemoveFromAssign("N", "Test:c")); // by name, since nothing is there
    ASSERT_TRUE(dos::RemoveFromAssign("N", "Test:b"));
    EXPECT_FALSE(Kind("N").has_value());
    EXPECT_EQ(Find("N:"), "error 218");
}

TEST_F(AssignsTest, RefusalsLeaveTheAssignAsItWas) {
    ASSERT_TRUE(dos::SetAssign("Path", dos::AssignKind::NonBinding, {"Test:a"}));
    ASSERT_TRUE(dos::SetAssign("N", dos::AssignKind::Directory, {"Test:a"}));
    const auto refused = [](bool done, long error) { return !done && dos::IoErr() == error; };
    using enum dos::AssignKind;
    EXPECT_TRUE(refused(dos::AddToAssign("Path", "Test:b", dos::AssignEnd::Last), 212));
    EXPECT_TRUE(refused(dos::SetAssign("Path", NonBinding, {"Test:a", "Test:b"}), 212));
    EXPECT_TRUE(refused(dos::AddToAssign("N", "Test:none", dos::AssignEnd::Last), 205));
    EXPECT_TRUE(refused(dos::RemoveFromAssign("N", "Test:b"), 205));
    EXPECT_TRUE(refused(dos::RemoveFromAssign("None", "Test:b"), 205));
    EXPECT_TRUE(refused(dos::SetAssign("N", Directory, {"Test:a", "Test:none"}), 205));
    EXPECT_TRUE(refused(dos::SetAssign("td0", Late, {"Test:a"}), 202));
    for (const char* name : {"PROGDIR", "Console", "RAW", "TCP", "PRT"})
        EXPECT_TRUE(refused(dos::SetAssign(name, Late, {"Test:a"}), 202)) << name;
    EXPECT_TRUE(dos::SetAssign("FTPMount", Late, {"Test:a"}));
    EXPECT_TRUE(refused(dos::SetAssign("N:", Late, {"Test:a"}), 210));
    EXPECT_TRUE(refused(dos::AddToAssign("", "Test:a", dos::AssignEnd::Last), 210));
    EXPECT_EQ(Targets("N"), Names{"Test:a"});
    EXPECT_EQ(Targets("Path"), Names{"Test:a"});
}

TEST_F(AssignsTest, OnlyATargetThatIsNotThereIsPassedOver) {
    ASSERT_TRUE(dos::SetAssign("N", dos::AssignKind::Late, {"Test:none", "Gone:a", "Test:b"}));
    EXPECT_EQ(Find("N:two"), "error 218");
    ASSERT_TRUE(dos::SetAssign("N", dos::AssignKind::Late, {"Test:none", "Test:b"}));
    EXPECT_EQ(Find("N:two"), "Test:b/two");
    EXPECT_EQ(Find("N:three"), "error 205");
}

TEST_F(AssignsTest, RenamedObjectStaysInItsDrawer) {
    ASSERT_TRUE(dos::SetAssign("N", dos::AssignKind::Directory, {"Test:a", "Test:b"}));
    Tree.Drawer("a/only");
    EXPECT_TRUE(dos::Rename("N:two", "n:three"));
    EXPECT_EQ(Find("N:three"), "Test:b/three");
    EXPECT_TRUE(dos::Rename("N:three", "N:only/three")); // there is no such drawer in b
    EXPECT_EQ(Find("N:only/three"), "Test:a/only/three");
}

TEST_F(AssignsTest, AssignStandsBeforeAVolumeOfItsName) {
    ASSERT_TRUE(dos::SetAssign("Test", dos::AssignKind::Directory, {"TD0:b"}));
    EXPECT_EQ(Find("Test:two"), "TD0:b/two"); // the volume's name would lead elsewhere
    EXPECT_EQ(Find("Test:a"), "error 205");
    EXPECT_FALSE(dos::FindVolume("Test"));
    EXPECT_NE(dos::FindVolume("TD0"), nullptr);
    ASSERT_TRUE(dos::SetAssign("Test", dos::AssignKind::Directory, {}));
    EXPECT_EQ(Find("Test:a"), "Test:a");
}

TEST_F(AssignsTest, CirclesAreRefusedAndNotFollowedForEver) {
    for (const dos::AssignKind kind : {dos::AssignKind::NonBinding, dos::AssignKind::Late}) {
        ASSERT_TRUE(dos::SetAssign("X", kind, {"Y:"}) && dos::SetAssign("Y", kind, {"X:"}));
        EXPECT_EQ(Find("X:a"), "error 217");
    }
}

} // namespace
