// Bounded text: a value that holds at most N-1 bytes, is cut at a whole UTF-8 character, and takes
// eight bytes when empty, whatever N. It knows nothing of locales; case is folded by
// utility::Stricmp.
//
// What may be relied on: a Text ends at the first NUL byte, CStr() and View() always agree, and
// copies (also into a Text of another size, when the text fits) share one immutable block. Copies
// may be used and dropped on different threads; one Text object may not be written on one thread
// while another reads it.
#pragma once

#include <atomic>
#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace solvane {

class TextBase;

// Anything that reads as text and is not itself bounded text.
template <class T>
concept PlainText = std::convertible_to<const T&, std::string_view> && !std::derived_from<T, TextBase>;

// What all sizes share: one pointer to a counted block, null for the empty text.
class TextBase {
public:
    [[nodiscard]] std::string_view View() const noexcept {
        return Shared ? std::string_view(Bytes(Shared), Shared->Size) : std::string_view();
    }
    [[nodiscard]] const char* CStr() const noexcept { return Shared ? Bytes(Shared) : ""; }
    [[nodiscard]] bool Empty() const noexcept { return Shared == nullptr; }
    [[nodiscard]] std::size_t Size() const noexcept { return Shared ? Shared->Size : 0; } // bytes

    // NOLINTNEXTLINE(google-explicit-constructor): a bounded text goes wherever a view is asked for
    operator std::string_view() const noexcept { return View(); }

    void Clear() noexcept { Release(std::exchange(Shared, nullptr)); }

    // True when both are equal byte for byte; == folds case.
    [[nodiscard]] bool SameBytes(std::string_view other) const noexcept { return View() == other; }

    friend bool operator==(const TextBase& a, const TextBase& b) noexcept {
        return a.Shared == b.Shared || Compare(a.View(), b.View()) == 0;
    }
    friend bool operator==(const TextBase& a, std::string_view b) noexcept {
        return Compare(a.View(), b) == 0;
    }
    friend std::weak_ordering operator<=>(const TextBase& a, const TextBase& b) noexcept {
        return Compare(a.View(), b.View()) <=> 0;
    }
    friend std::weak_ordering operator<=>(const TextBase& a, std::string_view b) noexcept {
        return Compare(a.View(), b) <=> 0;
    }

protected:
    TextBase() noexcept = default;
    TextBase(const TextBase& other) noexcept : Shared(Share(other.Shared)) {}
    TextBase(TextBase&& other) noexcept : Shared(std::exchange(other.Shared, nullptr)) {}
    TextBase& operator=(const TextBase& other) noexcept {
        Release(std::exchange(Shared, Share(other.Shared)));
        return *this;
    }
    TextBase& operator=(TextBase&& other) noexcept {
        if (this != &other) {
            Release(std::exchange(Shared, std::exchange(other.Shared, nullptr)));
        }
        return *this;
    }
    ~TextBase() { Release(Shared); }

    // limit: the most bytes that the text may have. text may point into this very text.
    void Set(std::string_view text, std::size_t limit);
    void SetFrom(const TextBase& other, std::size_t limit);
    void Add(std::string_view text, std::size_t limit);

private:
    // The bytes and their terminator follow the block at once.
    struct Block {
        explicit Block(std::uint32_t size) noexcept : Size(size) {}
        std::atomic<std::uint32_t> Users{1};
        std::uint32_t Size; // bytes, terminator not counted
    };

    static const char* Bytes(const Block* block) noexcept { return reinterpret_cast<const char*>(block + 1); }
    static Block* Share(Block* block) noexcept {
        if (block) {
            block->Users.fetch_add(1, std::memory_order_relaxed);
        }
        return block;
    }
    static void Release(Block* block) noexcept {
        if (block && block->Users.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            Free(block);
        }
    }
    static Block* Make(std::string_view head, std::string_view tail);
    static void Free(Block* block) noexcept;
    static int Compare(std::string_view a, std::string_view b) noexcept;

    Block* Shared = nullptr;
};

// A text of at most N-1 bytes.
template <std::size_t N>
class Text : public TextBase {
    static_assert(N >= 2 && N - 1 <= UINT32_MAX, "a bounded text has room for at least one byte");

public:
    static constexpr std::size_t Limit = N - 1; // bytes

    Text() noexcept = default;
    Text(const Text&) noexcept = default;
    Text(Text&&) noexcept = default;
    Text& operator=(const Text&) noexcept = default;
    Text& operator=(Text&&) noexcept = default;
    ~Text() = default;

    template <PlainText T>
    Text(const T& text) { // NOLINT(google-explicit-constructor)
        Set(text, Limit);
    }
    template <std::size_t M>
    Text(const Text<M>& other) { // NOLINT(google-explicit-constructor)
        SetFrom(other, Limit);
    }
    template <PlainText T>
    Text& operator=(const T& text) {
        Set(text, Limit);
        return *this;
    }
    template <std::size_t M>
    Text& operator=(const Text<M>& other) {
        SetFrom(other, Limit);
        return *this;
    }

    // Adds at the end; what does not fit is cut off.
    Text& Append(std::string_view text) {
        Add(text, Limit);
        return *this;
    }
};

} // namespace solvane
