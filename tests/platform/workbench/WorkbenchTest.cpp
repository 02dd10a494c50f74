#include "platform/workbench/Workbench.h"

#include "platform/dos/System.h"
#include "platform/icon/Icon.h"
#include "platform/workbench/DesktopEntries.h"
#include "tests/platform/dos/DosTest.h"
#include "tests/platform/utility/ScopedVariable.h"

#include <sys/stat.h>
#include <thread>

namespace {

std::string Joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text += "[" + word + "]";
    return text;
}

TEST(DesktopEntriesTest, AnExecLineBecomesWordsAndAFileIsOneOfThem) {
    const std::pair<std::string, std::string> rows[] = {
        {"view %f", "[view][/d/a b;$(x)]"},
        {"view", "[view][/d/a b;$(x)]"},
        {"\"my view\" --c=%c %% \"a \\\\\"q\\\\$\" %U", "[my view][--c=A  B][%][a \"q$][/d/a b;$(x)]"},
        {"view %i %k %m --file=%f", "[view][--icon][pic][/e][--file=/d/a b;$(x)]"},
        {"view -x --name=a-b -- %f -", "[view][-x][--name=a-b][--][/d/a b;$(x)][-]"},
        {"view %f; rm", "none"},
        {"view \"%f", "none"},
        {"view $HOME", "none"},
        {"", "none"},
    };
    for (const auto& [exec, words] : rows) {
        const std::string text =
            "# first\n[Other]\nExec=no\n[Desktop Entry]\nType=Application\nName=A\\s\\sB\nIcon=pic\n"
            "Exec = " +
            exec + "\nExec=second\n[Desktop Action x]\nExec=no\n";
        const auto entry = workbench::ParseDesktopEntry(text, "/e");
        EXPECT_EQ(entry ? Joined(workbench::CommandFor(*entry, "/d/a b;$(x)")) : "none", words) << exec;
    }
}

class WorkbenchTest : public DosTest {
protected:
    WorkbenchTest() {
        Tree.Drawer("out");
        Script("bin/viewer", "printf '%s' \"$*|$PWD\" >\"$OUT.new\" && mv \"$OUT.new\" \"$OUT\"");
        Script("d/Prog", "exec viewer program");
        Tree.Write("d/note.txt", "text");
        Tree.Write("config/mimeapps.list",
                   "[Default Applications]\ntext/plain=gone.desktop;my-own-view.desktop\n");
        Tree.Write("data/applications/my-own/view.desktop",
                   "[Desktop Entry]\nType=Application\nExec=viewer host %f\n");
        workbench::SetHooks({.OpenDrawer = [this](const std::string& drawer) { return Log += drawer, true; },
                             .MayStart =
                                 [this](const std::string& path) {
                                     Log += path + "?";
                                     return Answer;
                                 }});
        dos::CurrentDir(dos::Lock("Test:"));
    }
    ~WorkbenchTest() override { workbench::SetHooks({}); }
    void Script(std::string_view name, std::string_view text) const {
        Tree.Write(name, "#!/bin/sh\n" + std::string(text) + "\n");
        ::chmod(Tree.Path(name).c_str(), 0755);
    }
    // What the program that was started has told, once it has.
    std::string Told() const {
        while (!Tree.Exists("out/told"))
            std::this_thread::yield();
        std::string text = Tree.Read("out/told");
        std::filesystem::remove(Tree.Path("out/told"));
        return text;
    }

    ScopedVariable Path{"PATH", Tree.Root() + "/bin:/usr/bin:/bin"};
    ScopedVariable Out{"OUT", Tree.Path("out/told")};
    ScopedVariable Configuration{"XDG_CONFIG_HOME", Tree.Path("config")};
    ScopedVariable Data{"XDG_DATA_HOME", Tree.Path("data")};
    ScopedVariable AllData{"XDG_DATA_DIRS", "/usr/share"};
    workbench::LaunchAnswer Answer = workbench::LaunchAnswer::Start;
    std::string Log;
};

TEST_F(WorkbenchTest, EachKindOfObjectIsOpenedInItsWay) {
    EXPECT_TRUE(workbench::WBRun("d"));
    EXPECT_EQ(Log, "Test:d");
    Log.clear();
    const std::string note = Tree.Path("d/note.txt");
    const std::string drawer = Tree.Path("d");
    EXPECT_TRUE(workbench::WBRun("Test:d/note.txt"));
    EXPECT_EQ(Told(), "host " + note + "|" + Tree.Root()) << "the host's application";
    EXPECT_EQ(Log, "");

    icon::DiskObject project = icon::GetDefaultIcon(icon::IconType::Project);
    project.DefaultTool = "viewer";
    ASSERT_TRUE(icon::PutDiskObject("Test:d/note.txt", project));
    EXPECT_TRUE(workbench::WBRun("d/note.txt"));
    EXPECT_EQ(Told(), note + "|" + drawer) << "the default tool";
    EXPECT_EQ(Log, "Test:bin/viewer?");

    // A name that is a built-in command is that of a program here, or of none.
    project.DefaultTool = "Run";
    ASSERT_TRUE(icon::PutDiskObject("Test:d/note.txt", project));
    EXPECT_TRUE(workbench::WBRun("d/note.txt"));
    EXPECT_EQ(Told(), "host " + note + "|" + Tree.Root());
    Script("bin/Run", "exec viewer run \"$@\"");
    EXPECT_TRUE(workbench::WBRun("d/note.txt"));
    EXPECT_EQ(Told(), "run " + note + "|" + drawer);

    EXPECT_EQ(Refusal(workbench::WBRun("d/none")), dos::ErrorObjectNotFound);
}

TEST_F(WorkbenchTest, AProgramIsAskedAboutUntilTheAnswerIsYes) {
    Answer = workbench::LaunchAnswer::Refuse;
    EXPECT_EQ(Refusal(workbench::WBRun("Test:d/Prog")), dos::ErrorBreak);
    Answer = workbench::LaunchAnswer::Start;
    EXPECT_TRUE(workbench::WBRun("Test:d/Prog"));
    EXPECT_EQ(Told(), "program|" + Tree.Path("d"));
    EXPECT_TRUE(workbench::WBRun("Test:d/Prog"));
    EXPECT_EQ(Told(), "program|" + Tree.Path("d"));
    EXPECT_EQ(Log, "Test:d/Prog?Test:d/Prog?");
    EXPECT_FALSE(Tree.Exists("out/told"));
}

TEST_F(WorkbenchTest, TheCommandOpensAllItsObjects) {
    workbench::AddWBRunCommand();
    std::string text;
    dos::SystemOptions options;
    options.Output.Sink = [&text](std::string_view bytes) { return text.append(bytes), true; };
    EXPECT_EQ(dos::System("WBRun d none \"Test:d\"", options), 10);
    EXPECT_EQ(text, "none: object not found\n");
    EXPECT_EQ(Log, "Test:dTest:d");
    dos::SetBuiltIn("WBRun", {});
}

} // namespace
