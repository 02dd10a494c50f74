// Exercises recognition of files by bytes and name, and the parsers of picture sizes and frame
// counts. The first byte is the length of the name, the name follows, then the file.
#include "platform/datatypes/ByteSource.h"
#include "platform/datatypes/ContentTable.h"
#include "platform/datatypes/Pictures.h"
#include "platform/datatypes/Recognise.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

void Require(bool truth) {
    if (!truth) {
        std::abort();
    }
}

void TryRecognition(datatypes::Bytes file, std::string_view name) {
    // Memory of its own size, so that a step beyond the end is seen.
    const std::vector<std::byte> head(
        file.begin(), file.begin() + static_cast<long>(std::min(file.size(), datatypes::HeadSize)));
    const auto* type = datatypes::RecogniseByContent(head, name, file.size());
    Require(type == nullptr || type->Name.size() <= datatypes::NameSize);
    // The databases of the host are slow: they see every eighth file.
    if (file.size() % 8 == 0) {
        Require(datatypes::Recognise(head, name, file.size()) != nullptr);
    }
}

void TryPictures(datatypes::Bytes file, std::string_view name) {
    const auto source = datatypes::SourceFromMemory(file);
    if (const auto size = datatypes::ParsePictureSize(*source, name)) {
        Require(size->Width != 0 && size->Height != 0 && size->Depth != 0);
    }
    constexpr std::uint32_t limit = 3;
    const auto some = datatypes::ParseFrameCount(*source, name, limit);
    const auto all = datatypes::ParseFrameCount(*source, name, datatypes::NoFrameLimit);
    Require(some.has_value() == all.has_value());
    Require(!some || *some == std::min(*all, limit));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const auto all = std::as_bytes(std::span(data, size)).subspan(1);
    const std::size_t nameSize = std::min<std::size_t>(data[0] & 31, all.size());
    const std::string_view name = datatypes::AsText(all.first(nameSize));
    TryRecognition(all.subspan(nameSize), name);
    TryPictures(all.subspan(nameSize), name);
    return 0;
}
