#include "interface/SpeedBars.h"

#include "interface/Images.h"
#include "interface/MainLayout.h"
#include "interface/MenuIds.h"
#include "model/Prefs.h"
#include "model/PrefsLists.h"
#include "platform/intuition/Layout.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace solvane {

namespace {

using intuition::SpeedBar;
using intuition::SpeedButton;

constexpr std::size_t MostButtons = 500; // of a bar

struct ButtonLook {
    MessageNumber Hint;
    std::string_view Image;
};

// By the number of the button, as ItemOfButton.
constexpr std::array ButtonLooks = {
    ButtonLook{MSG_TB_SELECT_ALL, "file_selectall"},
    ButtonLook{MSG_TB_SELECT_NONE, "file_unselectall"},
    ButtonLook{MSG_TB_TOGGLE_SELECTION, "selecttoggle"},
    ButtonLook{MSG_TB_SELECT_BY_TYPE, "select"},
    ButtonLook{MSG_TB_PATTERN, "filepattern"},
    ButtonLook{MSG_TB_CUT, "cut"},
    ButtonLook{MSG_TB_COPY, "copy"},
    ButtonLook{MSG_TB_PASTE, "paste"},
    ButtonLook{MSG_TB_DELETE, "delete"},
    ButtonLook{MSG_TB_NEW_DRAWER, "newdrawer"},
    ButtonLook{MSG_TB_RENAME, "rename"},
    ButtonLook{MSG_TB_PROTECT, "protect"},
    ButtonLook{MSG_TB_FILENOTE, "filecomments"},
    ButtonLook{MSG_TB_ARCHIVE, "archive"},
    ButtonLook{MSG_TB_EDIT_FILE, "editor"},
    ButtonLook{MSG_TB_GET_DRAWER_SIZE, "filesize"},
    ButtonLook{MSG_TB_ADD_ICON, "addicon"},
    ButtonLook{MSG_TB_REMOVE_ICON, "removeicon"},
    ButtonLook{MSG_TB_GET_VERSION, "version"},
    ButtonLook{MSG_TB_INFORMATION, "info"},
    ButtonLook{MSG_TB_DOWNLOAD, "download"},
    ButtonLook{MSG_TB_EXECUTE_AREXX, "arexx"},
    ButtonLook{MSG_TB_LEAVE_OUT, "iconleaveout"},
    ButtonLook{MSG_TB_PUT_AWAY, "iconputaway"},
};
static_assert(ButtonLooks.size() == ItemOfButton.size());

// One of the three: what it is made of, and where it stands while it is there.
struct BarKind {
    GadgetId Left, Bar, Right;
    MessageNumber Name;
    std::int16_t PrefsRecord::*Switch;
    SpeedBar* MainObjects::*Gadget;
    void (*Update)();
};
constexpr std::array Kinds = { // from the top
    BarKind{GadgetBookmarksLeft, GadgetBookmarks, GadgetBookmarksRight, MSG_BOOKMARKS,
            &PrefsRecord::BookmarksBar, &MainObjects::Bookmarks, UpdateSpeedBar_Bookmarks},
    BarKind{GadgetToolbarLeft, GadgetToolbar, GadgetToolbarRight, MSG_MENU_TOOLBAR, &PrefsRecord::Toolbar,
            &MainObjects::Toolbar, UpdateSpeedBar_Toolbar},
    BarKind{GadgetUserButtonsLeft, GadgetUserButtons, GadgetUserButtonsRight, MSG_MENU_USER_BUTTONS,
            &PrefsRecord::UserButtonsBar, &MainObjects::UserButtons, UpdateSpeedBar_UserButtons}};

intuition::ImageId Picture(std::string_view name, int side, ToolImageForm form) {
    return intuition::ObtainImage(ToolImagePath(name, side, form));
}

SpeedButton WithPictures(SpeedButton button, std::string_view name) {
    const int side = ToolImageSide(Prefs.ToolbarImageSize);
    button.Image = Picture(name, side, ToolImageForm::Plain);
    button.Selected = Picture(name, side, ToolImageForm::Selected);
    button.Ghosted = Picture(name, side, ToolImageForm::Ghosted);
    return button;
}

intuition::Button& AddEnd(intuition::Layout& row, GadgetId id, std::string_view picture, MessageNumber hint) {
    auto made = CreatePictureButton(id, picture, SAK_LocaleString(hint));
    intuition::Button& end = *made;
    row.Add(std::move(made));
    return end;
}

std::unique_ptr<intuition::Layout> CreateBarGroup(const BarKind& kind) {
    auto row = std::make_unique<intuition::Layout>(
        intuition::LayoutSpec{.Direction = intuition::Orientation::Horizontal, .Spacing = 0});
    intuition::Button& left = AddEnd(*row, kind.Left, "scrollleft", MSG_HINT_SCROLL_LEFT);
    auto made = std::make_unique<SpeedBar>(kind.Bar, SAK_LocaleString(kind.Name));
    SpeedBar* bar = made.get();
    row->Add(std::move(made), 1);
    bar->SetEnds(left, AddEnd(*row, kind.Right, "scrollright", MSG_HINT_SCROLL_RIGHT));
    Objects.*kind.Gadget = bar;
    return row;
}

// The bar is gone with its row, which stands at that position of the window.
void RemoveBar(const BarKind& kind, std::size_t position) {
    Objects.*kind.Gadget = nullptr;
    Objects.Root->Remove(*Objects.Root->Child(position));
}

void Scroll(SpeedBar* bar, int delta) {
    if (bar != nullptr) {
        const auto top = static_cast<std::int64_t>(bar->Top()) + delta;
        bar->SetTop(static_cast<std::size_t>(std::max<std::int64_t>(top, 0)));
    }
}

intuition::ImageId PictureOf(LocationKind location) {
    switch (location) {
    case LocationKind::Drawer:
        return intuition::ObtainImage(ListImagePath(ListImage::Drawer));
    case LocationKind::Workbench:
        return intuition::ObtainImage(ListImagePath(ListImage::Desktop));
    case LocationKind::Computer:
        return intuition::ObtainImage(ListImagePath(ListImage::Computer));
    case LocationKind::Assigns:
        return intuition::ObtainImage(ListImagePath(ListImage::Assign));
    case LocationKind::FTPSites:
        return intuition::ObtainImage(ListImagePath(ListImage::FTPSite));
    default:
        return intuition::ObtainImage(ListImagePath(ListImage::Bookmark));
    }
}

// Any file of the user's, in the size of the toolbar's pictures.
intuition::ImageWish WishForPicture(std::string_view path) {
    intuition::ImageWish wish;
    if (!path.empty()) {
        wish.Steps.push_back({.Path = std::string(path)});
    }
    wish.Width = wish.Height = ToolImageSide(Prefs.ToolbarImageSize);
    return wish;
}

// Shows at most the buttons that a bar can have; their codes are their positions in the list.
template <class List, class Make>
void FillBar(SpeedBar& bar, const List& list, Make make) {
    std::vector<SpeedButton> buttons;
    if (list) {
        for (const auto& node : *list) {
            if (buttons.size() == MostButtons) {
                break;
            }
            buttons.push_back(make(node));
            buttons.back().Code = static_cast<std::uint16_t>(buttons.size() - 1);
        }
    }
    bar.SetButtons(std::move(buttons));
}

} // namespace

std::unique_ptr<intuition::Button> CreatePictureButton(std::uint16_t id, std::string_view picture,
                                                       std::string_view hint) {
    const int side = ToolImageSide(0);
    auto button = std::make_unique<intuition::Button>(id, Picture(picture, side, ToolImageForm::Plain), hint);
    button->SetGhostedImage(Picture(picture, side, ToolImageForm::Ghosted));
    return button;
}

void ShowSpeedBars() {
    if (Objects.Root == nullptr) {
        return;
    }
    std::size_t position = 0;
    for (const BarKind& kind : Kinds) {
        const bool isShown = Objects.*kind.Gadget != nullptr;
        const bool isWanted = Prefs.*kind.Switch != 0;
        if (isShown && !isWanted) {
            RemoveBar(kind, position);
        } else if (!isShown && isWanted) {
            Objects.Root->Insert(position, CreateBarGroup(kind));
            kind.Update();
        }
        position += isWanted ? 1 : 0;
    }
}

void UpdateSpeedBar_Bookmarks() {
    if (Objects.Bookmarks != nullptr) {
        FillBar(*Objects.Bookmarks, MasterBookmarksList, [](const BookmarksNode& node) {
            return SpeedButton{.Text = std::string(node.Name.View()),
                               .Hint = std::string(node.Path.View()),
                               .Image = PictureOf(node.Location)};
        });
    }
}

void UpdateSpeedBar_Toolbar() {
    if (Objects.Toolbar == nullptr) {
        return;
    }
    std::vector<SpeedButton> buttons;
    bool isEmpty = true; // while there are only separators
    if (ToolbarList) {
        for (const ToolbarNode& node : *ToolbarList) {
            if (node.ButtonID > ButtonLooks.size() || buttons.size() == MostButtons) {
                continue; // a button of a later version
            }
            if (node.ButtonID == 0) {
                buttons.push_back({.Separator = true});
                continue;
            }
            isEmpty = false;
            const ButtonLook& look = ButtonLooks[node.ButtonID - 1U];
            buttons.push_back(WithPictures(
                {.Code = node.ButtonID, .Hint = std::string(SAK_LocaleString(look.Hint))}, look.Image));
        }
    }
    Objects.Toolbar->SetButtons(isEmpty ? std::vector<SpeedButton>() : std::move(buttons));
    if (const auto state = PresentState()) {
        ShowToolbarState(DoSetToolbarState(*state));
    }
}

void UpdateSpeedBar_UserButtons() {
    if (Objects.UserButtons != nullptr) {
        FillBar(*Objects.UserButtons, UserButtonsList, [](const UserButtonsNode& node) {
            const std::string name(node.Name.View());
            return SpeedButton{.Text = name,
                               .Hint = node.HintText.Empty() ? name : std::string(node.HintText.View()),
                               .Wish = WishForPicture(node.ImagePath.View())};
        });
    }
}

void ShowToolbarState(const ItemStates& states) {
    if (Objects.Toolbar == nullptr) {
        return;
    }
    for (std::size_t at = 0; at < states.size(); ++at) {
        Objects.Toolbar->SetButtonDisabled(static_cast<std::uint16_t>(at + 1), !states[at].Enabled);
    }
}

void ScrollSpeedBar_Bookmarks(int delta) {
    Scroll(Objects.Bookmarks, delta);
}

void ScrollSpeedBar_Toolbar(int delta) {
    Scroll(Objects.Toolbar, delta);
}

void ScrollSpeedBar_UserButtons(int delta) {
    Scroll(Objects.UserButtons, delta);
}

} // namespace solvane
