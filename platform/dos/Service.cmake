# Volumes, paths, locks, files: everything of dos that asks the host.
solvane_module(dos SOURCES
    Aliases.cpp Assigns.cpp Changes.cpp Children.cpp CommandSearch.cpp CommandStreams.cpp Console.cpp
    ConsoleSpec.cpp Copy.cpp CopyContents.cpp CopyMetadata.cpp CopyTree.cpp DeleteTree.cpp DeviceWalk.cpp DiskEvents.cpp
    DiskVolumes.cpp Examine.cpp Files.cpp Handlers.cpp HostCalls.cpp HostChanges.cpp HostCopy.cpp
    HostDirectory.cpp HostFd.cpp HostFiles.cpp HostHandler.cpp HostLister.cpp HostPaths.cpp HostRename.cpp
    HostStreams.cpp HostTree.cpp HostWalk.cpp HostWriting.cpp Info.cpp Limits.cpp LinkText.cpp Listing.cpp
    Locks.cpp MediumInfo.cpp Metadata.cpp MetadataWriting.cpp MountFile.cpp MountInfo.cpp NameEscapes.cpp
    NameIndex.cpp Notify.cpp NotifyTarget.cpp ObjectCopier.cpp ProgramArguments.cpp Relay.cpp Sidecar.cpp SidecarFiles.cpp
    System.cpp SystemSetUp.cpp TemporaryNames.cpp TreeDrawer.cpp TreeWork.cpp UserHome.cpp Variables.cpp VolumeQuestions.cpp
    Volumes.cpp
    USES dos_base exec utility
    LIBRARIES Threads::Threads)
