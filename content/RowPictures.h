// Which picture a row shows, by view style and kind of entry.
#pragma once

#include "content/ViewStyles.h"
#include "model/ContentNode.h"
#include "platform/intuition/WishedImages.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace solvane {

// Room of a picture in that style, in layout units.
[[nodiscard]] IconBox BoxOf(std::int32_t style);
[[nodiscard]] int PictureHeight(std::int32_t style);

// What stands for a file by what it is, whether icons are looked at or not; nothing for most. A sound has the
// picture of any file.
[[nodiscard]] std::vector<intuition::ImageStep> OwnPictureSteps(const ContentNode& node, std::int32_t style);

// Where the icon of an entry may come from: its own, the one of its type, the one of its kind.
[[nodiscard]] std::vector<intuition::ImageStep> IconSteps(const ContentNode& node);

// The same for the picture beside the texts of the Details pane: a picture file is shown itself where
// Prefs.ShowThumbnail says so, and a place by the picture of what it leads to.
[[nodiscard]] std::vector<intuition::ImageStep> DetailsPictureSteps(const ContentNode& node);

// The pictures of the rows in one style. Icons and thumbnails are looked up when a row is first drawn, and
// never on the drawing task.
class RowPictures {
public:
    // Without a list nothing is looked up. The list must live longer.
    RowPictures(std::int32_t style, intuition::ListBrowser* list);

    // What was not loaded yet is not loaded any more; a row that is drawn again asks again.
    void Drop();

    // What to draw now in that row. It is not to be released.
    [[nodiscard]] intuition::ImageId Of(std::size_t row, const ContentNode& node);

private:
    [[nodiscard]] intuition::ImageId UsualOf(const ContentNode& node) const;
    [[nodiscard]] intuition::ImageWish WishOf(const ContentNode& node) const;
    [[nodiscard]] intuition::ImageWish UsualWithIcon(const ContentNode& node) const;

    std::int32_t Style;
    std::unique_ptr<intuition::WishedImages> Wished; // null without a list
};

} // namespace solvane
