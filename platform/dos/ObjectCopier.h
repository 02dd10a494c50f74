// Copies one object of the host into a drawer of the host: the deed, when all is decided. Private
// to platform/dos.
#pragma once

#include "platform/dos/CopyContents.h"
#include "platform/dos/CopyMetadata.h"

#include <string>

namespace dos {

// Where a copy goes.
struct CopyPlace {
    int Drawer = NoDescriptor;
    VolumeRef On{};
    std::string Name{};           // as the host is to have it
    int Old = NoDescriptor;       // what is to be replaced; NoDescriptor: nothing is
    bool HandsDownAccess = false; // of the drawer
    bool IsNew = false;           // nobody but us knows the drawer
    bool MayHaveSidecar = true;   // of that name; false when the drawer is known to have none
};

// What is copied: an open file, or the name of a link.
struct CopySource {
    int Object = NoDescriptor; // open for reading; of a link only for its path
    int Drawer = NoDescriptor; // where there is one
    VolumeRef On{};
    std::string Name{};
    bool MayHaveSidecar = true;
};

// Serves one thread for many objects.
class ObjectCopier {
public:
    ObjectCopier(const CopyOptions& options, CopyProgress progress);

    // IoErr tells the reason when the result is not Done; then all is as before.
    [[nodiscard]] CopyResult CopyFile(const CopySource& source, const CopyPlace& place);
    [[nodiscard]] CopyResult CopyLink(const CopySource& source, const CopyPlace& place);
    // The new drawer is open in made. Its status is to be kept when it has got its contents.
    [[nodiscard]] CopyResult MakeDrawer(const CopyPlace& place, HostFd& made);
    [[nodiscard]] unsigned FinishDrawer(const CopySource& source, int made);
    // The ".uaem" file; the other calls but these two see to it themselves.
    [[nodiscard]] SidecarOutcome KeepSidecar(const CopySource& source, const CopyPlace& place, int copy);

private:
    CopyResult FillFile(const CopySource& source, const CopyPlace& place, const struct statx& about,
                        int file);

    CopyOptions Options;
    ContentsCopier Contents;
    AttributeCopier Attributes;
};

} // namespace dos
