"""Every header compiles alone: one generated line of source per header proves it."""
import glob
import os
import shutil
import subprocess

from cache import Passed, digest

FLAGS = ['-std=c++20', '-fsyntax-only', '-Wall', '-Wextra', '-Wpedantic', '-Wconversion', '-Werror', '-fPIC',
         '-DQT_NO_KEYWORDS', '-DQT_NO_CAST_FROM_ASCII', '-DQT_NO_CAST_TO_ASCII', '-DQT_NO_CAST_FROM_BYTEARRAY']


def qt_flags():
    flags = []
    for folder in glob.glob('/usr/include/*/qt6'):
        flags += ['-isystem', folder]
        for module in ('QtCore', 'QtGui', 'QtWidgets', 'QtSvg', 'QtDBus', 'QtTest'):
            flags += ['-isystem', os.path.join(folder, module)]
    return flags


def with_all_it_includes(tree, path, known, seen):
    """The file and, through their includes, all files of the tree that its meaning hangs on."""
    if path not in seen:
        seen.add(path)
        for _, name in tree.includes(path):
            if name[1:-1] in known:
                with_all_it_includes(tree, name[1:-1], known, seen)
    return seen


def check_alone(tree):
    """Every header compiles alone, without a warning."""
    compiler = os.environ.get('CXX') or 'g++'
    if not shutil.which(compiler):
        print(f'note: {compiler} is not installed; headers are not compiled')
        return
    version = subprocess.run([compiler, '--version'], capture_output=True, text=True, check=False).stdout
    command = [compiler, *FLAGS, '-I', '.', *qt_flags(), '-x', 'c++', '-']
    known = set(tree.files)
    keys = {}
    for path in tree.named('.h'):
        if not tree.excepted('alone', path):
            parts = sorted(with_all_it_includes(tree, path, known, set()))
            keys[path] = digest(version, *FLAGS, path, *[tree.text(part) for part in parts])

    def compile_alone(path):
        run = subprocess.run(command, input=f'#include "{path}"\n', cwd=tree.root, capture_output=True, text=True,
                             check=False, env={**os.environ, 'LC_ALL': 'C.UTF-8'})
        lines = [line for line in run.stderr.splitlines() if 'error' in line]
        return f'{path}: does not compile alone: {(lines or ["?"])[0]}' if run.returncode else ''

    yield from Passed(tree, 'headers').run(keys, compile_alone)
