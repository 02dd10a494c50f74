// The widget behind a layout with draggable bars: sizes follow weights at every change of its own size, and
// weights follow the sizes when the user drags, or moves a bar by the keyboard.
#pragma once

#include <QPointer>
#include <QSplitter>

#include <vector>

namespace intuition {

// A bar that can have the keyboard. It gets it from FocusNextBar alone, so that the Tab key has no further
// stops; arrows move it, Home and End push it as far as it goes, Return, Escape and Tab give the keyboard
// back.
class BarHandle : public QSplitterHandle {
public:
    BarHandle(Qt::Orientation orientation, QSplitter* parent);
    void TakeKeyboard(QWidget* from);
    void GiveKeyboardBack();
    [[nodiscard]] QWidget* Lender() const { return Former; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void MoveBy(int distance);

    QPointer<QWidget> Former; // had the keyboard before
};

// Gives the keyboard to the first bar of the window, from a bar to the next one, and from the last one back
// to where it was. Nothing in a window without bars.
void FocusNextBar(QWidget& window);

class BarSplitter : public QSplitter {
public:
    BarSplitter(Qt::Orientation orientation, int spacing);

    void InsertChild(int position, QWidget* widget, int weight);
    // The widget stays in the splitter until its parent changes.
    void RemoveChild(int position);
    [[nodiscard]] std::vector<int> Weights() const;
    void SetWeights(const std::vector<int>& weights);
    void Turn(Qt::Orientation orientation);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    QSplitterHandle* createHandle() override;

private:
    void ApplyWeights();
    void ReadWeights();
    void EnableBars();
    [[nodiscard]] int Extent(const QSize& size) const;

    std::vector<double> Shares; // by child; 0: it has the size it needs
};

} // namespace intuition
