// The window of a console. Private to platform/console.
#pragma once

#include "platform/console/ConsoleScreen.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSocketNotifier>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

#include <functional>
#include <string>
#include <vector>

namespace console {

struct WindowOptions {
    QRect Place; // width and height 0: as the window likes
    bool HasPosition = false;
    QString Title;
    QString InputName, OutputName; // for screen readers
    QString Ended;                 // behind the title when nobody writes any more
    bool Auto = false, Wait = false, Inactive = false, NoClose = false;
};

// The line at the foot: Return sends it, Up and Down bring back earlier ones.
class InputLine final : public QLineEdit {
public:
    explicit InputLine(std::function<void(const std::string&)> send);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void SendLine();
    void Recall(int step);

    std::function<void(const std::string&)> Send;
    QStringList Earlier;
    qsizetype Recalled = 0;
};

class ConsoleWindow final : public QWidget {
public:
    // terminal stays the caller's. closed is called once, when the window has nothing more to do.
    ConsoleWindow(int terminal, const WindowOptions& options, std::function<void()> closed);

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void SetUpView();
    void ReadTerminal();
    void End();
    void Type(const std::string& bytes);
    void WriteTerminal();
    void ShowChanges();
    void ShowWhenDue();
    void TellSize();
    [[nodiscard]] QTextCharFormat FormatOf(const Style& style) const;
    void InsertLine(QTextCursor& cursor, const Line& line) const;

    int Terminal;
    WindowOptions Options;
    std::function<void()> Closed;
    bool HasEnded = false;
    ConsoleScreen Screen;
    std::string Typed; // not yet taken by the terminal
    QPlainTextEdit View;
    InputLine Input;
    QVBoxLayout Layout;
    QSocketNotifier Readable;
    QTimer ShowTimer;
    QTimer WriteTimer;
};

} // namespace console
