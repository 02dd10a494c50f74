// Small dialogs that ask for texts or for one of several entries. All go through one seam, as requesters do.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace intuition {

class Window;

struct FormField {
    std::string Label;
    std::string Text;
    std::size_t MaximumBytes = 127;
    std::string Forbidden{};    // ASCII characters that cannot be typed
    bool TakesKeys = false;     // shows the keys that are pressed in it, as ParseKeyCombination reads them
    std::string ChooserTitle{}; // a button beside the field lets a drawer be chosen, under this title
};

struct FormCheck {
    std::string Label;
    bool Set = false;
};

// A dialog with fields and check boxes under each other, or with a list of which one entry is chosen. Names
// are data.
struct FormSpec {
    std::string Title;
    std::string Picture{}; // path of a picture file beside the fields
    std::vector<FormField> Fields{};
    std::vector<FormCheck> Checks{};
    std::size_t Focus = 0;              // the field that has the keyboard first
    std::vector<std::string> Choices{}; // the first is chosen at the start
    std::vector<std::string> Gadgets{}; // as of a requester
};

struct FormAnswer {
    int Gadget = 0;                   // as a requester's
    std::vector<std::string> Texts{}; // of the fields
    std::size_t Choice = 0;
    std::vector<bool> Checks{}; // whether each box is checked
};

// Asks and waits, with the parent blocked; null stands for the active window. A double click on an entry
// presses the first gadget. Without a display the answer is that of the last gadget.
[[nodiscard]] FormAnswer AskForm(Window* parent, const FormSpec& spec);

using FormHandler = std::function<FormAnswer(const FormSpec&)>;
// Answers forms in the user's place from now on; empty ends that. The old handler comes back.
FormHandler SetFormHandler(FormHandler handler);

} // namespace intuition
