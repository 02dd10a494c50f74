#include "platform/datatypes/Magic.h"

#include "platform/datatypes/MimeTypes.h"
#include "platform/datatypes/RecentAnswers.h"

#include <algorithm>
#include <bitset>
#include <fcntl.h>
#include <magic.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace datatypes {

namespace {

constexpr std::size_t BytesAsked = 1024; // marks further inside are rare, searching costs time

// What our own tables and tests know better is left out; so is all that would start programs.
constexpr int Flags = MAGIC_MIME_TYPE | MAGIC_NO_CHECK_COMPRESS | MAGIC_NO_CHECK_TAR |
                      MAGIC_NO_CHECK_APPTYPE | MAGIC_NO_CHECK_ELF | MAGIC_NO_CHECK_TEXT | MAGIC_NO_CHECK_CDF |
                      MAGIC_NO_CHECK_CSV | MAGIC_NO_CHECK_TOKENS | MAGIC_NO_CHECK_ENCODING |
                      MAGIC_NO_CHECK_JSON;

struct CookieCloser {
    void operator()(magic_set* cookie) const noexcept { magic_close(cookie); }
};
using Cookie = std::unique_ptr<magic_set, CookieCloser>;

// The compiled database, mapped once for the life of the program; null when there is none.
struct Database {
    void* Start = nullptr;
    std::size_t Size = 0;
};

Database MapFile(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat facts = {};
    Database mapped;
    if (file >= 0 && fstat(file, &facts) == 0 && S_ISREG(facts.st_mode) && facts.st_size > 0) {
        const auto size = static_cast<std::size_t>(facts.st_size);
        void* start = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
        if (start != MAP_FAILED) {
            mapped = {start, size};
        }
    }
    if (file >= 0) {
        close(file);
    }
    return mapped;
}

// The first of the library's usual places, "a:b:c", that has a compiled database.
Database MapDatabase() {
    const char* places = magic_getpath(nullptr, 0);
    std::string_view rest = places == nullptr ? "" : places;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        if (const Database found = MapFile(std::string(rest.substr(0, end)) + ".mgc");
            found.Start != nullptr) {
            return found;
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return {};
}

Cookie OpenCookie() {
    static const Database database = MapDatabase();
    Cookie cookie(database.Start == nullptr ? nullptr : magic_open(Flags));
    void* start = database.Start;
    std::size_t size = database.Size;
    if (cookie != nullptr && magic_load_buffers(cookie.get(), &start, &size, 1) != 0) {
        cookie.reset();
    }
    return cookie;
}

// Cookies at rest. A thread takes one for a question and brings it back, so there are as many as
// threads ever asked at the same time.
struct CookiePool {
    std::mutex Lock;
    std::vector<Cookie> AtRest;
};

CookiePool& Pool() {
    static CookiePool pool;
    return pool;
}

Cookie TakeCookie() {
    CookiePool& pool = Pool();
    {
        const std::lock_guard guard(pool.Lock);
        if (!pool.AtRest.empty()) {
            Cookie cookie = std::move(pool.AtRest.back());
            pool.AtRest.pop_back();
            return cookie;
        }
    }
    return OpenCookie();
}

void PutCookieBack(Cookie cookie) {
    CookiePool& pool = Pool();
    const std::lock_guard guard(pool.Lock);
    pool.AtRest.push_back(std::move(cookie));
}

const DataType* AskDatabase(Bytes bytes) {
    Cookie cookie = TakeCookie();
    if (cookie == nullptr) {
        return nullptr;
    }
    const char* mime = magic_buffer(cookie.get(), bytes.data(), bytes.size());
    const std::string answer = mime == nullptr ? "" : mime;
    PutCookieBack(std::move(cookie));
    // Programs have marks of their own; what is left are single bytes taken for instructions.
    const bool guess = answer == "application/x-dosexec" || answer == "application/zlib";
    return guess ? nullptr : TypeForMime(answer);
}

bool IsLetter(std::byte b) {
    const char c = static_cast<char>(b);
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ';
}

// A word of four letters at the very start, or a longer one soon after it.
bool HasWord(Bytes head) {
    constexpr std::size_t lookAt = 16, atStart = 4, later = 5;
    std::size_t row = 0;
    for (std::size_t i = 0; i < std::min(lookAt, head.size()); ++i) {
        row = IsLetter(head[i]) ? row + 1 : 0;
        if (row == later || (row == atStart && i + 1 == atStart)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool HasStructure(Bytes head) noexcept {
    constexpr std::size_t lookAt = 64, least = 16;
    if (head.size() < least) {
        return HasWord(head);
    }
    const Bytes start = head.first(std::min(lookAt, head.size()));
    std::bitset<256> values;
    for (const std::byte b : start) {
        values.set(std::to_integer<std::size_t>(b));
    }
    // Of 64 random bytes 57 differ, give or take two.
    return values.count() * 5 <= start.size() * 4 - (start.size() < lookAt ? 0 : 8) || HasWord(head);
}

const DataType* TypeByMagic(Bytes head) {
    if (!HasStructure(head)) {
        return nullptr;
    }
    // Two different heads with one hash are less likely than a wrong mark in the database.
    static RecentAnswers<std::size_t, const DataType*> answers;
    const Bytes asked = head.first(std::min(head.size(), BytesAsked));
    const std::size_t key = std::hash<std::string_view>{}(AsText(asked));
    std::optional<const DataType*> type = answers.Find(key);
    if (!type) {
        type = AskDatabase(asked);
        answers.Keep(key, *type);
    }
    return *type;
}

} // namespace datatypes
