#include "platform/dos/DiskVolumes.h"
#include "tests/platform/dos/DosTest.h"

#include <fcntl.h>

namespace {

TEST(MountInfoTest, RowsAreReadWithTheirEscapes) {
    const auto rows =
        dos::ParseMountInfo("1 0 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
                            "2 1 8:2 / /media/u/My\\040Disk\\134\\999 rw - vfat /dev/sdb1 rw\n"
                            "3 1 0:3 / /mnt/net rw master:2 propagate_from:1 - nfs4 host:/x rw,ro\n"
                            "rubbish\n4 1 0:4 / relative rw - ext4 x rw\n5 1 0:4 / /cut rw\n"
                            "18446744073709551615 1 0:4 / /last ro,nosuid - ext4 \\04 errors=ro");
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[1].Point, "/media/u/My Disk\\\\999");
    EXPECT_EQ(rows[1].Number, "8:2");
    EXPECT_TRUE(rows[2].Slow);
    EXPECT_TRUE(rows[2].ReadOnly);
    EXPECT_FALSE(rows[0].Slow);
    EXPECT_FALSE(rows[0].ReadOnly);
    EXPECT_EQ(rows[3].Id, ~std::uint64_t{0});
    EXPECT_EQ(rows[3].Source, "\\04");
    EXPECT_TRUE(rows[3].ReadOnly);
    EXPECT_EQ(dos::MountOf(rows, "/mnt/network/x"), &rows[0]);
    EXPECT_EQ(dos::MountOf(rows, "/mnt/net"), &rows[2]);
}

class DisksTest : public testing::Test {
protected:
    DisksTest() {
        dos::Places() = {.Numbers = Tree.Path("numbers"),
                         .Blocks = Tree.Path("blocks"),
                         .Labels = Tree.Path("labels"),
                         .Records = Tree.Path("records"),
                         .Release = Tree.Path("release")};
        Tree.Write("release", "6.1.0-18-amd64\n");
    }
    ~DisksTest() override { dos::Places() = {}; }

    // A block device as the kernel shows it: facts by the name of their file.
    void Block(const std::string& name, const std::string& number, const std::string& place,
               std::initializer_list<std::pair<std::string, std::string>> facts) {
        const std::string drawer = "devices/" + place + "/" + name;
        for (const auto& [fact, text] : facts)
            Tree.Write(drawer + "/" + fact, text + "\n");
        Tree.Write(drawer + "/dev", number + "\n");
        for (const std::string& link : {"blocks/" + name, "numbers/" + number}) {
            Tree.Drawer(link.substr(0, link.find('/')));
            Tree.Link(link, Tree.Path(drawer));
        }
    }

    // The disks of a list in which the root comes first.
    [[nodiscard]] static std::vector<dos::VolumeInfo> Disks(const std::string& lines) {
        return dos::DisksOf(dos::ParseMountInfo("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n" + lines));
    }

    [[nodiscard]] static std::vector<std::string> Described(const std::string& lines) {
        return TextsOf(Disks(lines), [](const dos::VolumeInfo& disk) {
            return disk.Device + " " + disk.Volume + " " + disk.ExecDevice + " " + disk.HandlerName;
        });
    }

    TempTree Tree;
};

TEST_F(DisksTest, KindComesFromTransportAndMedium) {
    Block("sdb", "8:16", "pci0/usb1/1-1/block", {{"removable", "1"}});
    Block("sdb1", "8:17", "pci0/usb1/1-1/block/sdb", {{"partition", "1"}});
    Block("sdc", "8:32", "pci0/ata2/block", {{"removable", "0"}});
    Block("dm-0", "254:0", "virtual/block", {{"size", "100"}});
    Tree.Drawer("devices/virtual/block/dm-0/slaves/sdb1");
    Block("loop0", "7:0", "virtual/block",
          {{"loop/backing_file", "/home/u/Games/Turrican.ADF"}, {"size", "1760"}});
    Block("loop1", "7:1", "virtual/block", {{"loop/backing_file", "/home/u/Cover.iso"}});
    Block("loop2", "7:2", "virtual/block", {{"loop/backing_file", "/home/u/System.hdf"}});
    Block("loop3", "7:3", "virtual/block", {{"loop/backing_file", "/home/u/card.img"}, {"size", "2000000"}});
    Block("fd0", "2:0", "platform/block", {{"size", "1440"}});
    const std::pair<std::string, std::string> cases[] = {
        {"8:17 / /media/u/Stick rw - vfat /dev/sdb1 rw", "USB Stick usbdisk.device vfat"},
        {"254:0 / /media/u/Secret rw - ext4 /dev/mapper/luks-1 rw", "USB Secret usbdisk.device ext4"},
        {"8:32 / /data rw - ext4 /dev/sdc rw", "HD data  ext4"},
        {"7:0 / /media/u/T rw - affs /dev/loop0 rw", "IDF T diskimage.device affs"},
        {"7:1 / /media/u/T ro - udf /dev/loop1 ro", "ICD T diskimage.device udf"},
        {"7:2 / /media/u/T ro - affs /dev/loop2 ro", "IHD T diskimage.device affs"},
        {"7:3 / /media/u/T ro - vfat /dev/loop3 ro", "IHD T diskimage.device vfat"},
        {"7:9 / /media/u/T ro - iso9660 /dev/loop9 ro", "ICD T diskimage.device iso9660"},
        {"11:0 / /media/u/Cover\\040CD ro - iso9660 /dev/sr0 ro", "CD Cover CD  iso9660"},
        {"179:1 / /media/u/a:b rw - vfat /dev/mmcblk0p1 rw", "CF a_b  vfat"},
        {"2:0 / /media/floppy rw - vfat /dev/fd0 rw", "PC floppy  vfat"},
        {"2:0 / /media/floppy rw - affs /dev/fd0 rw", "DF floppy  affs"},
        {"0:7 / /mnt/x rw - cifs //server/Share rw", "SMB Share  smbfs"},
        {"0:7 / /mnt/x rw - nfs4 nas:/export/Music/ rw", "NET Music  smbfs"},
        {"0:7 / /mnt/x rw - fuse.sshfs u@machine: rw", "NET machine  smbfs"},
        {"0:7 / /mnt/x rw - fuse.google-drive-ocamlfuse google-drive-ocamlfuse rw",
         "GDRIVE google-drive-ocamlfuse  google-drive-handler"},
        {"0:7 / /mnt/x rw - fuse.archivemount archivemount rw", "HD x  archivemount"},
        {"0:7 / /mnt/Memory rw - tmpfs tmpfs rw", "VD Memory  tmpfs"},
    };
    for (const auto& [line, found] : cases)
        EXPECT_EQ(Described("2 1 " + line), Names{found}) << line;
}

TEST_F(DisksTest, FactsOfTheMediumAreFilledIn) {
    Block("sdd", "8:48", "pci0/ata3/block", {{"removable", "0"}, {"queue/logical_block_size", "4096"}});
    Block("sdd1", "8:49", "pci0/ata3/block/sdd", {{"partition", "1"}, {"size", "8000"}});
    Block("sr0", "11:0", "pci0/ata4/block",
          {{"removable", "1"}, {"size", "9193984"}, {"queue/logical_block_size", "2048"}});
    Block("sde1", "8:65", "pci0/block", {{"size", "12x"}, {"queue/logical_block_size", "3"}});
    Tree.Write("records/b8:65", "S:disk\nE:ID_FS_TYPE=ntfs\n");
    const auto disks =
        Disks("2 1 8:49 / /data rw - btrfs /dev/sdd1 rw\n3 1 11:0 / /media/dvd ro - udf /dev/sr0 ro\n"
              "4 1 8:65 / /media/win rw - fuseblk /dev/sde1 rw\n");
    ASSERT_EQ(disks.size(), 3u);
    EXPECT_EQ(disks[0].MediumBlocks, 1000u);
    EXPECT_EQ(disks[0].MediumBlockSize, 4096u);
    EXPECT_EQ(disks[0].FileSystem, "btrfs 6.1");
    EXPECT_FALSE(disks[0].Removable);
    EXPECT_FALSE(disks[0].WriteProtected);
    EXPECT_EQ(disks[1].MediumBlocks, 2298496u);
    EXPECT_EQ(disks[1].MediumBlockSize, 2048u);
    EXPECT_TRUE(disks[1].Removable);
    EXPECT_TRUE(disks[1].WriteProtected);
    EXPECT_EQ(disks[2].HandlerName, "ntfs");
    EXPECT_EQ(disks[2].MediumBlocks, 12u);
    EXPECT_EQ(disks[2].MediumBlockSize, 512u);
}

TEST_F(DisksTest, FileSystemsHaveIdentifiersOfFourCharacters) {
    const std::pair<std::string, std::string> cases[] = {
        {"affs", "DOS\\00"}, {"vfat", "FAT\\00"}, {"iso9660", "CD01"},    {"ext4", "EXT4"},
        {"xfs", "XFS\\00"},  {"btrfs", "BTRF"},   {"fuse.zip", "ZIP\\00"}};
    for (const auto& [type, text] : cases) {
        const auto disks = Disks("2 1 8:99 / /data rw - " + type + " /dev/sdz rw\n");
        ASSERT_EQ(disks.size(), 1u) << type;
        EXPECT_EQ(dos::DosTypeText(disks[0].DosType), text);
    }
    EXPECT_EQ(dos::DosTypeText(0x444F531F), "DOS\\1f");
}

TEST_F(DisksTest, LabelIsTakenFromTheFirstWhoKnowsIt) {
    Block("sdb1", "8:17", "block", {});
    Tree.Write("other", "");
    const auto label = [&] {
        return Disks("2 1 8:17 / /media/u/point rw - ext4 /dev/sdb1 rw\n").at(0).Volume;
    };
    EXPECT_EQ(label(), "point");
    Tree.Write("records/b8:17", "E:ID_FS_LABEL=My_Record\nE:ID_FS_TYPE=ext4\n");
    EXPECT_EQ(label(), "My_Record");
    Tree.Write("records/b8:17", "E:ID_FS_LABEL=My_Record\nE:ID_FS_LABEL_ENC=My\\x20Record\n");
    EXPECT_EQ(label(), "My Record");
    Tree.Drawer("labels");
    Tree.Link("labels/Other", "../../sdb2");
    Tree.Link("labels/Work\\x3aDisk\\x2f1", "../../sdb1");
    EXPECT_EQ(label(), "Work_Disk_1");
}

TEST_F(DisksTest, LabelsOfBtrfsAreFoundByTheDeviceFile) {
    Block("sdb1", "8:17", "block", {});
    Tree.Write("records/b8:17", "E:ID_FS_LABEL_ENC=Pool\n");
    EXPECT_EQ(Disks("2 1 0:40 /@ /data rw - btrfs /dev/sdb1 rw\n").at(0).Volume, "Pool");
}

TEST(VolumeNameTest, LabelsAreMadeToFit) {
    const std::string umlauts = "\xC3\xA4\xC3\xA4";
    std::string longLabel = "x";
    while (longLabel.size() < 200)
        longLabel += umlauts;
    const std::pair<std::string, std::string> cases[] = {
        {"Work", "Work"},
        {" a:b/c\n ", "a_b_c_"},
        {std::string("a\0b", 3), "a_b"},
        {"   ", ""},
        {"", ""},
        {"Sp\xE4t", "Sp\xEF\xBF\xBDt"}, // Latin-1
        {longLabel, longLabel.substr(0, 99)},
    };
    for (const auto& [label, name] : cases)
        EXPECT_EQ(dos::FitVolumeName(label), name) << label;
    EXPECT_EQ(dos::DecodeHexEscapes("a\\x20b\\x2\\xzz\\x41"), "a b\\x2\\xzzA");
}

TEST_F(DisksTest, MountsOfNoInterestAreLeftOut) {
    const std::string left[] = {
        "0:5 / /proc rw - proc proc rw",
        "0:6 / /run/user/1000 rw - tmpfs tmpfs rw",
        "0:6 / /mnt/deep/in rw - tmpfs tmpfs rw",
        "0:7 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw",
        "0:8 / /data/merged rw - overlay overlay rw",
        "8:1 /sub /data/bind rw - ext4 /dev/sda1 rw",
        "8:1 / /data/bind rw - ext4 /dev/sda1 rw", // the root a second time
        "8:1 /file//deleted /data/gone rw - ext4 /dev/sda1 rw",
        "8:2 / /boot/efi rw - vfat /dev/sda2 rw",
        "8:3 / /home rw - ext4 /dev/sda3 rw",
        "8:3 / /home/anna rw - ext4 /dev/sda3 rw",
        "7:1 / /snap/core/1 ro - squashfs /dev/loop1 ro",
        "0:9 / /tmp/.mount_App rw - fuse.App App rw",
        "0:9 / /data/odd rw - madeupfs none rw",
        "8:4 / /var/lib/x rw - ext4 /dev/sda4 rw",
    };
    for (const std::string& line : left)
        EXPECT_EQ(Described("2 1 " + line), Names{}) << line;
    // What lies under another mount now is not to be reached; of btrfs one mount counts.
    EXPECT_EQ(Described("2 1 8:17 / /mnt rw - ext4 /dev/sdb1 rw\n3 1 8:18 / /mnt rw - vfat /dev/sdb2 rw\n"),
              Names{"HD mnt  vfat"});
    EXPECT_EQ(
        Described("2 1 0:40 /@ /data rw - btrfs /dev/sdb1 rw\n3 1 0:40 /@x /srv/x rw - btrfs /dev/sdb1 rw\n"),
        Names{"HD data  btrfs"});
    EXPECT_EQ(
        Described(
            "2 1 0:40 /@x /srv/x rw - btrfs /dev/sdb1 rw\n3 1 0:40 /@h /home rw - btrfs /dev/sdb1 rw\n"),
        Names{});
}

TEST_F(DisksTest, HostileListsOfDevicesAreOnlyLeftOut) {
    Tree.Drawer("numbers");
    Tree.Link("numbers/8:17", "/..");
    Tree.Drawer("labels");
    Tree.Link("labels/Loop", "Loop");
    Tree.Drawer("blocks/sdb1/size"); // a drawer where a file should be
    Tree.Drawer("blocks/dm-1/slaves");
    Tree.Drawer("blocks/dm-1/slaves/dm-1"); // a circle
    EXPECT_EQ(Described("2 1 8:17 / /media/x rw - ext4 /dev/sdb1 rw\n"), Names{"HD x  ext4"});
    EXPECT_EQ(Described("2 1 ../../x / /media/x rw - ext4 /dev/mapper/.. rw\n"), Names{"HD x  ext4"});
    EXPECT_EQ(Described("2 1 0:9 / /media/x rw - ext4 /dev/dm-1 rw\n"), Names{"HD x  ext4"});
}

TEST(VanishedMountTest, ObjectOfAMountThatIsNotInTheListHasVanished) {
    const dos::HostFd root(dos::Host().Openat(AT_FDCWD, "/", O_PATH | O_CLOEXEC, 0));
    const dos::HostFd other(dos::Host().Openat(AT_FDCWD, "/proc", O_PATH | O_CLOEXEC, 0));
    auto rows = *dos::Mounts();
    EXPECT_FALSE(dos::HasVanished(other.Get(), rows));
    std::erase_if(rows, [](const dos::MountRow& row) { return row.Point == "/proc" || row.Point == "/"; });
    rows.emplace_back().Id = ~std::uint64_t{0};
    EXPECT_TRUE(dos::HasVanished(other.Get(), rows));
    EXPECT_FALSE(dos::HasVanished(root.Get(), rows)) << "the root of a chroot is in no list";
}

} // namespace
