// The dialog behind a requester: icon, text, a row of buttons. Private to this service.
#pragma once

#include "platform/exec/Tasks.h"
#include "platform/intuition/Requesters.h"

#include <QDialog>

class QBoxLayout;
class QPushButton;

namespace intuition {

class RequestDialog : public QDialog {
public:
    RequestDialog(QWidget* parent, const EasyRequestSpec& spec);
    // Shows itself and waits for the answer behind exec::Wait. -1 when the task has no signal left.
    [[nodiscard]] int Ask();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void done(int result) override;

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
