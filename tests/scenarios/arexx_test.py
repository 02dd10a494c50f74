"""ARexx scripts: the interpreter "rx", the port of an instance, scripts that drive a window, bad scripts.

Implemented in platform/rexx (port, interpreter), Tools/rx and automation/ (the commands).
"""
import os
import signal
import socket
import struct
import subprocess
import unittest

from support import PATIENCE, Scenario

RX = os.environ["SOLVANE_RX"]
AMIGA = os.environ["SOLVANE_AMIGA"]
# A picture of one pixel.
PICTURE = bytes.fromhex("89504e470d0a1a0a0000000d4948445200000001000000010806000000"
                        "1f15c4890000000d49444154789c63f8cfc0f01f00050001ff8e5f3f1d0000000049454e44ae426082")


class Scripts(Scenario):
    def rx(self, *words, code=0, **extra):
        """What a script writes, line by line; its errors are kept."""
        done = subprocess.run([RX, *words], env=self.environment(**extra), cwd=self.home, capture_output=True,
                              timeout=PATIENCE, stdin=subprocess.DEVNULL, text=True)
        self.assertEqual(done.returncode, code, (words, done.stdout, done.stderr))
        self.errors = done.stderr
        return done.stdout.splitlines()

    def script(self, name, text):
        (self.home / name).write_text("/* a script */\n" + text)
        return name


class Interpreter(Scripts):
    def test_scripts_are_found_and_get_their_arguments_and_give_their_code(self):
        self.script("args.rexx", "parse arg one rest\nsay '('one') ('rest')'\nexit 7\n")
        for name in ("args", "args.rexx", "Home:args", str(self.home / "args.rexx")):
            self.assertEqual(self.rx(name, "one", "two three", code=7), ["(one) (two three)"], name)
        (self.home / "bare").write_text("say 1\n")
        self.rx("bare", code=10)
        self.assertIn("begins with a comment", self.errors)
        self.rx("missing", code=10)
        self.rx("say 1/0", code=20)
        done = subprocess.run([AMIGA, 'rx "say 2*3 ""quoted"""'], env=self.environment(), capture_output=True, timeout=PATIENCE)
        self.assertEqual(done.stdout, b"6 quoted\n")

    def test_commands_go_to_our_shell_and_never_to_one_of_the_host(self):
        self.assertEqual(self.rx("""address command 'Echo "a;b"'; say rc; address command 'nosuch'; say rc"""),
                         ["a;b", "0", "nosuch: object not found", "10"])
        for line in ("address value 'SYS'||'TEM'; 'touch made'", "address value 'PATH'; 'touch made'",
                     "call popen 'touch made'", "x = touch('made')"):
            self.rx(line, code=20)
        self.assertFalse((self.home / "made").exists())

    def test_a_host_that_is_not_there_and_one_that_dies_give_code_20(self):
        self.assertEqual(self.rx("options results; address 'NOSUCH.1' 'X'; say rc result"), ["20 RESULT"])

    def test_functions_of_the_amiga_work_on_its_paths(self):
        self.assertEqual(self.rx(
            "call addlib('rexxsupport.library', 0, -30, 0); say result;"
            "say open('f', 'Home:made', 'W') writeln('f', 'one') writech('f', 'two') close('f');"
            "say open('f', 'Home:made', 'A') writeln('f', '!') close('f'); say open('f', 'Home:made');"
            "do while ~eof('f'); say '<'readln('f')'>'; end; say close('f') open('f', 'Home:missing');"
            "say word(statef('Home:made'), 1) word(statef('Home:made'), 2) exists('Home:missing');"
            "call pragma('D', 'Home:'); say pragma('D') exists('made');"
            "call setclip('a clip', 'its text'); say getclip('a clip'); say show('C', 'a clip') show('P', 'NOSUCH')"),
            ["1", "1 4 3 1", "1 2 1", "1", "<one>", "<two!>", "1 0", "FILE 9 0", "Home: 1", "its text", "1 0"])
        self.assertEqual(self.rx("say getclip('a clip')"), ["its text"])

    def test_a_script_that_never_ends_is_ended_by_the_interrupt(self):
        for text, code in (("say 'runs'; do forever; end", 20),
                           ("signal on break_c; say 'runs'; do forever; end; break_c: exit 3", 3)):
            process = subprocess.Popen([RX, text], env=self.environment(), stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            self.running.append(process)
            process.stdout.read(5)
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(PATIENCE), code)

    def test_errors_and_failures_of_commands_are_raised(self):
        self.script("fail.rexx", "exit 10\n")
        self.script("warn.rexx", "exit 5\n")
        for trap, warning in (("error", "raised 5"), ("failure", "not raised")):
            for name, expected in (("fail", "raised 10"), ("warn", warning)):
                self.assertEqual(self.rx("signal on %s; '%s'; say 'not raised'; exit; %s: say 'raised' rc" % (trap, name, trap)),
                                 [expected], (trap, name))

    def test_macros_call_each_other_and_survive_their_errors(self):
        self.script("inner.rexx", "parse arg a\nif a = 'bad' then say 1/0\nsay 'inner' a\nexit 4\n")
        self.assertEqual(self.rx("'inner x > y'; say rc; 'inner bad'; say rc; 'nosuch'; say rc"),
                         ["inner x > y", "4", "20", "10"])


class Port(Scripts):
    def setUp(self):
        super().setUp()
        (self.home / "some drawer").mkdir()
        (self.home / "Downloads").mkdir()
        (self.home / "some drawer" / "file").write_text("12345")
        self.program = self.start(str(self.home))
        self.assertEqual(self.rx("address command 'WaitForPort SOLVANE.1'; say rc"), ["0"])

    def drive(self, text, code=0):
        return self.rx("options results; address SOLVANE.1; " + text, code=code)

    def test_a_script_goes_places_and_asks_what_is_there(self):
        shown = self.drive(
            "'GETCURRENTPATH'; say result; 'VERSION'; say rc result;"
            "'CHANGEPATH PATH=\"Home:some drawer\"'; 'GETCURRENTPATH'; say result; 'GETNUMFILES'; say result;"
            "'GETTOTALBYTES'; say result; 'PARENT'; 'GETCURRENTPATH'; say result; 'BACK'; 'GETCURRENTPATH'; say result;"
            "'OPENNEWTAB PATH=SYS:'; 'GETCURRENTPATH'; say result; 'SWITCHTAB 1'; 'GETCURRENTPATH'; say result;"
            "'LOADPREFS'; 'GETCURRENTPATH'; say result; 'CLOSETAB NUM=3'; 'GETCURRENTPATH'; say result")
        drawer = "Home:some drawer"
        self.assertEqual([line.rstrip("/") for line in shown], [
            "Home:", "0 2.4", drawer, "1", "5", "Home:", drawer, "SYS:", drawer, drawer, "SYS:"])

    def test_a_script_jumps_from_screen_to_screen(self):
        self.assertEqual(self.drive("'GETPUBSCREENNAME'; say result; 'JUMPTOSCREEN SCREEN=workbench'; 'GETPUBSCREENNAME';"
                                    "say result; 'JUMPTOSCREEN SCREEN=gone'; 'GETPUBSCREENNAME'; say result;"
                                    "'GETCURRENTPATH'; say result"), ["Workbench", "Workbench", "Workbench", "Home:"])

    def test_bookmarks_are_kept_and_gone_to_by_number(self):
        shown = self.drive("'CHANGEPATH PATH=\"Home:some drawer\"'; 'ADDBOOKMARK'; 'OPENNEWTAB PATH=Computer';"
                           "'SELECTBOOKMARK NUM=1'; 'GETNUMENTRIES'; say result > 2; 'SELECTBOOKMARK'; say rc;"
                           "'SELECTBOOKMARK NUM=0'; 'GETCURRENTPATH'; say result")
        self.assertEqual([line.rstrip("/") for line in shown], ["1", "0", "Home:some drawer"])

    def test_what_is_no_command_is_answered_and_harms_nothing(self):
        self.assertEqual(self.drive(
            "'NOSUCH'; say rc result; 'SWITCHTAB NUM=x'; say rc; 'SWITCHTAB 1 2'; say rc; 'PASTETO PATH'; say rc;"
            "'VIEWSTYLE \"1'; say rc; copies('x', 60000); say rc; copies('x', 70000); say rc; 'SELECTBOOKMARK NUM=99'; say rc"),
            ["20 RESULT", "10", "10", "10", "10", "20", "20", "0"])
        self.assertEqual(self.drive("'GETNUMENTRIES'; say rc"), ["0"])

    def test_clients_that_die_or_stall_hold_nobody_up(self):
        path = next(path for path in (self.runtime / "solvane" / "ports").glob("*.lock")
                    if b"SOLVANE.1" in path.read_bytes()).with_suffix(".port")
        clients = []
        for sent in (b"", b"\x05\0\0\0GET", struct.pack("<I", 7) + b"VERSION", b"\xff\xff\xff\xff", os.urandom(64)):
            for _ in range(8):
                client = socket.socket(socket.AF_UNIX)
                client.connect(str(path))
                client.sendall(sent)
                clients.append(client)
        for client in clients[::2]:
            client.close()
        self.assertEqual(self.drive("'VERSION'; say result"), ["2.4"])
        for client in clients:
            client.close()

    def test_two_scripts_at_once_each_get_their_own_answers(self):
        text = ("options results; address SOLVANE.1; do i = 1 to 200; 'GETNUMENTRIES'; a = result;"
                "'VERSION'; if result ~= '2.4' | ~datatype(a, 'W') then exit 1; end")
        both = [subprocess.Popen([RX, text], env=self.environment()) for _ in range(2)]
        self.running += both
        self.assertEqual([process.wait(PATIENCE) for process in both], [0, 0])

    def test_each_script_that_comes_with_the_program_drives_the_window_that_starts_it(self):
        for name in ("photo.JPG", "icon.png", "text.txt"):
            (self.home / "some drawer" / name).write_bytes(PICTURE if name != "text.txt" else b"text")
        (self.home / "some drawer" / "drawer").mkdir()
        self.drive("'CHANGEPATH PATH=\"Home:some drawer\"'; 'SELECTALL'")
        self.rx("PROGDIR:ARexx/SelectPictures.rexx", SOLVANE_AREXX_HOST="SOLVANE.1")
        self.assertEqual(self.drive("'GETNUMENTRIESSELECTED'; say result"), ["2"])
        self.rx("PROGDIR:ARexx/TwoDrawers.rexx", SOLVANE_AREXX_HOST="SOLVANE.1")
        self.assertEqual(self.drive("'SWITCHTAB 2'; 'GETCURRENTPATH'; say result; 'SWITCHTAB 3'; 'GETCURRENTPATH';"
                                    "say result"), ["Home:", "Downloads:"])

    def test_quit_ends_the_program_and_its_port(self):
        self.assertEqual(self.drive("'QUITNOSAVE'; say rc"), ["0"])
        self.program.wait(PATIENCE)
        self.assertEqual(self.drive("'VERSION'; say rc"), ["20"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
