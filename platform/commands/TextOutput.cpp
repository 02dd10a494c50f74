#include "platform/commands/TextOutput.h"

#include "platform/dos/Errors.h"

#include <span>
#include <utility>

namespace commands {

std::function<bool(std::string_view)> OutputTo(std::shared_ptr<dos::FileHandle> file) {
    return [file = std::move(file)](std::string_view bytes) {
        return dos::Write(*file, std::as_bytes(std::span(bytes.data(), bytes.size()))) >= 0;
    };
}

TextOutput::TextOutput(Context& context, std::optional<std::string> path)
    : Where(context), Name(path.value_or("")), IsFile(path.has_value()), Before(context) {
    if (!IsFile)
        return;
    auto file = std::make_shared<dos::FileHandle>(dos::Open(Name, dos::OpenMode::New));
    if (!*file)
        return;
    File = std::move(file);
    if (!Where.ErrorOutput)
        Where.ErrorOutput = Where.Output;
    Where.Output = OutputTo(File);
    Where.IsTerminal = false;
}

TextOutput::~TextOutput() {
    Restore();
}

bool TextOutput::IsOpen() const noexcept {
    return !IsFile || File != nullptr;
}

void TextOutput::Restore() {
    if (!File)
        return;
    Where.Output = Before.Output;
    Where.ErrorOutput = Before.ErrorOutput;
    Where.IsTerminal = Before.IsTerminal;
    Where.OutputError = Before.OutputError;
    File.reset();
}

int TextOutput::Finish() {
    if (!File)
        return ReturnOk;
    long error = Where.OutputError;
    if (error == 0 && !dos::Close(*File))
        error = dos::IoErr();
    Restore();
    if (error == 0)
        return ReturnOk;
    dos::SetIoErr(error);
    return Complain(Where, Name);
}

} // namespace commands
