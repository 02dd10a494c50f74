// What the sources of this service share and nobody else sees: the toolkit's side of gadgets, texts made
// ready for it, and the way of an event into the queue of its window.
#pragma once

#include "platform/intuition/Events.h"
#include "platform/intuition/Gadget.h"
#include "platform/intuition/Images.h"

#include <QIcon>
#include <QPixmap>
#include <QRect>
#include <QString>
#include <QWidget>

#include <memory>
#include <string>
#include <string_view>

class QKeyEvent;
class QScreen;

namespace intuition {

struct GadgetNative {
    explicit GadgetNative(std::unique_ptr<QWidget> widget);
    virtual ~GadgetNative();
    std::unique_ptr<QWidget> Widget; // always there
};

// The widget of a gadget whose class is known.
template <typename WidgetType>
WidgetType& WidgetOf(Gadget& gadget) {
    return static_cast<WidgetType&>(*gadget.Native().Widget);
}
template <typename WidgetType>
const WidgetType& WidgetOf(const Gadget& gadget) {
    return static_cast<const WidgetType&>(*gadget.Native().Widget);
}

// A remembered place that no screen shows any more is as good as none.
[[nodiscard]] bool IsOnAScreen(const QRect& rect);

// The screen of FindScreen; null where there is none.
[[nodiscard]] QScreen* ScreenOf(std::string_view name);

enum class Lines { One, Many };

// Text as it is shown: controls, direction overrides and bytes that are no UTF-8 become visible marks; at
// most 4096 bytes of it. Lines::Many keeps newlines.
[[nodiscard]] QString DisplayText(std::string_view text, Lines lines = Lines::One);
// The same for places where the toolkit takes "&" as a mnemonic.
[[nodiscard]] QString DisplayTextWithoutMnemonic(std::string_view text);
// A label in which "_" stands before the key.
[[nodiscard]] QString MarkedText(std::string_view text);
// A window's title, in which the toolkit reads "[*]" as a place for a mark of its own.
[[nodiscard]] QString TitleText(std::string_view text);
// Text for places where the toolkit guesses whether it is markup.
[[nodiscard]] QString HintText(std::string_view text);

// Text to be edited: bytes that are no UTF-8 survive the way there and back.
[[nodiscard]] QString EditableText(std::string_view text);
[[nodiscard]] std::string BytesOfEditable(const QString& text);

// Nothing for None and for files that cannot be shown.
[[nodiscard]] QPixmap PixmapOf(ImageId image);
// A picture with the form that it has where it cannot be picked; without one the toolkit greys it.
[[nodiscard]] QIcon IconOf(ImageId image, ImageId ghosted);
// A picture that was made by the toolkit; one use, for ReleaseImage.
[[nodiscard]] ImageId KeepPicture(QPixmap picture);
// Takes the program's icons off the desktop; icons that are left show nothing from now on.
void ForgetAppIcons();
// Ends the loading of pictures and frees those that were loaded for rows.
void ForgetWishedImages();
// Frees all pictures, before the display closes; ends the loading first.
void ForgetImages();

// A widget that keeps what its GadgetUps are about until it is asked. They go together when the window
// closes.
class KeepsEvents {
public:
    virtual void ForgetEvents() = 0;

protected:
    ~KeepsEvents() = default;
};

// Queues an event in the window of a widget; false when it is dropped (blocked, closed, a dialog).
bool PostFrom(const QWidget& origin, EventClass eventClass, std::uint16_t id, std::uint16_t code = 0);

// Tells the window of a widget that a menu is wanted at a place of the widget.
void PostMenuVerify(const QWidget& origin, std::uint16_t id, const QPoint& place);
// The key that asks for the menu of what has the keyboard.
[[nodiscard]] bool IsMenuKey(const QKeyEvent& event);

// Plain Return or Enter, with which a button that has the keyboard is pressed.
[[nodiscard]] bool IsReturn(const QKeyEvent& event);

// The qualifier bits at the moment of the event that is being served.
[[nodiscard]] std::uint16_t CurrentQualifier();
// The Amiga code of a key, and whether it is only a qualifier key.
[[nodiscard]] std::uint16_t RawKeyOf(const QKeyEvent& event);
[[nodiscard]] bool IsQualifierKey(const QKeyEvent& event);
// Keeps track of which of two equal keys is held. Called for every key before it is served.
void NoteQualifierKey(const QKeyEvent& event);

} // namespace intuition
