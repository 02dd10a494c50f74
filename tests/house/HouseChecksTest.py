#!/usr/bin/env python3
"""Every house rule fires on a small bad tree and stays silent on a good one. Implemented in checks/."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

CHECKS = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..', 'checks', 'run')

GOOD_TREE = {
    'platform/dos/Lock.h': '// Locks.\n#pragma once\n\n#include <string>\n\nbool Lock(const std::string& path);\n',
    'platform/dos/Host.h': '// Calls. Private to platform/dos.\n#pragma once\n\n#include <unistd.h>\n',
    'platform/dos/Lock.cpp': '#include "platform/dos/Lock.h"\n\n#include "platform/dos/Host.h"\n',
    'model/State.h': '#pragma once\n\nextern int Count; // written by content\n',
    'model/State.cpp': '#include "model/State.h"\n\nint Count = 0;\n',
    'content/Scan.cpp': '#include "model/State.h"\n#include "platform/dos/Lock.h"\n\n'
                        '// A new list is made; delete what is old, char name[4], strcpy().\n'
                        'const char Word[] = "system(new X)";\n',
    'fuzz/ReadFuzz.cpp': 'extern "C" int LLVMFuzzerTestOneInput();\n',
}

# What a bad tree adds to the good one: the rule, a sentence, the files, and where the finding must point.
BAD_TREES = [
    ('layers', 'a lower folder includes a higher one',
     {'sak/Text.cpp': '#include "model/State.h"\n'}, 'sak/Text.cpp:1:'),
    ('layers', 'a lower service of the platform includes a higher one',
     {'platform/exec/Ports.cpp': '\n#include "platform/dos/Lock.h"\n'}, 'platform/exec/Ports.cpp:2:'),
    ('layers', 'an include is not written from the root',
     {'model/Copy.cpp': '#include "State.h"\n'}, 'model/Copy.cpp:1:'),
    ('layers', 'the program includes a file of the tests',
     {'tests/Help.h': '#pragma once\n', 'model/Copy.cpp': '#include "tests/Help.h"\n'}, 'model/Copy.cpp:1:'),
    ('circles', 'two folders of one floor include each other',
     {'content/List.h': '#include "prefs/Store.h"\n', 'content/Row.h': '',
      'prefs/Store.h': '', 'prefs/Editor.h': '#include "content/Row.h"\n'}, 'content -> prefs -> content'),
    ('circles', 'three headers of one folder include each other',
     {'model/A.h': '#include "model/B.h"\n', 'model/B.h': '#include "model/C.h"\n',
      'model/C.h': '#include "model/A.h"\n'}, 'model/A.h -> model/B.h -> model/C.h -> model/A.h'),
    ('seam', 'the program sees a header of the platform that includes one of the host',
     {'platform/exec/Wait.h': '#pragma once\n#include <poll.h>\n', 'sak/A.cpp': '#include "platform/exec/Wait.h"\n'},
     'platform/exec/Wait.h:1:'),
    ('seam', 'the program sees a class of the window system through a second header',
     {'platform/intuition/Native.h': '#pragma once\nclass QWidget;\n',
      'platform/intuition/Window.h': '#pragma once\n#include "platform/intuition/Native.h"\n',
      'interface/A.cpp': '#include "platform/intuition/Window.h"\n'}, 'platform/intuition/Native.h:1:'),
    ('seam', 'the program includes a header that calls itself private',
     {'platform/dos/Table.h': '// Rows. Private to platform/dos.\n#pragma once\n',
      'content/Peek.cpp': '#include "platform/dos/Table.h"\n'}, 'platform/dos/Table.h:1:'),
    ('host', 'a feature includes a header of the host',
     {'content/Peek.cpp': '#include <sys/stat.h>\n'}, 'content/Peek.cpp:1:'),
    ('host', 'a feature includes a header of the window system',
     {'interface/Panes.cpp': '#include <QtWidgets/QLabel>\n'}, 'interface/Panes.cpp:1:'),
    ('host', 'a feature names a host path',
     {'prefs/Store.cpp': '\nconst char* Where = "/etc/passwd";\n'}, 'prefs/Store.cpp:2:'),
    ('state', 'a source says extern',
     {'content/Peek.cpp': 'namespace {\n    extern int Count;\n}\n'}, 'content/Peek.cpp:2:'),
    ('size', 'a file is too long', {'content/Long.cpp': '\n' * 801}, 'content/Long.cpp: has 801 lines'),
    ('space', 'a line ends in blanks', {'Docs/guide.md': 'one\ntwo \n'}, 'Docs/guide.md:2:'),
    ('space', 'a line is indented by a tab', {'content/Tab.cpp': 'int A;\n\tint B;\n'}, 'content/Tab.cpp:2:'),
    ('space', 'the last line is not ended', {'README.md': 'text'}, 'README.md:'),
    ('words', 'a comment points to a numbered chapter', {'sak/A.cpp': '// Pa' 'rt 2.1 says so.\n'}, 'sak/A.cpp:1:'),
    ('words', 'a document mentions the paper', {'README.md': 'As the spe' 'cification says.\n'}, 'README.md:1:'),
    ('words', 'a script names a path of one machine', {'start': 'cd /wo' 'rk/main\n'}, 'start:1:'),
    ('open', 'work is left open', {'sak/A.cpp': 'int A; // TO' 'DO later\n'}, 'sak/A.cpp:1:'),
    ('alone', 'a header needs what it does not include',
     {'sak/Text.h': '#pragma once\n\nstd::string Name();\n'}, 'sak/Text.h:'),
]

BANNED_LINES = [
    'auto* a = new Node;', 'auto* a = new (std::nothrow) Node;', 'delete node;', 'delete[] nodes;',
    'strcpy(to, from);', 'std::sprintf(to, from);', 'std::system(line);', 'popen(line, "r");', 'char name[128];',
    'unsigned char bytes[4] = {};', 'int n = atoi(text);', 'auto* t = localtime(&now);', 'strtok(text, " ");',
]
ALLOWED_LINES = [
    'Node(const Node&) = delete;', 'constexpr char Mark[] = "x";', 'void* operator new(std::size_t size);',
    'list.system(1);', 'int renew = 1;', 'char letter = x[0];', 'auto s = R"(delete x; "new Y")";',
    "auto n = 1'000'000;",
]


def check(rule, files):
    """The output and result of one rule on the good tree with these files added."""
    root = tempfile.mkdtemp(prefix='house-')
    try:
        for name, text in {**GOOD_TREE, **files}.items():
            path = os.path.join(root, name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, 'w', encoding='utf-8') as file:
                file.write(text)
        run = subprocess.run([sys.executable, CHECKS, '--root', root, *rule], capture_output=True, text=True,
                             check=False)
        return run.stdout + run.stderr, run.returncode
    finally:
        shutil.rmtree(root)


class HouseChecks(unittest.TestCase):
    def test_AGoodTreeHasNoFindings(self):
        listed = subprocess.run([sys.executable, CHECKS, '--list'], capture_output=True, text=True, check=True).stdout
        rules = [line.split()[0] for line in listed.splitlines()]
        out, result = check([rule for rule in rules if rule != 'format'], {})
        self.assertEqual(result, 0, out)

    def test_EveryRuleFiresOnABadTree(self):
        for rule, sentence, files, place in BAD_TREES:
            with self.subTest(sentence):
                out, result = check([rule], files)
                self.assertIn(f'{rule}: {place}', out)
                self.assertEqual(sum(line.startswith(f'{rule}: ') for line in out.splitlines()), 1, out)
                self.assertEqual(result, 1)

    def test_BannedLinesAreFoundAndTheirLikesAreNot(self):
        out, _ = check(['banned'], {'content/Bad.cpp': '\n'.join(BANNED_LINES) + '\n'})
        for number, line in enumerate(BANNED_LINES, 1):
            self.assertIn(f'content/Bad.cpp:{number}:', out, line)
        out, result = check(['banned'], {'content/Good.cpp': '\n'.join(ALLOWED_LINES) + '\n'})
        self.assertEqual(result, 0, out)

    def test_AnExceptionSilencesItsRuleOnly(self):
        files = {'content/Peek.cpp': '#include <sys/stat.h>\nchar a[2];\n',
                 'checks/exceptions.list': 'host content/Peek.cpp  a good reason\n'}
        self.assertEqual(check(['host'], files)[1], 0)
        self.assertEqual(check(['banned'], files)[1], 1)

    def test_AnExceptionThatNothingNeedsIsAFinding(self):
        out, result = check([], {'checks/exceptions.list': 'host content/Gone.cpp  a good reason\n'})
        self.assertIn('exceptions: checks/exceptions.list: "host content/Gone.cpp" is no longer needed', out)
        self.assertEqual(result, 1)

    @unittest.skipUnless(shutil.which('clang-format-14'), 'clang-format 14 is not installed')
    def test_CodeThatIsLaidOutOtherwiseIsFound(self):
        files = {'.clang-format': 'BasedOnStyle: LLVM\n', 'content/Crooked.cpp': 'int   A ;\n'}
        self.assertIn('format: content/Crooked.cpp:1:', check(['format'], files)[0])


if __name__ == '__main__':
    unittest.main()
