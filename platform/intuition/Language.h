// The toolkit's own texts (file dialogs, the menus of fields) in a language of the program. Private to
// platform/intuition.
#pragma once

#include <QTranslator>

#include <memory>
#include <string_view>

namespace intuition {

// A language by its English name ("german"); null where the host has no texts of it and we have none.
[[nodiscard]] std::unique_ptr<QTranslator> ToolkitTexts(std::string_view language);

// The Greek ones, which the toolkit comes without.
[[nodiscard]] std::unique_ptr<QTranslator> GreekTexts();

} // namespace intuition
