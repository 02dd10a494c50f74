# Volumes, paths, locks, files: everything of dos that asks the host.
solvane_module(dos SOURCES
    Aliases.cpp Assigns.cpp Changes.cpp Children.cpp CommandSearch.cpp CommandStreams.cpp DeviceWalk.cpp DiskEvents.cpp DiskVolumes.cpp Examine.cpp Files.cpp
    Handlers.cpp HostCalls.cpp HostChanges.cpp HostDirectory.cpp HostFd.cpp HostFiles.cpp HostHandler.cpp
    HostLister.cpp HostPaths.cpp HostRename.cpp HostStreams.cpp HostTree.cpp HostWalk.cpp HostWriting.cpp
    Info.cpp Limits.cpp LinkText.cpp Listing.cpp Locks.cpp MediumInfo.cpp Metadata.cpp MetadataWriting.cpp
    MountFile.cpp MountInfo.cpp NameIndex.cpp Notify.cpp NotifyTarget.cpp Sidecar.cpp SidecarFiles.cpp
    ProgramArguments.cpp System.cpp SystemSetUp.cpp Variables.cpp Volumes.cpp
    USES dos_base exec utility
    LIBRARIES Threads::Threads)
