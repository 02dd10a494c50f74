#include "platform/dos/MetadataWriting.h"

#include "platform/dos/Dates.h"
#include "platform/dos/HostWatch.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/Metadata.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace dos {

namespace {

constexpr std::size_t LetterCount = 8;
constexpr std::uint32_t HighBits = 0xFF00; // group and others
constexpr std::uint32_t BitsOfOwner = ProtectRead | ProtectWrite | ProtectExecute;
constexpr std::uint32_t BitsOfAttribute = ProtectOwnBits & ~BitsOfOwner;
constexpr unsigned OwnerModes = 0700;
constexpr unsigned OtherModes = 0077;

bool HasNoAttributes(int hostError) {
    return hostError == ENOTSUP || hostError == ENOSYS;
}

// The host wants a permission of its own for an attribute, AmigaDOS does not: an owner's is lent.
template <typename Deed>
bool WithLent(const Spot& spot, unsigned permission, Deed deed) {
    if (deed())
        return true;
    const unsigned mode = spot.Facts.Mode & PermissionBits;
    if (errno != EACCES || (mode & permission) != 0)
        return false;
    const int refusal = errno;
    if (!IsAwaited() || Host().ChangeMode(spot.Object.Get(), mode | permission) != 0) {
        errno = refusal;
        return false;
    }
    const bool done = deed();
    const int error = errno;
    if (Host().ChangeMode(spot.Object.Get(), mode) != 0)
        Host().ChangeMode(spot.Object.Get(), mode);
    errno = error;
    return done;
}

// An attribute's value; empty optional where there is none. False with errno.
bool ReadAttribute(const Spot& spot, const char* attribute, std::optional<std::string>& value) {
    value.reset();
    if (!IsFileMode(spot.Facts.Mode) && !IsDrawerMode(spot.Facts.Mode))
        return true; // only these can have any
    std::string text(64, '\0');
    long length = -1;
    const auto read = [&] {
        length = Host().Getxattr(spot.Object.Get(), "", attribute, text.data(), text.size());
        if (length < 0 && errno == ERANGE) {
            text.resize(LargestAttribute);
            length = Host().Getxattr(spot.Object.Get(), "", attribute, text.data(), text.size());
        }
        return length >= 0;
    };
    if (!WithLent(spot, S_IRUSR, read))
        return errno == ENODATA || HasNoAttributes(errno);
    text.resize(static_cast<std::size_t>(length));
    value = std::move(text);
    return true;
}

bool RemoveAttribute(const Spot& spot, const char* attribute) {
    return Host().RemoveAttribute(spot.Object.Get(), attribute) == 0 || errno == ENODATA;
}

bool SetAttribute(const Spot& spot, const char* attribute, const std::optional<std::string>& value) {
    if (!value)
        return RemoveAttribute(spot, attribute);
    if (!IsFileMode(spot.Facts.Mode) && !IsDrawerMode(spot.Facts.Mode)) {
        errno = ENOTSUP;
        return false;
    }
    return Host().SetAttribute(spot.Object.Get(), attribute, value->data(), value->size()) == 0;
}

bool StoreAttribute(const Spot& spot, const char* attribute, const std::optional<std::string>& value) {
    return WithLent(spot, S_IWUSR, [&] { return SetAttribute(spot, attribute, value); });
}

void RestoreAttribute(const Spot& spot, const char* attribute, const std::optional<std::string>& value) {
    const int error = errno;
    if (!StoreAttribute(spot, attribute, value) && IsAwaited())
        static_cast<void>(StoreAttribute(spot, attribute, value)); // a passing trouble is over by now
    errno = error;
}

std::uint32_t BitsOfMode(unsigned mode) {
    return (mode & S_IRUSR ? 0u : ProtectRead) | (mode & S_IWUSR ? 0u : ProtectWrite) |
           (mode & S_IXUSR ? 0u : ProtectExecute);
}

unsigned ModesOfClass(std::uint32_t allowed) {
    return (allowed & ProtectRead ? unsigned{S_IROTH} : 0u) |
           (allowed & ProtectWrite ? unsigned{S_IWOTH} : 0u) |
           (allowed & ProtectExecute ? unsigned{S_IXOTH} : 0u);
}

unsigned ModeWithBits(unsigned mode, std::uint32_t bits) {
    unsigned wanted = (mode & PermissionBits & ~OwnerModes) | (ModesOfClass(~bits & BitsOfOwner) << 6);
    if ((bits & HighBits) != 0)
        wanted = (wanted & ~OtherModes) | (ModesOfClass(bits >> ProtectGroupShift) << 3) |
                 ModesOfClass(bits >> ProtectOtherShift);
    return wanted;
}

// Sets the modes and looks whether the disk has taken those of the owner.
bool StoreMode(const Spot& spot, unsigned wanted) {
    const unsigned old = spot.Facts.Mode & PermissionBits;
    if (wanted == old)
        return true;
    if (!IsAwaited() || Host().ChangeMode(spot.Object.Get(), wanted) != 0)
        return false;
    ObjectFacts now;
    const bool isKnown = FactsOf(spot.Object.Get(), now);
    if (isKnown && (now.Mode & OwnerModes) == (wanted & OwnerModes))
        return true;
    const int error = isKnown ? ENOTSUP : errno;
    if (Host().ChangeMode(spot.Object.Get(), old) != 0 && IsAwaited())
        Host().ChangeMode(spot.Object.Get(), old);
    errno = error;
    return false;
}

// What the attribute is to say; none where modes alone tell it.
std::optional<std::string> LettersFor(std::uint32_t bits) {
    if ((bits & BitsOfAttribute) == 0)
        return {};
    return LettersFromProtection(bits & ProtectOwnBits);
}

bool ChangeBits(const Spot& spot, const StoredMetadata& stored, std::uint32_t bits) {
    const std::optional<std::string> letters = LettersFor(bits);
    const bool isNew = letters != stored.Letters;
    if (isNew && !StoreAttribute(spot, ProtectionAttribute, letters))
        return Refuse(errno, Operation::Write);
    if (StoreMode(spot, ModeWithBits(spot.Facts.Mode, bits)))
        return true;
    if (isNew)
        RestoreAttribute(spot, ProtectionAttribute, stored.Letters);
    return Refuse(errno, Operation::Write);
}

std::optional<std::string> CommentValue(const std::string& comment) {
    return comment.empty() ? std::nullopt : std::optional(comment);
}

bool ChangeComment(const Spot& spot, const std::string& comment) {
    if (StoreAttribute(spot, CommentAttribute, CommentValue(comment)))
        return true;
    if (comment.empty() && HasNoAttributes(errno))
        return true; // there is none
    if (errno == E2BIG || errno == ERANGE || (errno == ENOSPC && comment.size() > 1024)) {
        SetIoErr(ErrorCommentTooBig); // file systems have about one block for all attributes
        return false;
    }
    return Refuse(errno, Operation::Write);
}

bool ReadTime(const Spot& spot, struct statx_timestamp& time) {
    struct statx raw {};
    if (Host().Statx(spot.Object.Get(), "", AT_EMPTY_PATH, STATX_MTIME, &raw) != 0)
        return false;
    time = raw.stx_mtime;
    return true;
}

// Sets the time and looks whether the disk can keep it.
bool ChangeDate(const Spot& spot, std::uint32_t date) {
    const std::int64_t wanted = UnixFromAmigaSeconds(date);
    struct statx_timestamp old {};
    struct statx_timestamp now {};
    if (!ReadTime(spot, old) || !IsAwaited() || Host().SetTime(spot.Object.Get(), wanted, 0) != 0)
        return Refuse(errno, Operation::Write);
    const bool isKnown = ReadTime(spot, now);
    const std::int64_t difference = now.tv_sec - wanted;
    if (isKnown && difference <= LargestTimeError && -difference <= LargestTimeError)
        return true;
    const int error = isKnown ? ENOTSUP : errno;
    if (Host().SetTime(spot.Object.Get(), old.tv_sec, old.tv_nsec) != 0)
        Host().SetTime(spot.Object.Get(), old.tv_sec, old.tv_nsec);
    return Refuse(error, Operation::Write);
}

// What a sidecar has to say before the change.
bool FactsBefore(const Spot& spot, const StoredMetadata& stored, SidecarFacts& facts) {
    facts = stored.Sidecar.Facts;
    facts.Protection = stored.Bits;
    if (!facts.Date) {
        struct statx_timestamp time {};
        if (!ReadTime(spot, time))
            return false;
        facts.Date = AmigaSecondsFromUnix(time.tv_sec);
        facts.Hundredths = HundredthsOf(time.tv_nsec);
    }
    std::optional<std::string> comment;
    if (stored.Sidecar.State != SidecarState::Ours) {
        if (!ReadAttribute(spot, CommentAttribute, comment))
            return false;
        // A longer one stays where it is, and is found there since the sidecar has none.
        if (comment && SidecarCommentLength(*comment) <= LongestSidecarComment)
            facts.Comment = *comment;
    }
    return true;
}

// The sidecar tells all; the host's own values follow where the host lets them.
void Mirror(const Spot& spot, const MetadataChange& change) {
    if (change.Protection && IsAwaited())
        Host().ChangeMode(spot.Object.Get(), ModeWithBits(spot.Facts.Mode, *change.Protection));
    if (change.Date && IsAwaited())
        Host().SetTime(spot.Object.Get(), UnixFromAmigaSeconds(*change.Date), 0);
}

bool ChangeSidecar(const Spot& spot, const StoredMetadata& stored, const MetadataChange& change) {
    SidecarFacts facts;
    if (!FactsBefore(spot, stored, facts))
        return Refuse(errno, Operation::Write);
    if (change.Protection)
        facts.Protection = *change.Protection & ProtectOwnBits;
    if (change.Date) {
        facts.Date = change.Date;
        facts.Hundredths = 0;
    }
    if (change.Comment)
        facts.Comment = *change.Comment;
    // One that another writer made longer stays as it is.
    if (change.Comment && SidecarCommentLength(*change.Comment) > LongestSidecarComment) {
        SetIoErr(ErrorCommentTooBig);
        return false;
    }
    // A comment in the attribute would show again behind an empty one.
    std::optional<std::string> hidden;
    const bool isCleared = change.Comment && change.Comment->empty();
    if (isCleared && (!ReadAttribute(spot, CommentAttribute, hidden) ||
                      (hidden && !StoreAttribute(spot, CommentAttribute, {}))))
        return Refuse(errno, Operation::Write);
    if (!WriteSidecar(spot.Drawer.Get(), spot.Name, stored.Sidecar, facts)) {
        if (hidden)
            RestoreAttribute(spot, CommentAttribute, hidden);
        return Refuse(errno, Operation::Write);
    }
    Mirror(spot, change);
    return true;
}

} // namespace

bool ReadStored(const Spot& spot, StoredMetadata& stored) {
    std::optional<std::string> letters;
    if (!ReadAttribute(spot, ProtectionAttribute, letters))
        return false;
    stored = StoredMetadata();
    stored.Bits = IsLinkMode(spot.Facts.Mode) ? 0 : BitsOfMode(spot.Facts.Mode);
    if (letters) {
        // A final NUL may be stored too.
        if (const auto bits = ProtectionFromLetters(std::string_view(*letters).substr(0, LetterCount)))
            stored.Bits |= *bits & BitsOfAttribute;
        stored.Letters = std::move(letters);
    }
    if (!spot.Drawer)
        return true;
    if (!FindSidecar(spot.Drawer.Get(), spot.Name, stored.Sidecar))
        return false;
    if (stored.Sidecar.State == SidecarState::Ours)
        stored.Bits = *stored.Sidecar.Facts.Protection;
    return true;
}

bool TellAll(const Spot& spot, SidecarFacts& facts, SidecarFile& sidecar) {
    StoredMetadata stored;
    if (!ReadStored(spot, stored) || !FactsBefore(spot, stored, facts))
        return false;
    sidecar = std::move(stored.Sidecar);
    return true;
}

bool ChangeStored(const Spot& spot, const MetadataChange& wish) {
    StoredMetadata stored;
    if (!ReadStored(spot, stored) || !IsAwaited())
        return Refuse(errno, Operation::Write);
    MetadataChange change = wish;
    if (change.Protection)
        *change.Protection = (*wish.Protection & ~wish.KeptProtection) | (stored.Bits & wish.KeptProtection);
    const bool wantsSidecar =
        spot.Drawer && spot.On->Info.Metadata == MetadataRule::Uaem && !stored.Sidecar.HasNoRoom;
    if (stored.Sidecar.State == SidecarState::Ours || wantsSidecar) {
        if (stored.Sidecar.State != SidecarState::Foreign)
            return ChangeSidecar(spot, stored, change);
        SetIoErr(ErrorObjectExists);
        return false;
    }
    if (change.Protection)
        return ChangeBits(spot, stored, *change.Protection);
    if (change.Comment)
        return ChangeComment(spot, *change.Comment);
    return !change.Date || ChangeDate(spot, *change.Date);
}

} // namespace dos
