// The user's locale for the life of an object.
#pragma once

#include "platform/locale/Locale.h"
#include "tests/platform/utility/ScopedVariable.h"

#include <string>

class ScopedLocale {
public:
    explicit ScopedLocale(const std::string& all) : All("LC_ALL", all), Wishes("LANGUAGE", "") {
        locale::Reset();
    }

private:
    struct ResetWhenRestored {
        ~ResetWhenRestored() { locale::Reset(); }
    };

    ResetWhenRestored Last; // stands first, so that it ends after the variables have their old values
    ScopedVariable All, Wishes;
};
