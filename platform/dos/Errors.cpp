#include "platform/dos/Errors.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace dos {
namespace {

struct FaultText {
    long Code;
    std::string_view Text;
};

// In the order of the codes.
constexpr FaultText FaultTexts[] = {
    {ErrorNoFreeStore, "not enough memory available"},
    {ErrorTaskTableFull, "process table full"},
    {ErrorBadTemplate, "bad template"},
    {ErrorBadNumber, "bad number"},
    {ErrorRequiredArgMissing, "required argument missing"},
    {ErrorKeyNeedsArg, "value after keyword missing"},
    {ErrorTooManyArgs, "wrong number of arguments"},
    {ErrorUnmatchedQuotes, "unmatched quotes"},
    {ErrorLineTooLong, "argument line invalid or too long"},
    {ErrorFileNotObject, "file is not executable"},
    {ErrorInvalidResidentLibrary, "invalid resident library"},
    {ErrorObjectInUse, "object is in use"},
    {ErrorObjectExists, "object already exists"},
    {ErrorDirNotFound, "directory not found"},
    {ErrorObjectNotFound, "object not found"},
    {ErrorBadStreamName, "invalid window description"},
    {ErrorObjectTooLarge, "object too large"},
    {ErrorActionNotKnown, "packet request type unknown"},
    {ErrorInvalidComponentName, "object name invalid"},
    {ErrorInvalidLock, "invalid object lock"},
    {ErrorObjectWrongType, "object is not of required type"},
    {ErrorDiskNotValidated, "disk not validated"},
    {ErrorDiskWriteProtected, "disk is write-protected"},
    {ErrorRenameAcrossDevices, "rename across devices attempted"},
    {ErrorDirectoryNotEmpty, "directory not empty"},
    {ErrorTooManyLevels, "too many levels"},
    {ErrorDeviceNotMounted, "device (or volume) is not mounted"},
    {ErrorSeekError, "seek failure"},
    {ErrorCommentTooBig, "comment is too long"},
    {ErrorDiskFull, "disk is full"},
    {ErrorDeleteProtected, "object is protected from deletion"},
    {ErrorWriteProtected, "file is write protected"},
    {ErrorReadProtected, "file is read protected"},
    {ErrorNotADosDisk, "not a valid DOS disk"},
    {ErrorNoDisk, "no disk in drive"},
    {ErrorNoMoreEntries, "no more entries in directory"},
    {ErrorIsSoftLink, "object is soft link"},
    {ErrorObjectLinked, "object is linked"},
    {ErrorBadHunk, "bad loadfile hunk"},
    {ErrorNotImplemented, "function not implemented"},
    {ErrorRecordNotLocked, "record not locked"},
    {ErrorLockCollision, "record lock collision"},
    {ErrorLockTimeout, "record lock timeout"},
    {ErrorUnlockError, "record unlock error"},
    {ErrorBufferOverflow, "buffer overflow"},
    {ErrorBreak, "***Break"},
    {ErrorNotExecutable, "file not executable"},
};

struct ErrnoRow {
    int HostError;
    long Code;
};

// Where the operation makes no difference.
constexpr ErrnoRow ErrnoRows[] = {
    {ENOENT, ErrorObjectNotFound},
    {ENOTDIR, ErrorObjectWrongType},
    {EISDIR, ErrorObjectWrongType},
    {EEXIST, ErrorObjectExists},
    {ENOTEMPTY, ErrorDirectoryNotEmpty},
    {EXDEV, ErrorRenameAcrossDevices},
    {ENOSPC, ErrorDiskFull},
    {EDQUOT, ErrorDiskFull},
    {EROFS, ErrorDiskWriteProtected},
    {EBUSY, ErrorObjectInUse},
    {ETXTBSY, ErrorObjectInUse},
    {ENAMETOOLONG, ErrorInvalidComponentName},
    {EILSEQ, ErrorInvalidComponentName},
    {ELOOP, ErrorTooManyLevels},
    {EMLINK, ErrorTooManyLevels},
    {ENOMEM, ErrorNoFreeStore},
    {EMFILE, ErrorNoFreeStore},
    {ENFILE, ErrorNoFreeStore},
    {EFBIG, ErrorObjectTooLarge},
    {EOVERFLOW, ErrorObjectTooLarge},
    {ENOSYS, ErrorActionNotKnown},
    {ENOTSUP, ErrorActionNotKnown},
    {ENOMEDIUM, ErrorNoDisk},
    {EMEDIUMTYPE, ErrorNotADosDisk},
    {EIO, ErrorNotADosDisk},
    {EUCLEAN, ErrorDiskNotValidated}, // the file system must be checked first
    {ENODEV, ErrorDeviceNotMounted},
    {ENXIO, ErrorDeviceNotMounted},
    {ENOTCONN, ErrorDeviceNotMounted},
    {ESTALE, ErrorDeviceNotMounted},
    {EHOSTDOWN, ErrorDeviceNotMounted},
    {ETIMEDOUT, ErrorDeviceNotMounted},
    {EINTR, ErrorBreak},
    {ECANCELED, ErrorBreak},
    {ESPIPE, ErrorSeekError},
    {EBADF, ErrorInvalidLock},
    {EAGAIN, ErrorObjectInUse},
    {ENOEXEC, ErrorNotExecutable},
};

// The refusal of a permission, which dos tells apart by what was tried.
long ProtectionError(Operation operation) noexcept {
    switch (operation) {
    case Operation::Delete:
        return ErrorDeleteProtected;
    case Operation::Write:
    case Operation::Rename:
        return ErrorWriteProtected;
    case Operation::Lookup:
    case Operation::Read:
    case Operation::Seek:
        return ErrorReadProtected;
    }
    return ErrorReadProtected;
}

thread_local long LastError = 0;

} // namespace

long IoErr() noexcept {
    return LastError;
}

void SetIoErr(long code) noexcept {
    LastError = code;
}

std::string Fault(long code, std::string_view header) {
    if (code == 0)
        return {};
    const auto* found = std::ranges::find(FaultTexts, code, &FaultText::Code);
    std::string text(header);
    if (!header.empty())
        text += ": ";
    if (found != std::end(FaultTexts))
        text += found->Text;
    else
        text += "Error code " + std::to_string(code);
    return text;
}

long ErrorFromErrno(int hostError, Operation operation) noexcept {
    if (hostError == 0)
        return 0;
    if (hostError == EACCES || hostError == EPERM)
        return ProtectionError(operation);
    if (hostError == EINVAL)
        return operation == Operation::Seek ? ErrorSeekError : ErrorInvalidComponentName;
    const auto* found = std::ranges::find(ErrnoRows, hostError, &ErrnoRow::HostError);
    return found != std::end(ErrnoRows) ? found->Code : ErrorActionNotKnown;
}

} // namespace dos
