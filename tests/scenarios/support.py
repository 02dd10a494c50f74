"""Runs the program as a user's desktop would, in a home, a runtime directory and a configuration of its own."""
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

PROGRAM = os.environ["SOLVANE_PROGRAM"]
# Only against a test that never ends; nothing is measured.
PATIENCE = 60.0


class Scenario(unittest.TestCase):
    """A fresh user for each test; everything is gone when it ends."""

    def setUp(self):
        self.place = pathlib.Path(tempfile.mkdtemp(prefix="solvane-scenario-"))
        self.home = self.place / "home"
        self.runtime = self.place / "run"
        for directory in (self.home, self.runtime):
            directory.mkdir(mode=0o700)
        self.running = []

    def tearDown(self):
        for process in self.running:
            if process.poll() is None:
                process.kill()
            process.communicate()
        for directory, names, _ in os.walk(self.place):
            for name in names:
                path = os.path.join(directory, name)
                if not os.path.islink(path):
                    os.chmod(path, 0o700)
        shutil.rmtree(self.place)

    def environment(self, **extra):
        settings = {
            "PATH": os.environ["PATH"],
            "HOME": str(self.home),
            "XDG_RUNTIME_DIR": str(self.runtime),
            "LC_ALL": "C.UTF-8",
            "TZ": "UTC",
            "QT_QPA_PLATFORM": "offscreen",
        }
        settings.update(extra)
        return settings

    def start(self, *arguments, **extra):
        """A running instance that shows its window until it is ended."""
        process = subprocess.Popen([PROGRAM, *arguments], env=self.environment(**extra),
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, stdin=subprocess.DEVNULL)
        self.running.append(process)
        return process

    def show(self, *arguments, **extra):
        """What a fresh instance shows, as text; the picture lies at self.picture."""
        self.picture = self.place / "window.png"
        done = subprocess.run([PROGRAM, *arguments], env=self.environment(SOLVANE_SNAPSHOT=str(self.picture), **extra),
                              capture_output=True, timeout=PATIENCE, stdin=subprocess.DEVNULL)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.errors = done.stderr.decode("utf-8", "replace")
        return done.stdout.decode("utf-8", "replace")

    def wait_until(self, condition, what):
        end = time.monotonic() + PATIENCE
        while not condition():
            self.assertLess(time.monotonic(), end, "never happened: " + what)
            time.sleep(0.02)

    @staticmethod
    def end_politely(process):
        process.send_signal(signal.SIGTERM)
        return process.wait(PATIENCE)
