"""The files of a tree as the rules see them: their names, texts, code without comments, and includes."""
import fnmatch
import os
import re
import subprocess

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(<[^>\n]+>|"[^"\n]+")', re.M)
NOT_CODE = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"(?P<mark>\w*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'', re.S)
COMMENT = re.compile(r'(?P<text>"(?:\\.|[^"\\\n])*")|//[^\n]*|/\*.*?\*/', re.S)
SKIPPED = {'.git', 'build', '.cache', '__pycache__'}


def keep_lines(match):
    return '\n' * match.group(0).count('\n')


class Tree:
    """A source tree. Paths are relative to its root and use "/"."""

    def __init__(self, root):
        self.root = os.path.abspath(root)
        self.files = sorted(self.listed() or self.walked())
        self.texts = {}
        self.exceptions = self.read_exceptions()
        self.used = set()

    def listed(self):
        """What git knows or would add; nothing when the root is not the root of a clone."""
        if not os.path.exists(os.path.join(self.root, '.git')):
            return []
        try:
            out = subprocess.run(['git', '-C', self.root, 'ls-files', '-co', '--exclude-standard', '-z'],
                                 capture_output=True, check=True).stdout
        except (OSError, subprocess.CalledProcessError):
            return []
        names = {os.fsdecode(name) for name in out.split(b'\0') if name}
        return [name for name in names if os.path.isfile(os.path.join(self.root, name))]

    def walked(self):
        found = []
        for folder, folders, names in os.walk(self.root):
            folders[:] = [name for name in folders if name not in SKIPPED]
            found += [os.path.relpath(os.path.join(folder, name), self.root) for name in names]
        return found

    def read_exceptions(self):
        """Rows of checks/exceptions.list: rule, file pattern, reason."""
        rows = []
        if 'checks/exceptions.list' in self.files:
            for line in self.text('checks/exceptions.list').splitlines():
                words = line.split(None, 2)
                if words and not words[0].startswith('#'):
                    rows.append((words[0], words[1], words[2] if len(words) > 2 else ''))
        return rows

    def excepted(self, rule, path):
        for row in self.exceptions:
            if row[0] == rule and fnmatch.fnmatch(path, row[1]):
                self.used.add(row)
                return True
        return False

    def stale_exceptions(self):
        """Exceptions that nothing needs any more, or that give no reason."""
        for row in self.exceptions:
            if row not in self.used:
                yield f'checks/exceptions.list: "{row[0]} {row[1]}" is no longer needed'
            if not row[2]:
                yield f'checks/exceptions.list: "{row[0]} {row[1]}" gives no reason'

    def text(self, path):
        if path not in self.texts:
            with open(os.path.join(self.root, path), 'rb') as file:
                self.texts[path] = file.read().decode('utf-8', 'replace')
        return self.texts[path]

    def code(self, path):
        """The text without comments and literals; line numbers stay."""
        return NOT_CODE.sub(keep_lines, self.text(path))

    def code_with_literals(self, path):
        return COMMENT.sub(lambda match: match.group('text') or keep_lines(match), self.text(path))

    def includes(self, path):
        """Pairs of line number and included name with its marks, "<...>" or '"..."'."""
        text = self.text(path)
        return [(line_of(text, match.start(1)), match.group(1)) for match in INCLUDE.finditer(text)]

    def named(self, *suffixes):
        return [path for path in self.files if path.endswith(suffixes)]

    def cpp(self):
        return self.named('.cpp', '.h')


def line_of(text, position):
    return text.count('\n', 0, position) + 1


def matches(text, pattern):
    """Pairs of line number and match."""
    return [(line_of(text, match.start()), match) for match in re.finditer(pattern, text, re.M)]
