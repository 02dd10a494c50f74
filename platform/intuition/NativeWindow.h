// The toolkit's side of a window: the event queue, blocking, and the rules by which input is dropped.
#pragma once

#include "platform/exec/Tasks.h"
#include "platform/intuition/Events.h"
#include "platform/intuition/Window.h"

#include <QBasicTimer>
#include <QWidget>

#include <cstdint>
#include <deque>
#include <optional>

class QMenuBar;

namespace intuition {

class NativeWindow : public QWidget {
public:
    explicit NativeWindow(const WindowSpec& spec);
    ~NativeWindow() override;

    [[nodiscard]] bool OpenQueue();
    void CloseQueue();
    [[nodiscard]] exec::SignalMask Mask() const;
    // Queues the event as it is; false when it is dropped.
    bool Post(WindowEvent event);
    [[nodiscard]] std::optional<WindowEvent> Fetch();

    void SetTicks(bool on);
    void Block();
    void Unblock();
    void UnblockAll();
    [[nodiscard]] bool IsBlocked() const { return Depth > 0; }
    // Whether an input event must not reach this window's widgets.
    [[nodiscard]] bool Swallows(const QEvent& event) const;
    // All input that was made up to now has been read.
    void InputIsRead();

    void Place(const Box& box);

    // Shows the strip over the gadgets, in place of one that was there; the window does not own it.
    void SetStrip(QMenuBar* strip);

    // The open window that stands for the program where none is named; null when there is none.
    [[nodiscard]] static NativeWindow* MostRecent();
    static void AllInputIsRead();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void PlaceOn(QScreen& screen);
    void SetPointer();
    void ReleaseHeldButtons();
    void ReleaseMenus();
    void OpenStrip();

    std::deque<WindowEvent> Queue;
    exec::Task* Owner = nullptr;
    int Signal = -1;
    int Depth = 0;
    // Host milliseconds between which the window was blocked and input may still be unread; 0: none.
    std::uint64_t BlockedFrom = 0, BlockedTo = 0;
    QBasicTimer Ticks;
    int WheelRest = 0;    // eighths of a degree that make no step yet
    bool Painted = false; // moves and sizes before the first picture are the desktop's, not the user's
};

} // namespace intuition
