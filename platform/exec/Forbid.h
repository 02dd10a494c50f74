// One lock among all processes of this user, for short sections around the claims of port names. It
// keeps out the other threads of this process as well.
#pragma once

namespace exec {

// Waits until nobody else is inside. Calls nest per thread. The lock ends with its thread and with
// the process, however that dies. Without a runtime directory only this process is kept out.
void Forbid();
// Leaves the section at the outermost level; without a Forbid of this thread it does nothing.
void Permit();
// As Forbid when the lock is free, else false at once.
[[nodiscard]] bool AttemptForbid();

// Forbid for the length of a scope.
class ForbidScope {
public:
    ForbidScope() { Forbid(); }
    ~ForbidScope() { Permit(); }
    ForbidScope(const ForbidScope&) = delete;
    ForbidScope& operator=(const ForbidScope&) = delete;
};

} // namespace exec
