# Volumes, paths, locks, files: everything of dos that asks the host.
solvane_module(dos SOURCES
    Aliases.cpp DeviceWalk.cpp Examine.cpp Files.cpp Handlers.cpp HostCalls.cpp HostDirectory.cpp HostFd.cpp
    HostFiles.cpp HostHandler.cpp HostLister.cpp HostPaths.cpp HostTree.cpp HostWalk.cpp Limits.cpp LinkText.cpp
    Listing.cpp Locks.cpp Metadata.cpp MountFile.cpp MountInfo.cpp NameIndex.cpp Notify.cpp NotifyTarget.cpp
    Sidecar.cpp SystemSetUp.cpp Variables.cpp Volumes.cpp
    USES dos_base exec utility
    LIBRARIES Threads::Threads)
