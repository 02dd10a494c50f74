// Pictures of rows: icons, thumbnails and picture files that are loaded when a row is drawn for the first
// time, on threads of their own, newest wish first. What is on show never waits for a disk or a decoder.
#pragma once

#include "platform/intuition/Images.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace intuition {

class ListBrowser;

// One place where the picture may come from.
struct ImageStep {
    enum class Source : std::uint8_t {
        File,      // a picture file, or with a name in ".info" the picture of that icon
        Thumbnail, // a picture file, through the desktop's cache of thumbnails
    };
    std::string Path; // volume path, or host path that begins with "/"
    Source From = Source::File;
    std::string OnlyIf = {}; // another file that must be there; empty: no condition
};

// The picture that a cell shows: that of the first step that gives one, as large as fits width times height
// (layout units, sharp on dense screens). Icons grow to that size, other pictures do not.
struct ImageWish {
    std::vector<ImageStep> Steps;
    int Width = 0, Height = 0;
    ImageId Fallback = ImageId::None; // meanwhile, and when no step gives one; must outlive the wish
};

// The wishes of one list or view. Slots are its rows by number. Belongs to the task that draws; when it goes,
// or at Clear, what was not loaded yet is not loaded any more. Loaded pictures are shared by all of them and
// kept up to 64 MB, those drawn last longest; a picture that is kept shows at once, and is looked at again
// behind the scenes, in case its file has changed.
class WishedImages {
public:
    struct Hooks {
        std::function<void(std::size_t slot)> Redraw;     // the slot's picture has come
        std::function<bool(std::size_t slot)> IsOnScreen; // nothing is loaded for others
    };
    explicit WishedImages(Hooks hooks);
    // For the rows of a list, which must live longer.
    explicit WishedImages(ListBrowser& rows);
    ~WishedImages();
    WishedImages(const WishedImages&) = delete;
    WishedImages& operator=(const WishedImages&) = delete;

    // What to draw now: the picture, or the fallback. Called at each drawing; wish is asked at the first one
    // only. The id is good until the task's next wait; it is not to be released.
    [[nodiscard]] ImageId Image(std::size_t slot, const std::function<ImageWish()>& wish);

    // The slot wishes for something else from now on.
    void Forget(std::size_t slot);
    void Clear();

private:
    friend void FinishWishedImages();
    struct Slots;
    std::unique_ptr<Slots> Own;
};

// Loads at once, for the few pictures that stand beside a list. One use, for ReleaseImage; of the fallback
// when no step gives a picture.
[[nodiscard]] ImageId LoadImage(const ImageWish& wish);

// Waits until nothing is left to be loaded, storing of thumbnails included, and has the pictures shown. For
// tests and measurements.
void FinishWishedImages();

} // namespace intuition
