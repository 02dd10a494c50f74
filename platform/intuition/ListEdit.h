// The line in which a cell of a list is edited in place. Private to this service.
#pragma once

#include <QLineEdit>

#include <cstddef>
#include <string>
#include <string_view>

namespace intuition {

class ListView;

// Lies over its cell from the start of editing to its end; the list owns it.
class CellEditor : public QLineEdit {
public:
    // The beginning of the text, up to its last dot, is marked, so that typing keeps the extension.
    CellEditor(ListView& list, std::string_view text, std::size_t maximumBytes);
    // At most so many bytes, as they were typed.
    [[nodiscard]] std::string Bytes() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    ListView& List;
    std::size_t MaximumBytes;
};

} // namespace intuition
