"""Starting and ending the program: what it shows first, instance numbers, bad places to start at.

Implemented in frame/ (EntryPoint, ArgumentParser, MyProgram), platform/exec (public ports) and content/.
"""
import fcntl
import os
import pathlib
import shutil
import socket
import subprocess
import unittest

from support import PATIENCE, PROGRAM, Scenario


class ShowingADrawer(Scenario):
    def test_a_drawer_is_shown_with_its_columns_drawers_first_and_companions_hidden(self):
        place = self.place / "some drawer"
        (place / "zoo").mkdir(parents=True)
        (place / "alpha.txt").write_text("hello\n")
        (place / "alpha.txt.info").write_bytes(b"x")
        (place / ".hidden").write_text("x")
        os.chmod(place / "alpha.txt", 0o640)
        lines = self.show(str(place)).splitlines()
        names = [line.split()[0] for line in lines[1:-1]]
        self.assertEqual(names, ["zoo", "alpha.txt"])
        row = next(line for line in lines if line.startswith("alpha.txt"))
        self.assertIn("6 B", row)
        self.assertIn("ASCII Text", row)
        self.assertIn("----rw-d", row)
        self.assertGreater(self.picture.stat().st_size, 1000)

    def test_awkward_names_are_shown_and_left_as_they_are(self):
        place = self.place / "awkward"
        place.mkdir()
        names = [b'a" ;rm -rf *', b"colon:inside", b"new\nline", b"x" * 255, b"bad\xff\xfeutf", b"&amp <b>", b"*"]
        for name in names:
            (place / os.fsdecode(name)).write_bytes(name)
        (place / "loop").symlink_to("loop")
        (place / "dangling").symlink_to("nowhere")
        (place / "self").symlink_to(".")
        os.mkfifo(place / "pipe")
        listener = socket.socket(socket.AF_UNIX)
        listener.bind(str(place / "socket"))
        before = sorted(os.listdir(os.fsencode(place)))
        text = self.show(str(place))
        listener.close()
        for shown in ('a" ;rm -rf *', "new?line", "dangling", "&amp <b>", "loop", "self"):
            self.assertIn(shown, text)
        self.assertIn("%d Selected" % (len(names) + 5), text.replace("0/", ""))
        self.assertEqual(sorted(os.listdir(os.fsencode(place))), before)

    def test_a_drawer_that_is_not_there_has_a_message(self):
        for path in (str(self.place / "missing"), "Nowhere:x", "Home:no/such"):
            self.assertIn("Drawer does not exist.", self.show(path), path)

    def test_the_path_may_be_a_volume_an_assign_a_host_path_or_an_url(self):
        target = self.home / "deep er"
        target.mkdir()
        (target / "found").write_text("x")
        for path in ("Home:deep er", "DH1:deep er/", str(target), "file://" + str(target).replace(" ", "%20")):
            self.assertIn("found", self.show(path), path)


class Languages(Scenario):
    def test_the_language_is_the_users_or_the_one_asked_for_and_english_without_a_catalog(self):
        home = str(self.home)
        rows = ((("LANGUAGE=Dutch",), "de_DE.UTF-8", "geselecteerd"), ((), "de_DE.UTF-8", "ausgewählt"),
                ((), "el_GR.UTF-8", "επιλεγμένα"), (("LANGUAGE=english",), "es_ES.UTF-8", "Selected"),
                ((), "fi_FI.UTF-8", "Selected"))
        for arguments, locale, shown in rows:
            self.assertIn(shown, self.show(home, *arguments, LC_ALL=locale), locale)


class FirstStart(Scenario):
    def test_preferences_are_written_at_the_first_start_only(self):
        self.show(str(self.home))
        documents = [p for p in self.home.rglob("Solvane.xml")]
        self.assertEqual(len(documents), 1)
        text = documents[0].read_text()
        self.assertIn("<key>ShowDetailsColumns</key>", text)
        documents[0].write_text(text.replace("<key>SavePrefsOnExit</key>\n\t\t<true", "<key>SavePrefsOnExit</key>\n\t\t<false"))
        written = documents[0].stat().st_mtime_ns
        self.show(str(self.home))
        self.assertEqual(documents[0].stat().st_mtime_ns, written)

    def test_a_broken_document_does_no_harm(self):
        self.show(str(self.home))
        document = next(self.home.rglob("Solvane.xml"))
        for content in (b"", b"<plist>", os.urandom(4096), b"<plist><dict><key>WindowX</key></dict></plist>"):
            document.write_bytes(content)
            self.assertIn("Selected", self.show(str(self.home)))
            if content and not content.startswith(b"<plist><dict>"):
                copies = [copy.read_bytes() for copy in document.parent.glob("Solvane.xml.broken*")]
                self.assertIn(content, copies)


class BrokenInstallation(Scenario):
    def test_each_missing_tool_ends_the_start_with_its_own_message(self):
        built = pathlib.Path(PROGRAM).resolve().parent.parent
        copy = self.place / "installed"
        (copy / "bin").mkdir(parents=True)
        shutil.copy(PROGRAM, copy / "bin" / "solvane")
        shutil.copytree(built / "share" / "solvane", copy / "share" / "solvane", symlinks=True)
        tools = copy / "share" / "solvane" / "Tools"
        for tool, message in (("jhead", "Failed to check Tools/jhead."),
                              ("jpegtran", "Failed to check Tools/jpegtran."),
                              ("xadunfile", "Failed to check xadunfile.")):
            (tools / tool).rename(self.place / tool)
            done = subprocess.run([copy / "bin" / "solvane", str(self.home)],
                                  env=self.environment(SOLVANE_SNAPSHOT=str(self.place / "none.png")),
                                  capture_output=True, timeout=PATIENCE, stdin=subprocess.DEVNULL)
            self.assertIn(message, done.stdout.decode())
            (self.place / tool).rename(tools / tool)


class Instances(Scenario):
    def test_a_second_start_is_instance_2_and_a_killed_one_frees_its_number(self):
        first = self.start(str(self.home))
        self.wait_until(lambda: self.claimed(1), "instance 1")
        self.start(str(self.home))
        self.wait_until(lambda: self.claimed(2), "instance 2")
        first.kill()
        first.wait()
        self.start(str(self.home))
        self.wait_until(lambda: self.claimed(1), "instance 1 again")

    def test_starts_at_the_same_instant_take_different_numbers(self):
        for _ in range(6):
            self.start(str(self.home))
        self.wait_until(lambda: all(self.claimed(n) for n in range(1, 7)), "six instances")

    def test_the_51st_start_ends_in_silence(self):
        for _ in range(50):
            self.start(str(self.home))
        self.wait_until(lambda: all(self.claimed(n) for n in range(1, 51)), "fifty instances")
        done = subprocess.run([PROGRAM, str(self.home)], env=self.environment(), capture_output=True,
                              timeout=PATIENCE, stdin=subprocess.DEVNULL)
        self.assertEqual((done.returncode, done.stdout), (0, b""))

    def test_a_requester_does_not_keep_it_from_ending(self):
        process = self.start(str(self.place / "missing"))
        self.wait_until(lambda: self.claimed(1), "instance 1")
        self.assertEqual(self.end_politely(process), 0)

    def test_asked_to_end_it_ends_in_order_and_gives_its_number_back(self):
        process = self.start(str(self.home))
        self.wait_until(lambda: self.claimed(1), "instance 1")
        self.assertEqual(self.end_politely(process), 0)
        self.assertFalse(self.claimed(1))

    def claimed(self, number):
        """Whether a living process holds the lock of that instance's port."""
        name = b"Solvane_%d.port" % number
        directory = self.runtime / "solvane" / "ports"
        for path in directory.glob("*.lock"):
            with open(path, "rb") as lock:
                if lock.read().strip(b"\n\0") != name:
                    continue
                try:
                    fcntl.lockf(lock, fcntl.LOCK_SH | fcntl.LOCK_NB)
                except OSError:
                    return True
        return False


class RuntimeDirectory(Scenario):
    def test_a_link_in_its_place_is_refused(self):
        os.mkdir(self.runtime / "real", 0o700)
        os.symlink(self.runtime / "real", self.runtime / "solvane")
        done = subprocess.run([PROGRAM, str(self.home)], env=self.environment(), capture_output=True, timeout=PATIENCE,
                              stdin=subprocess.DEVNULL)
        self.assertEqual(done.returncode, 0)
        self.assertIn(b"Could not open DOS library", done.stdout)


if __name__ == "__main__":
    unittest.main(verbosity=2)
