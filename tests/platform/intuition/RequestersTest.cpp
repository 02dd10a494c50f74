#include "platform/intuition/Requesters.h"

#include "platform/dos/HostCalls.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/VolumeTable.h"
#include "platform/intuition/FileRequester.h"
#include "platform/intuition/HostFile.h"
#include "platform/intuition/Label.h"
#include "tests/platform/intuition/Stage.h"
#include "tests/support/TempTree.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QTimer>

namespace intuition {

namespace {

const EasyRequestSpec DeleteQuestion{
    "Delete", "Really delete \"<b>A & B</b>\"?", RequesterImage::Question, {"_Delete", "_Skip", "_Cancel"}};

class RequestersTest : public OnDisplay {
protected:
    Shown<Label> Stage{std::make_unique<Label>("content")};

    // Acts on the requester once it is up, as its user.
    template <typename Deed>
    int AskAnd(const EasyRequestSpec& spec, Deed deed) {
        return WhileUp(deed, [&] { return EasyRequest(&Stage.Frame, spec); });
    }
    template <typename Deed, typename Ask>
    auto WhileUp(Deed deed, Ask ask) {
        QTimer poll;
        bool acted = false;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (acted || dialog == nullptr || !dialog->isVisible())
                return;
            acted = true;
            deed(*dialog);
        });
        poll.start(1);
        return ask();
    }
};

TEST_F(RequestersTest, HandlerAnswersInTheUsersPlaceUntilItIsTakenAway) {
    std::string asked;
    SetRequestHandler([&](const EasyRequestSpec& spec) {
        asked = spec.Text;
        return 2;
    });
    EXPECT_EQ(EasyRequest(nullptr, DeleteQuestion), 2);
    EXPECT_EQ(asked, DeleteQuestion.Text);
    const RequestHandler old = SetRequestHandler({});
    EXPECT_EQ(old(DeleteQuestion), 2);
    EXPECT_EQ(AskAnd(DeleteQuestion, [](QDialog& dialog) { dialog.close(); }), 0);
}

TEST_F(RequestersTest, AFileIsChosenOrNot) {
    const TempTree tree{"a & b.rexx", "other"};
    const auto ask = [&] { return RequestFile(&Stage.Frame, {"Choose", tree.Root()}); };
    const auto choose = [&](QDialog& dialog) {
        auto& files = dynamic_cast<QFileDialog&>(dialog);
        EXPECT_EQ(files.directory().path().toStdString(), tree.Root());
        files.selectFile(QStringLiteral("a & b.rexx"));
        QMetaObject::invokeMethod(&files, "accept");
    };
    EXPECT_EQ(WhileUp(choose, ask), dos::FromHostPath(tree.Path("a & b.rexx")));
    EXPECT_EQ(WhileUp([](QDialog& dialog) { dialog.close(); }, ask), std::nullopt);
}

// All that the choice of a file, its list's header and a field's menu say.
QStringList TextsOfTheToolkit() {
    QFileDialog dialog;
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    QStringList texts;
    for (const QLabel* label : dialog.findChildren<QLabel*>())
        texts += label->text();
    for (const QAbstractButton* button : dialog.findChildren<QAbstractButton*>())
        texts += {button->text(), button->toolTip()};
    for (const QHeaderView* header : dialog.findChildren<QHeaderView*>())
        for (int column = 0; header->model() != nullptr && column < header->count(); ++column)
            texts += header->model()->headerData(column, Qt::Horizontal).toString();
    QLineEdit field;
    const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
    for (const QAction* action : menu->actions())
        texts += action->text().section(u'\t', 0, 0);
    return texts;
}

TEST_F(RequestersTest, TheToolkitSpeaksTheLanguageOfTheProgram) {
    const QStringList english = TextsOfTheToolkit();
    ASSERT_TRUE(english.contains(QStringLiteral("Cu&t")));
    for (const char* language : {"german", "spanish", "italian", "dutch", "greek"}) {
        SetLanguage(language);
        const QStringList texts = TextsOfTheToolkit();
        EXPECT_FALSE(texts.contains(QStringLiteral("Cu&t"))) << language;
        EXPECT_FALSE(texts.contains(QStringLiteral("Files of type:"))) << language;
        if (std::string_view(language) != "greek")
            continue;
        for (const QString& text : texts)
            EXPECT_FALSE(text.contains(QRegularExpression(QStringLiteral("^[^α-ω]*[A-Za-z]"))))
                << text.toStdString();
    }
    for (const char* language : {"klingon", "english"}) {
        SetLanguage(language);
        EXPECT_EQ(TextsOfTheToolkit(), english) << language;
    }
}

std::string MountList; // host path of a text that stands for the host's list of mounts

TEST_F(RequestersTest, AChoiceBeginsAtHomeWhereItsDrawerCannotBeShown) {
    const TempTree tree{"disk/drawer/", "disks/", "caf\xE9/"};
    MountList = tree.Path("mountinfo");
    tree.Write("mountinfo", "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n2 1 0:9 / " + tree.Path("disk") +
                                " rw - fuse.sshfs machine: rw\n");
    dos::Host().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
        const bool isList = std::string_view(name) == "/proc/self/mountinfo";
        return dos::RealHost().Openat(drawer, isList ? MountList.c_str() : name, flags, mode);
    };
    dos::ForgetMounts();
    EXPECT_TRUE(dos::AddVolume({.Device = "NET9", .Volume = "Share", .HostRoot = tree.Path("disk")}));
    EXPECT_EQ(DialogStart(tree.Path("disks")).toStdString(), tree.Path("disks"));
    for (const char* lost : {"disk", "disk/drawer", "caf\xE9"})
        EXPECT_EQ(DialogStart(tree.Path(lost)), QDir::homePath()) << lost;
    EXPECT_EQ(DialogStart("nowhere:"), QDir::homePath());
    dos::Host() = dos::RealHost();
    dos::ResetVolumeTable();
}

TEST_F(RequestersTest, KeysPressItsButtons) {
    const std::pair<Qt::Key, int> answers[] = {
        {Qt::Key_Return, 1}, {Qt::Key_D, 1}, {Qt::Key_S, 2}, {Qt::Key_C, 0}, {Qt::Key_Escape, 0}};
    for (const auto& [key, answer] : answers) {
        const auto press = [pressed = key](QDialog& dialog) {
            QTest::keyClick(&dialog, Qt::Key_X); // no button's
            QTest::keyClick(&dialog, pressed);
        };
        EXPECT_EQ(AskAnd(DeleteQuestion, press), answer) << key;
    }
}

TEST_F(RequestersTest, OnlyButtonAnswersZero) {
    EXPECT_EQ(AskAnd({"Note", "Done.", RequesterImage::Information, {"_Continue"}},
                     [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); }),
              0);
    EXPECT_EQ(AskAnd({"Note", "Done.", RequesterImage::None, {}},
                     [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_O); }),
              0);
}

TEST_F(RequestersTest, ParentIsBlockedWhileItAsks) {
    Stage.Frame.Block(1);
    EXPECT_EQ(AskAnd(DeleteQuestion,
                     [this](QDialog& dialog) {
                         EXPECT_EQ(dialog.parentWidget(), Stage.Widget().window());
                         EXPECT_TRUE(Stage.Frame.IsBlocked());
                         dialog.close();
                     }),
              0);
    EXPECT_TRUE(Stage.Frame.IsBlocked()); // still the block from before
    Stage.Frame.Block(0);
    EXPECT_FALSE(Stage.Frame.IsBlocked());
}

TEST_F(RequestersTest, TextIsPlainAndFitsTheScreen) {
    EasyRequestSpec spec = DeleteQuestion;
    spec.Text += std::string(3000, 'w');
    for (int line = 0; line < 300; ++line)
        spec.Text += "\nline";
    EXPECT_EQ(AskAnd(spec,
                     [](QDialog& dialog) {
                         EXPECT_LT(dialog.height(), dialog.screen()->availableGeometry().height());
                         EXPECT_LT(dialog.width(), 600);
                         for (const QLabel* label : dialog.findChildren<QLabel*>())
                             EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
                         dialog.close();
                     }),
              0);
}

TEST(RequesterWithoutDisplay, IsPrintedAndAnswersZero) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(EasyRequest(nullptr, {"Title", "Text \x1B[2J\nsecond", RequesterImage::Error, {"_A", "_B"}}),
              0);
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_EQ(printed, "Title: Text \uFFFD[2J\nsecond\n");
}

} // namespace

} // namespace intuition
