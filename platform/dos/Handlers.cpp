#include "platform/dos/DeviceWalk.h"
#include "platform/dos/Handler.h"
#include "platform/utility/Text.h"

#include <array>

namespace dos {

namespace {

// Reads give the end of file. It is no file system: there is nothing to lock.
class NilStream final : public Stream {
public:
    std::int64_t Read(std::span<std::byte>) override { return 0; }
    std::int64_t Write(std::span<const std::byte> bytes) override {
        return static_cast<std::int64_t>(bytes.size());
    }
    std::int64_t Seek(std::int64_t, SeekFrom) override { return 0; }
    std::int64_t SetSize(std::int64_t, SeekFrom) override { return 0; }
    bool Close() override { return true; }
    int ForChild() override { return OpenNothing(); }
};

struct NilPlace final : LockBody {
    NilPlace() : LockBody(NilHandler) {}
};

} // namespace

const Handler NilHandler{
    .Name = "nothing",
    .Knows = [](std::string_view device) { return utility::Stricmp(device, "NIL") == 0; },
    .Root = [](std::string_view) -> LockRef { return std::make_shared<const NilPlace>(); },
    .RootOf = nullptr,
    .Locate = [](const LockRef&, std::string_view, LastLink) -> LockRef {
        SetIoErr(ErrorObjectWrongType);
        return nullptr;
    },
    .Parent = nullptr,
    .Same = nullptr,
    .NameOf = nullptr,
    .Examine = nullptr,
    .List = nullptr,
    .Open = [](const LockRef&, std::string_view, OpenMode) -> std::unique_ptr<Stream> {
        return std::make_unique<NilStream>();
    },
    .CreateDrawer = nullptr,
    .WriteWhole = [](const LockRef&, std::string_view, std::string_view) { return true; },
    .Delete = nullptr,
    .Rename = nullptr,
    .Copy = nullptr,
    .MakeSoftLink = nullptr,
    .MakeHardLink = nullptr,
    .Change = nullptr,
    .Info = nullptr,
    .HostName = nullptr,
};

std::span<const Handler* const> Handlers() noexcept {
    static constexpr std::array<const Handler*, 3> All = {&NilHandler, &ConsoleHandler, &HostHandler};
    return All;
}

} // namespace dos
