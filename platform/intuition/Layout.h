// A row or column of gadgets. Children with a weight share what is left when the others have their size;
// in a layout with bars the user can drag the boundaries between weighted children.
#pragma once

#include "platform/intuition/Gadget.h"

#include <cstddef>
#include <vector>

namespace intuition {

enum class Orientation { Horizontal, Vertical };

struct LayoutSpec {
    Orientation Direction = Orientation::Vertical;
    bool Bars = false; // draggable bars between neighbouring weighted children
    int Spacing = 4;   // between children, in layout units; a bar takes at least 5
    int Margin = 0;    // around them
};

class Layout : public Gadget {
public:
    explicit Layout(const LayoutSpec& spec);
    ~Layout() override;

    // Adds a child at the end, or before position. Weight 0: it takes the size it needs.
    Gadget& Add(std::unique_ptr<Gadget> child, int weight = 0);
    Gadget& Insert(std::size_t position, std::unique_ptr<Gadget> child, int weight = 0);
    // Takes a child out and gives it back; null when it is no child.
    std::unique_ptr<Gadget> Remove(const Gadget& child);

    [[nodiscard]] std::size_t Count() const { return Children.size(); }
    [[nodiscard]] Gadget* Child(std::size_t position);

    // The weights of all children in order, 0 for those without. As they were set until the user drags a
    // bar; from then on the weighted ones keep their sum and mirror the sizes.
    [[nodiscard]] std::vector<int> Weights() const;
    // As many as there are children; a child cannot gain or lose its being weighted. Others are left alone.
    void SetWeights(const std::vector<int>& weights);
    // Turns a layout with bars; weights stay.
    void SetDirection(Orientation direction);

private:
    std::vector<std::unique_ptr<Gadget>> Children;
};

} // namespace intuition
