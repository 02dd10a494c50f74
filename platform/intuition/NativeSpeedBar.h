// The widget behind a speed bar: lays its buttons out from the first visible one on and keeps exactly one of
// them a stop for the Tab key.
#pragma once

#include "platform/intuition/Native.h"
#include "platform/intuition/SpeedBar.h"

#include <QPointer>

#include <memory>
#include <vector>

namespace intuition {

class SpeedRow : public QWidget {
public:
    explicit SpeedRow(std::uint16_t id);

    void SetButtons(const std::vector<SpeedButton>& buttons);
    // Image and text alone; name, hint and state stay. The places of the buttons follow a moment later.
    void SetButtonLook(int at, const SpeedButton& look);
    void SetButtonDisabled(std::uint16_t code, bool disabled);
    [[nodiscard]] bool IsButtonDisabled(std::uint16_t code) const;
    void SetEnds(QWidget* left, QWidget* right);

    [[nodiscard]] int Total() const { return static_cast<int>(Items.size()); }
    [[nodiscard]] int Visible() const { return Shown; }
    [[nodiscard]] int Top() const { return First; }
    void SetTop(int top);
    [[nodiscard]] int LeftOf(std::uint16_t code) const;

    // Gives the keyboard to the next button that can have it, in steps of step from that one on.
    void MoveFocus(const QWidget& from, int step);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct Item {
        std::unique_ptr<QWidget> Widget; // a button or a line
        std::uint16_t Code = 0;
        bool Separator = false;
    };
    [[nodiscard]] const Item* Find(std::uint16_t code) const;
    std::unique_ptr<QWidget> MakeWidget(const SpeedButton& button);
    [[nodiscard]] int WidthOf(int at) const;
    [[nodiscard]] int LastTop() const;
    void Arrange();
    void ArrangeLater();
    void ChooseTabStop();
    [[nodiscard]] bool CanHaveFocus(int at) const;

    std::uint16_t Id;
    std::vector<Item> Items;
    int First = 0, Shown = 0;
    int WheelRest = 0; // eighths of a degree that make no step yet
    bool WillArrange = false;
    QPointer<QWidget> Left, Right, TabStop;
};

} // namespace intuition
