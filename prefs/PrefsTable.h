// The scalar settings as a table: each row ties a key of the document to its field of the record.
#pragma once

#include "model/Prefs.h"
#include "platform/application/Dictionary.h"

#include <span>
#include <string_view>

namespace solvane {

// One setting. A key that is missing or of another kind, and a choice that there is not, give the field the
// value it has in defaults, and so does a path that does not fit; a measure is brought within its limits.
struct PrefsKey {
    std::string_view Key;
    void (*Load)(const application::Dictionary& from, std::string_view key, const PrefsRecord& defaults,
                 PrefsRecord& into);
    void (*Save)(const PrefsRecord& from, std::string_view key, application::Dictionary& into);
    bool IsPath = false;
};

// True when the document has a path under the key that does not fit, so that Load leaves it out.
[[nodiscard]] bool IsPassedOver(const PrefsKey& key, const application::Dictionary& from);

// All scalar settings in the order of the document.
[[nodiscard]] std::span<const PrefsKey> PrefsKeys();

} // namespace solvane
