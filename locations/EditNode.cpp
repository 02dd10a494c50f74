#include "locations/EditNode.h"

#include "interface/MainLayout.h"
#include "interface/Tell.h"
#include "locations/EnterDrawer.h"
#include "platform/intuition/FormRequesters.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace solvane {

Text<128> AslReqFile;
Text<1024> AslReqDrawer;

namespace {

std::vector<std::string> Buttons() {
    return {std::string(SAK_LocaleString(MSG_OK_GAD)), std::string(SAK_LocaleString(MSG_CANCEL_GAD))};
}

constexpr std::size_t LongestTyped = 4096; // bytes; host paths may be longer than what they become

// Asks until nothing is empty that must not be. The result is the gadget; the fields have what was entered.
int AskUntilWhole(intuition::FormSpec& form, EmptyValues empty) {
    for (;;) {
        const intuition::FormAnswer answer = intuition::AskForm(MainWindow.get(), form);
        if (answer.Gadget < 0) {
            Tell(MSG_NO_WINDOW, RequesterImage::Error);
        }
        if (answer.Gadget <= 0 || answer.Texts.size() != form.Fields.size()) {
            return answer.Gadget < 0 ? answer.Gadget : 0;
        }
        for (std::size_t at = 0; at < form.Fields.size(); ++at) {
            form.Fields[at].Text = answer.Texts[at];
        }
        const auto missing =
            std::find_if(form.Fields.begin(), form.Fields.end(),
                         [](const intuition::FormField& field) { return field.Text.empty(); });
        if (empty == EmptyValues::Allowed || missing == form.Fields.end()) {
            return answer.Gadget;
        }
        Tell(MSG_VALUE_EMPTY);
        form.Focus = static_cast<std::size_t>(missing - form.Fields.begin());
    }
}

} // namespace

int EditNode(std::string_view title, std::string_view picture, std::string_view nameLabel,
             std::string_view drawerLabel, EmptyValues empty) {
    intuition::FormSpec form{.Title = std::string(title), .Picture = std::string(picture)};
    form.Gadgets = Buttons();
    form.Fields.push_back({.Label = std::string(nameLabel),
                           .Text = std::string(AslReqFile.View()),
                           .MaximumBytes = Text<128>::Limit});
    form.Fields.push_back({.Label = std::string(drawerLabel),
                           .Text = std::string(AslReqDrawer.View()),
                           .MaximumBytes = LongestTyped,
                           .ChooserTitle = std::string(SAK_LocaleString(MSG_SELECT_DRAWER))});
    for (;;) {
        const int result = AskUntilWhole(form, empty);
        const std::optional<Text<1024>> drawer = TypedPath(form.Fields[1].Text);
        if (result > 0 && !drawer) {
            Tell(MSG_PATH_TOO_LONG);
            form.Focus = 1;
            continue;
        }
        if (result > 0) {
            AslReqFile = form.Fields[0].Text;
            AslReqDrawer = *drawer;
        }
        return result;
    }
}

int EditNodeNoDrawer(std::string_view title, std::string_view picture, std::string_view label,
                     EmptyValues empty, std::size_t longest) {
    const bool editsDrawer = AslReqFile.Empty() && !AslReqDrawer.Empty();
    const std::string_view text = editsDrawer ? AslReqDrawer.View() : AslReqFile.View();
    intuition::FormSpec form{.Title = std::string(title), .Picture = std::string(picture)};
    form.Gadgets = Buttons();
    form.Fields.push_back({.Label = std::string(label), .Text = std::string(text), .MaximumBytes = longest});
    const int result = AskUntilWhole(form, empty);
    if (result > 0 && editsDrawer) {
        AslReqDrawer = form.Fields[0].Text;
    } else if (result > 0) {
        AslReqFile = form.Fields[0].Text;
    }
    return result;
}

} // namespace solvane
