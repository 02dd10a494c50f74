// The widget behind a layout with draggable bars: sizes follow weights at every change of its own size, and
// weights follow the sizes when the user drags.
#pragma once

#include <QSplitter>

#include <vector>

namespace intuition {

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

private:
    void ApplyWeights();
    void ReadWeights();
    void EnableBars();
    [[nodiscard]] int Extent(const QSize& size) const;

    std::vector<double> Shares; // by child; 0: it has the size it needs
};

} // namespace intuition
