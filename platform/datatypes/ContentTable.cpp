#include "platform/datatypes/ContentTable.h"

#include "platform/datatypes/TextForms.h"
#include "platform/datatypes/TypeRegistry.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace datatypes {

namespace {

struct Entry {
    const ContentRow* Row;
    const DataType* Type; // the registered one: rows of one name share it
    bool NeedsBinary;     // its mark alone could as well begin a line of text
};

// Rows with a mark at the start of the file by its first byte, the others apart.
struct Index {
    std::array<std::vector<Entry>, 256> ByFirstByte;
    std::vector<Entry> Elsewhere;
};

bool IsPrintable(std::string_view mark) {
    return std::ranges::all_of(mark, [](char c) { return c >= ' ' && c <= '~'; });
}

// What is behind a mark of letters has to show that they are no word, unless a second mark or a matcher does.
bool MayBeWords(const ContentRow& row) {
    return !row.First.Value.empty() && row.Second.Value.empty() && row.Match == nullptr &&
           IsPrintable(row.First.Value);
}

void AddRows(Index& index, std::span<const ContentRow> rows) {
    for (const ContentRow& row : rows) {
        const bool atStart = row.First.Offset == 0 && !row.First.Value.empty();
        auto& list =
            atStart ? index.ByFirstByte[static_cast<unsigned char>(row.First.Value[0])] : index.Elsewhere;
        list.push_back({&row, FindType(row.Type.Name), MayBeWords(row)});
    }
}

const Index& RowIndex() {
    static const Index index = [] {
        Index made;
        AddRows(made, AmigaFormats());
        AddRows(made, MediaFormats());
        AddRows(made, GeneralFormats());
        return made;
    }();
    return index;
}

bool Fits(const ContentRow& row, const Specimen& specimen) {
    return HasMark(specimen.Head, row.First.Offset, row.First.Value) &&
           HasMark(specimen.Head, row.Second.Offset, row.Second.Value) &&
           (row.Match == nullptr || row.Match(specimen));
}

// A head whose being text is found out when it is first asked for.
class Head {
public:
    explicit Head(const Specimen& specimen) noexcept : File(specimen) {}
    [[nodiscard]] ContentMatch FirstFit(std::span<const Entry> entries) {
        for (const Entry& entry : entries) {
            if (Fits(*entry.Row, File) && !(entry.NeedsBinary && ReadsAsText())) {
                return {entry.Type, entry.Row->Holds};
            }
        }
        return {};
    }

private:
    enum class Answer : std::uint8_t { NotAsked, No, Yes };

    [[nodiscard]] bool ReadsAsText() {
        if (Text == Answer::NotAsked) {
            Text = IsText(File.Head) ? Answer::Yes : Answer::No;
        }
        return Text == Answer::Yes;
    }

    const Specimen& File;
    Answer Text = Answer::NotAsked;
};

} // namespace

ContentMatch MatchContent(const Specimen& specimen) {
    if (specimen.Head.empty()) {
        return {};
    }
    const Index& index = RowIndex();
    Head head(specimen);
    const ContentMatch match = head.FirstFit(index.ByFirstByte[U8(specimen.Head, 0)]);
    return match.Type != nullptr ? match : head.FirstFit(index.Elsewhere);
}

} // namespace datatypes
