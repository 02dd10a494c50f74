"""The drawer commands over a tree with awkward names: copy, list, protect, filenote, rename, delete; emulator sidecars.

Implemented in platform/commands (the commands, the program amiga) and platform/dos (what they stand on).
"""
import os
import pathlib
import pty
import shutil
import signal
import subprocess
import unittest

from support import PATIENCE, Scenario

AMIGA = os.environ["SOLVANE_AMIGA"]
SAMPLES = pathlib.Path(__file__).resolve().parent.parent / "data" / "uaem"
# Those that say all there is to say; the odd ones are tried where sidecars are read.
WHOLE_SAMPLES = ["gen_" + name for name in ("all", "archived", "no_line_end", "none", "pure", "readonly", "script")]

AWKWARD = [b'quote" *', b"a colon:inside", b" blank ", b"new\nline", b"x" * 255, b"bad\xff\xfeutf", b"Twin", b"twin",
           b"*", b"#?", b"C#", b"(a|b)", b"-s", b"ALL", b"semi;colon", b"don't", b"~tilde~", b"\xc3\xbcml\xc3\xa4ut"]


class Commands(Scenario):
    def run_line(self, line, code=0, cwd=None, program=AMIGA):
        words = [line] if isinstance(line, (str, bytes)) else line
        done = subprocess.run([program, *words], env=self.environment(), cwd=cwd or self.home, capture_output=True,
                              timeout=PATIENCE, stdin=subprocess.DEVNULL)
        self.assertEqual(done.returncode, code, (line, done.stdout, done.stderr))
        return done.stdout

    def awkward_tree(self, top):
        top.mkdir()
        deep = os.fsencode(top)
        for number, name in enumerate(AWKWARD):
            path = os.path.join(os.fsencode(top), name)
            with open(path, "wb") as file:
                file.write(b"content %d\n" % number)
            os.utime(path, (1000000000 + number, 1000000000 + number))
        for number, name in enumerate(AWKWARD):
            deep = os.path.join(deep, b"d" + name[:100])
            os.mkdir(deep)
            with open(os.path.join(deep, b"leaf"), "wb") as file:
                file.write(name)
        (top / "circle").symlink_to("circle")
        (top / "self").symlink_to(".")
        (top / "out").symlink_to(self.place / "outside")
        (top / "sparse").touch()
        os.truncate(top / "sparse", 1 << 30)

    @staticmethod
    def picture(top):
        """All below a directory: kind, content or target, modes and date of each path."""
        found = {}
        for directory, names, files in os.walk(os.fsencode(top)):
            for name in names + files:
                path = os.path.join(directory, name)
                facts = os.lstat(path)
                if os.path.islink(path):
                    content = os.readlink(path)
                elif name in files and facts.st_size < 1 << 20:
                    with open(path, "rb") as file:
                        content = file.read()
                else:
                    content = facts.st_size if name in files else None
                found[os.path.relpath(path, os.fsencode(top))] = (
                    content, facts.st_mode, None if os.path.islink(path) or name in names else int(facts.st_mtime))
        return found


class AwkwardTree(Commands):
    def setUp(self):
        super().setUp()
        (self.place / "outside").mkdir()
        (self.place / "outside" / "kept").write_text("kept")
        self.awkward_tree(self.home / "from")

    def test_a_copy_is_the_same_and_deleting_it_touches_nothing_else(self):
        before = self.picture(self.home / "from")
        self.run_line("Copy Home:from Home:to ALL CLONE QUIET")
        self.assertEqual(self.picture(self.home / "to"), before)
        self.assertLess((self.home / "to" / "sparse").stat().st_blocks, 1 << 11)
        self.run_line("Protect Home:to/~(sparse) -w ALL QUIET")
        self.run_line("Filenote Home:to/~(sparse) note ALL QUIET")
        self.run_line("Delete Home:to ALL QUIET")
        self.assertFalse(os.path.lexists(self.home / "to"))
        self.assertEqual(self.picture(self.home / "from"), before)
        self.assertEqual((self.place / "outside" / "kept").read_text(), "kept")

    def test_what_list_prints_is_taken_back_by_every_command(self):
        # Each name goes out by LFORMAT and comes back in a script, quoted. The link in circles has no note.
        self.script_of('Filenote *"%p%n*" *"note of %n*"')
        for name in AWKWARD:
            if len(name) < 128 and b":" not in name:
                path = os.path.join(os.fsencode(self.home / "from"), name)
                self.assertEqual(os.getxattr(path, "user.xdg.comment"), b"note of " + name)
        self.script_of('Rename *"%p%n*" *"%pz%n*"')
        names = os.listdir(os.fsencode(self.home / "from"))
        for name in AWKWARD:
            if len(name) < 127 and b":" not in name:
                self.assertIn(b"z" + name, names)
        self.assertEqual(len([name for name in names if name.startswith(b"z")]), len(AWKWARD) + 3)

    def script_of(self, line):
        """Runs a script with a line for each object of from/ that is no drawer, but for the large one."""
        self.run_line('Echo >T:s "FailAt 21"')
        self.run_line('List >>T:s Home:from FILES PAT ~(sparse) LFORMAT "%s"' % line)
        self.run_line("Execute T:s")

    def test_words_of_a_host_shell_and_the_name_of_a_link_make_the_same_command(self):
        commands = pathlib.Path(AMIGA).resolve().parent.parent / "share" / "solvane" / "C"
        for name in ('quote" *', " blank ", "semi;colon", "ALL", "~tilde~", "don't"):
            expected = self.run_line(["Type", "from/" + name])
            self.assertIn(b"content", expected)
            self.assertEqual(self.run_line(["from/" + name], program=str(commands / "Type")), expected)

    def test_what_cannot_be_copied_is_told_and_the_rest_is_copied(self):
        os.mkfifo(self.home / "from" / "dQuote")
        if os.geteuid() != 0:
            os.chmod(self.home / "from" / "Twin", 0)
        text = self.run_line("Copy Home:from Home:to ALL QUIET", code=10)
        self.assertIn(b"Home:from/dQuote: object is not of required type", text)
        self.assertFalse(os.path.lexists(self.home / "to" / "dQuote"))
        self.assertEqual((self.home / "to" / "twin").read_bytes(), (self.home / "from" / "twin").read_bytes())


class Sidecars(Commands):
    def setUp(self):
        super().setUp()
        for name in WHOLE_SAMPLES:
            shutil.copy(SAMPLES / name, self.home)
            shutil.copy(SAMPLES / (name + ".uaem"), self.home)
        self.whole = {path.name: path.read_bytes() for path in self.home.glob("gen_*.uaem")}

    def sidecars(self, top):
        return {path.name: path.read_bytes() for path in top.glob("*.uaem")}

    def test_they_are_read_and_hidden(self):
        text = self.run_line('List Home:gen_#? LFORMAT "%n %a %d %t %c"').decode()
        self.assertEqual(text.splitlines(), [
            "gen_all hsparwed 31-Dec-99 23:59:59 every bit",
            "gen_archived ---arwed 29-Feb-24 12:00:00 leap day",
            "gen_no_line_end h---rw-d 01-Jan-86 00:00:00 no line end",
            "gen_none -------- 01-Jan-00 00:00:00 ",
            "gen_pure --p-rwed 20-Aug-92 09:10:11 pure",
            "gen_readonly ----r-e- 07-Jun-10 08:09:10 read only, with blanks  inside",
            "gen_script -s--rwed 17-May-94 12:30:14 Script bit"])

    def test_they_go_round_byte_for_byte(self):
        self.run_line("MakeDir Home:d")
        self.run_line("Rename Home:gen_#? Home:d QUIET")
        self.assertEqual(self.sidecars(self.home / "d"), self.whole)
        self.assertEqual(self.sidecars(self.home), {})
        # There and back again: the same bits, dates and notes to the last byte.
        for line in ("Protect Home:d/gen_script -s", "Protect Home:d/gen_script +s",
                     'Filenote Home:d/gen_pure other', 'Filenote Home:d/gen_pure pure',
                     "Protect Home:d/gen_readonly r", "Protect Home:d/gen_readonly re"):
            self.run_line(line)
        self.assertEqual(self.sidecars(self.home / "d"), self.whole)
        self.run_line("Delete Home:d/gen_none FORCE QUIET")  # allows nothing, reading neither
        self.run_line("Copy Home:d Home:e ALL CLONE QUIET")
        copied = self.sidecars(self.home / "e")
        del copied["gen_no_line_end.uaem"]  # gets its line end
        self.assertEqual(copied, {name: self.whole[name] for name in copied})
        self.assertEqual(len(copied), 5)

    def test_deleting_takes_the_pair_and_respects_its_bit(self):
        text = self.run_line("Delete Home:gen_#?", code=10).decode()
        self.assertIn("object is protected from deletion", text)
        left = sorted(path.name for path in self.home.glob("gen_*"))
        self.assertEqual(left, ["gen_none", "gen_none.uaem", "gen_readonly", "gen_readonly.uaem"])
        self.run_line("Delete Home:gen_#? FORCE QUIET")
        self.assertEqual(list(self.home.glob("gen_*")), [])


    def test_lines_of_another_writer_are_read_and_stay_theirs(self):
        for name in ("file2%3c", "file6.t"):
            (self.home / name).touch()
            shutil.copy(SAMPLES / (name + ".uaem"), self.home)
        text = self.run_line('List Home: PAT file#? LFORMAT "%n %a %d %t %c"').decode()
        self.assertEqual(text.splitlines(), ["file2%3c ----rwed 15-Mar-24 19:01:13 comment on file2",
                                             "file6.t ----rwed 12-Aug-24 13:20:25 "])
        self.run_line("MakeDir Home:f")
        self.run_line("Rename Home:file#? Home:f QUIET")
        for name in ("file2%3c.uaem", "file6.t.uaem"):
            self.assertEqual((self.home / "f" / name).read_bytes(), (SAMPLES / name).read_bytes())


class Program(Commands):
    def test_a_program_is_started_after_the_answer_of_a_terminal_only(self):
        program = self.home / "Prog"
        program.write_text('#!/bin/sh\necho ran >"$HOME/ran.new" && mv "$HOME/ran.new" "$HOME/ran"\n')
        program.chmod(0o755)
        text = self.run_line("WBRun Home:Prog", code=10)
        self.assertEqual(text, b"WBRun: Home:Prog: not started\n")
        for answer, code in ((b"n\n", 10), (b"\x03", 20), (b"y\n", 0)):
            self.assertFalse((self.home / "ran").exists(), answer)
            self.assertEqual(self.answer_on_a_terminal("WBRun Home:Prog", answer), code)
        self.wait_until((self.home / "ran").exists, "the program")

    def answer_on_a_terminal(self, line, answer):
        """The code of a line that asks once."""
        child, terminal = pty.fork()
        if child == 0:
            os.execve(AMIGA, [AMIGA, line], self.environment())
        try:
            text = b""
            while not text.endswith(b"(y/N) "):
                text += os.read(terminal, 1000)
            os.write(terminal, answer)
            return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
        finally:
            os.close(terminal)

    def test_a_volume_keeps_its_new_name(self):
        self.run_line("Relabel Home: Things")
        self.assertEqual(self.run_line("Echo x TO Things:made"), b"")
        self.assertEqual((self.home / "made").read_text(), "x\n")
        self.assertIn(b"Relabel: Home:: device", self.run_line("Relabel Home: Other", code=10))

    def test_control_c_breaks(self):
        process = subprocess.Popen([AMIGA, "Wait 5 MIN"], env=self.environment(), stdout=subprocess.PIPE)
        self.running.append(process)
        # The handler is in place once the system drawer is made.
        self.wait_until(lambda: (self.home / ".local/share/solvane/Workbench/C").exists(), "set up")
        process.send_signal(signal.SIGINT)
        output, _ = process.communicate(timeout=PATIENCE)
        self.assertEqual((process.returncode, output), (20, b"***Break\n"))

    def test_a_reader_that_goes_away_and_a_full_disk_end_it_with_a_code(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([AMIGA, "List"], env=self.environment(), cwd=self.home, stdout=full, timeout=PATIENCE)
        self.assertEqual(done.returncode, 20)


if __name__ == "__main__":
    unittest.main(verbosity=2)
