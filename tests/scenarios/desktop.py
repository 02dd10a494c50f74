"""A desktop of its own for programs under real mouse and keys: a display without a screen, its window manager, hands."""
import os
import shutil
import struct
import subprocess
import unittest

from support import PATIENCE, Scenario

RX = os.environ["SOLVANE_RX"]
TOOLS = ("Xvfb", "openbox", "xdotool")
LOOP = ("options results; address SOLVANE.1; do forever; parse pull line; if line = '' then leave; result = '';"
        "line; say rc result; end")


class Picture:
    """What the screen shows, read from the memory of the display."""

    def __init__(self, file):
        data = file.read_bytes()
        fields = struct.unpack(">25I", data[:100])
        self.width, self.height, self.line = fields[4], fields[5], fields[12]
        start = fields[0] + 12 * fields[19]
        self.rows = [data[start + y * self.line:start + (y + 1) * self.line] for y in range(self.height)]

    def change(self, other):
        """The largest block of lines in which another picture differs: top, bottom, left, right."""
        blocks = []
        for y in range(self.height):
            if self.rows[y] == other.rows[y]:
                continue
            if blocks and blocks[-1][1] == y - 1:
                blocks[-1][1] = y
            else:
                blocks.append([y, y])
        if not blocks:
            return None
        top, bottom = max(blocks, key=lambda block: block[1] - block[0])
        columns = [x for x in range(self.width) if self.rows[top][4 * x:4 * x + 4] != other.rows[top][4 * x:4 * x + 4]]
        return top, bottom, columns[0], columns[-1]

    def part(self, top, bottom):
        return self.rows[top:bottom]


@unittest.skipUnless(all(shutil.which(tool) for tool in TOOLS), "needs " + ", ".join(TOOLS))
class Desktop(Scenario):
    """Each test has a display, a window manager and a running instance; self.port asks the instance."""

    def setUp(self):
        super().setUp()
        self.start_display()
        self.spawn("openbox", "--sm-disable")
        self.wait_until(lambda: self.hands_work("get_num_desktops"), "a window manager")

    def start_display(self):
        screen = self.place / "screen"
        screen.mkdir()
        reading, writing = os.pipe()
        self.display = ":none"
        self.spawn("Xvfb", "-displayfd", str(writing), "-screen", "0", "800x600x24", "-nolisten", "tcp", "-noreset", "-fbdir", str(screen),
                   pass_fds=(writing,))
        os.close(writing)
        with os.fdopen(reading) as numbers:
            self.display = ":" + numbers.readline().strip()
        self.screen = screen / "Xvfb_screen0"

    def spawn(self, *words, **options):
        self.running.insert(0, subprocess.Popen(words, env=self.environment(), stdin=subprocess.DEVNULL,
                                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options))

    def environment(self, **extra):
        settings = {"DISPLAY": getattr(self, "display", ""), "QT_QPA_PLATFORM": "xcb"}
        for name in ("CONFIG", "DATA", "CACHE"):
            settings["XDG_%s_HOME" % name] = str(self.place / name.lower())
        settings.update(extra)
        return super().environment(**settings)

    def open(self, *arguments):
        """Starts the program and waits until its window has the keyboard and shows its rows."""
        self.program = self.start(str(self.home), "WIN_X=10", "WIN_Y=10", "WIN_W=760", "WIN_H=480", *arguments)
        script = "address command 'WaitForPort SOLVANE.1'; " + LOOP
        self.script = subprocess.Popen([RX, script], env=self.environment(), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                       stderr=subprocess.PIPE, text=True, bufsize=1)
        self.running.append(self.script)
        self.wait_until(lambda: self.hands_work("search", "--onlyvisible", "--name", "^Solvane - "), "the window")
        self.wait_until(lambda: self.windows("getactivewindow") == self.windows("search", "--onlyvisible", "--name", "^Solvane"),
                        "the keyboard in the window")

    def quit(self):
        self.port("QUIT")
        self.program.wait(PATIENCE)
        self.script.communicate("\n", PATIENCE)
        self.running.remove(self.script)

    def port(self, command):
        self.script.stdin.write(command + "\n")
        code, _, result = self.script.stdout.readline().rstrip("\n").partition(" ")
        self.assertEqual(code, "0", command)
        return result

    # --- Hands ---

    def xdotool(self, *words):
        return subprocess.run(["xdotool", *map(str, words)], env=self.environment(), capture_output=True, text=True,
                              timeout=PATIENCE, stdin=subprocess.DEVNULL)

    def hands_work(self, *words):
        return self.xdotool(*words).returncode == 0

    def windows(self, *words):
        return set(self.xdotool(*words).stdout.split())

    def hand(self, *words):
        done = self.xdotool(*words)
        self.assertEqual((done.returncode, done.stderr), (0, ""), words)

    def keys(self, *names):
        self.hand("key", "--clearmodifiers", *names)

    def click(self, x, y, *held, times=1, button=1):
        down = [word for key in held for word in ("keydown", key)]
        up = [word for key in held for word in ("keyup", key)]
        self.hand("mousemove", x, y, *down, "click", "--repeat", times, "--delay", 40, button, *up)

    def drag(self, start, end):
        """In steps, as a hand does."""
        middle = [(a + b) // 2 for a, b in zip(start, end)]
        self.hand("mousemove", *start, "mousedown", 1, "mousemove", *middle, "mousemove", *end)
        self.hand("mouseup", 1, "mousemove", 1, 1)  # the pointer is part of the picture

    # --- Eyes ---

    def shot(self):
        """The screen when it has come to rest."""
        pictures = [None]

        def rests():
            pictures.append(Picture(self.screen))
            return pictures[-2] is not None and pictures[-2].rows == pictures[-1].rows

        self.wait_until(rests, "a screen at rest")
        return pictures[-1]

    def difference(self, one, other, looks_right):
        """Where the screen tells two states apart that are brought about by turns: a block that looks right, twice."""
        found = [None]

        def repeats():
            one()
            before = self.shot()
            other()
            found.append(before.change(self.shot()))
            return found[-1] is not None and looks_right(*found[-1]) and found[-2] == found[-1]

        self.wait_until(repeats, "a difference")
        return found[-1]

    def changes(self, top, bottom, deed, *arguments):
        """Does something that shows between two lines, and waits for that: what is typed next must find it there."""
        before = self.shot().part(top, bottom)
        deed(*arguments)
        self.wait_until(lambda: self.shot().part(top, bottom) != before, "a change between %d and %d" % (top, bottom))

    def popup(self):
        """Left, top, width and height of the one menu that is open."""
        found = []

        def opened():
            nonlocal found
            found = [self.box(window) for window in self.windows("search", "--onlyvisible", "--class", "solvane")
                     if window not in self.plain]
            return len(found) == 1

        self.wait_until(opened, "a menu")
        return found[0]

    def box(self, window):
        lines = dict(line.split("=") for line in self.xdotool("getwindowgeometry", "--shell", window).stdout.split())
        return tuple(int(lines[name]) for name in ("X", "Y", "WIDTH", "HEIGHT")) if "X" in lines else (0, 0, 0, 0)

    def note_windows(self):
        self.plain = self.windows("search", "--onlyvisible", "--class", "solvane")
