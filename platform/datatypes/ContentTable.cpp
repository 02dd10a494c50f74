#include "platform/datatypes/ContentTable.h"

#include "platform/datatypes/TypeRegistry.h"

#include <array>
#include <vector>

namespace datatypes {

namespace {

struct Entry {
    const ContentRow* Row;
    const DataType* Type; // the registered one: rows of one name share it
};

// Rows with a mark at the start of the file by its first byte, the others apart.
struct Index {
    std::array<std::vector<Entry>, 256> ByFirstByte;
    std::vector<Entry> Elsewhere;
};

void AddRows(Index& index, std::span<const ContentRow> rows) {
    for (const ContentRow& row : rows) {
        const bool atStart = row.First.Offset == 0 && !row.First.Value.empty();
        auto& list =
            atStart ? index.ByFirstByte[static_cast<unsigned char>(row.First.Value[0])] : index.Elsewhere;
        list.push_back({&row, FindType(row.Type.Name)});
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

ContentMatch FirstFit(std::span<const Entry> entries, const Specimen& specimen) {
    for (const Entry& entry : entries) {
        if (Fits(*entry.Row, specimen)) {
            return {entry.Type, entry.Row->Holds};
        }
    }
    return {};
}

} // namespace

ContentMatch MatchContent(const Specimen& specimen) {
    if (specimen.Head.empty()) {
        return {};
    }
    const Index& index = RowIndex();
    const ContentMatch match = FirstFit(index.ByFirstByte[U8(specimen.Head, 0)], specimen);
    return match.Type != nullptr ? match : FirstFit(index.Elsewhere, specimen);
}

} // namespace datatypes
