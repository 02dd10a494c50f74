// An environment variable that has a value for the life of this object and its old state afterwards.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

class ScopedVariable {
public:
    ScopedVariable(std::string name, const std::string& value) : Name(std::move(name)) {
        if (const char* old = std::getenv(Name.c_str()))
            Old = old;
        ::setenv(Name.c_str(), value.c_str(), 1);
    }
    ~ScopedVariable() {
        if (Old)
            ::setenv(Name.c_str(), Old->c_str(), 1);
        else
            ::unsetenv(Name.c_str());
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    std::string Name;
    std::optional<std::string> Old;
};
