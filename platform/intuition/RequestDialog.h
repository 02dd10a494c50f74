// The dialog behind a requester: icon, text, a row of buttons. Private to this service.
#pragma once

#include "platform/exec/Tasks.h"
#include "platform/intuition/Requesters.h"

#include <QDialog>

#include <memory>

class QBoxLayout;
class QPushButton;

namespace intuition {

class NativeWindow;

// A window takes no input while its dialog is up. Null stands for the active window.
class BlockWhileAsking {
public:
    explicit BlockWhileAsking(Window* parent);
    ~BlockWhileAsking();
    BlockWhileAsking(const BlockWhileAsking&) = delete;
    BlockWhileAsking& operator=(const BlockWhileAsking&) = delete;

    // Null when there is no visible one.
    [[nodiscard]] QWidget* ParentOfDialog() const;

private:
    NativeWindow* Blocked;
};

class RequestDialog : public QDialog {
public:
    // body, if any, stands between text and buttons.
    RequestDialog(QWidget* parent, const EasyRequestSpec& spec, std::unique_ptr<QWidget> body = nullptr);
    // Answers as the gadget of that number does.
    void done(int result) override;
    // Shows itself and waits for the answer behind exec::Wait. -1 when the task has no signal left.
    [[nodiscard]] int Ask();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void AddText(QBoxLayout& row, const EasyRequestSpec& spec);
    void AddButtons(QBoxLayout& column, const EasyRequestSpec& spec);

    std::vector<QPushButton*> Buttons; // children of the dialog
    int Answer = 0;
    bool Answered = false;
    exec::Task* Owner = nullptr;
    exec::SignalMask Mask = 0;
};

} // namespace intuition
