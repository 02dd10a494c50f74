// Environment variables: small files in ENV:, the saved ones in ENVARC: as well. Variables local to
// a process are not kept.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dos {

enum class VarScope { Global, GlobalSaved }; // ENV: only, or ENV: and ENVARC:

// The text up to the first line end, from ENV: or else from ENVARC:. Nothing with IoErr when there
// is none. A name may lie in drawers ("AppPaths/Solvane").
[[nodiscard]] std::optional<std::string> GetVar(std::string_view name);
// Drawers on the way are made. False with IoErr; the old value then stands.
[[nodiscard]] bool SetVar(std::string_view name, std::string_view value, VarScope scope);

} // namespace dos
