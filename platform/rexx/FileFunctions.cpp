// Objects on disks, as scripts see them.
#include "platform/dos/Changes.h"
#include "platform/dos/Dates.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Files.h"
#include "platform/dos/Locks.h"
#include "platform/rexx/ScriptFunctions.h"

#include <array>

namespace rexx {

namespace {

constexpr std::uint64_t BytesPerBlock = 512;

bool IsDrawer(const dos::ExamineData& object) {
    return (object.Type & dos::TypeLinkFlag) == 0 && object.Type == dos::TypeDrawer;
}

std::string Answer(bool success) {
    return success ? "1" : "0";
}

std::optional<std::string> Exists(const FunctionArguments& arguments) {
    return Answer(static_cast<bool>(dos::Lock(arguments[0])));
}

// "HSPARWED" with "-" for what is not set; the last four are set when the thing is allowed.
std::string ProtectionText(std::uint32_t bits) {
    constexpr std::array Letters = {
        std::pair{'H', dos::ProtectHold},    std::pair{'S', dos::ProtectScript},
        std::pair{'P', dos::ProtectPure},    std::pair{'A', dos::ProtectArchive},
        std::pair{'R', dos::ProtectRead},    std::pair{'W', dos::ProtectWrite},
        std::pair{'E', dos::ProtectExecute}, std::pair{'D', dos::ProtectDelete},
    };
    constexpr std::uint32_t SetWhenForbidden =
        dos::ProtectRead | dos::ProtectWrite | dos::ProtectExecute | dos::ProtectDelete;
    std::string text;
    for (const auto& [letter, bit] : Letters) {
        text += ((bits ^ SetWhenForbidden) & bit) != 0 ? letter : '-';
    }
    return text;
}

// "FILE 1234 3 ----RWED 12345 600 50 comment": kind, bytes, blocks, bits, days, minutes, ticks, comment.
std::optional<std::string> StateF(const FunctionArguments& arguments) {
    const auto object = dos::ExamineObject(arguments[0]);
    if (!object) {
        return "";
    }
    const dos::DateStamp date = dos::DateStampFromSeconds(object->Date);
    std::string text = IsDrawer(*object) ? "DIR" : "FILE";
    for (const std::uint64_t number : {object->Size, (object->Size + BytesPerBlock - 1) / BytesPerBlock}) {
        text += " " + std::to_string(number);
    }
    text += " " + ProtectionText(object->Protection);
    for (const std::int32_t number : {date.Days, date.Minute, date.Tick}) {
        text += " " + std::to_string(number);
    }
    return text + " " + object->Comment;
}

// The names in a drawer, of all objects, of its files or of its drawers.
std::optional<std::string> ShowDir(const FunctionArguments& arguments) {
    const char kind = arguments.Letter(1, 'A');
    const std::string separator(arguments.Has(2) ? arguments[2] : " ");
    dos::DirContext drawer = dos::ObtainDirContext(arguments[0]);
    std::string names;
    while (const dos::ExamineData* object = drawer ? dos::ExamineDir(drawer) : nullptr) {
        if (kind == 'A' || (kind == 'D') == IsDrawer(*object)) {
            names += (names.empty() ? "" : separator) + object->Name;
        }
    }
    return names;
}

std::optional<std::string> DeleteObject(const FunctionArguments& arguments) {
    return Answer(dos::Delete(arguments[0]));
}

std::optional<std::string> RenameObject(const FunctionArguments& arguments) {
    return Answer(dos::Rename(arguments[0], arguments[1]));
}

std::optional<std::string> MakeDir(const FunctionArguments& arguments) {
    return Answer(dos::CreateDir(arguments[0]));
}

constexpr ScriptFunction Table[] = {
    {"DELETE", 1, 1, DeleteObject}, {"EXISTS", 1, 1, Exists},   {"MAKEDIR", 1, 1, MakeDir},
    {"RENAME", 2, 2, RenameObject}, {"SHOWDIR", 1, 3, ShowDir}, {"STATEF", 1, 1, StateF},
};

} // namespace

std::span<const ScriptFunction> FileFunctions() {
    return Table;
}

} // namespace rexx
