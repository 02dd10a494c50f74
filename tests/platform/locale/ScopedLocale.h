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
    ~ScopedLocale() { locale::Reset(); }

private:
    ScopedVariable All, Wishes;
};
