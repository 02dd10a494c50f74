// Exercises the reader of catalog files, the look-up of texts, and the writer: what was read comes out the
// same when it is written as UTF-8 and read again.
#include "platform/locale/CatalogFile.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace {

void Require(bool truth) {
    if (!truth)
        std::abort();
}

bool IsSame(const locale::CatalogText& a, const locale::CatalogText& b) {
    return a.Id == b.Id && a.Text == b.Text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Memory of its own size, so that a step beyond the end is seen.
    const std::vector<char> copy(data, data + size);
    auto file = locale::ParseCatalog(std::string_view(copy.data(), copy.size()));
    if (!file)
        return 0;
    for (std::size_t at = 0; at < file->Texts.size(); ++at) {
        Require(utility::IsValidUtf8(file->Texts[at].Text));
        Require(at == 0 || file->Texts[at - 1].Id < file->Texts[at].Id);
    }
    file->CodeSet = locale::CodeSetUtf8;
    const auto bytes = locale::WriteCatalog(*file);
    Require(bytes.has_value());
    const auto again = locale::ParseCatalog(*bytes);
    Require(again && !again->IsDamaged && again->Language == file->Language);
    Require(locale::VersionOf(again->VersionText) == locale::VersionOf(file->VersionText));
    Require(std::ranges::equal(again->Texts, file->Texts, IsSame));
    return 0;
}
