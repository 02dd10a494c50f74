"""State, banned calls, sizes, white space and layout of the code."""
import re
import shutil
import subprocess

from cache import Passed, digest
from source import line_of, matches
from words import text_files

LONGEST_FILE = 800
LONGEST_FUNCTION = 60

BEFORE_CALL = r'(?<![\w.>])'
BANNED = [
    (BEFORE_CALL + r'(strcpy|strncpy|stpcpy|strcat|strncat|sprintf|vsprintf|gets|strtok)\s*\(',
     'writes without a bound; use Text or std::string'),
    (BEFORE_CALL + r'(system|popen)\s*\(', 'starts a host shell; command lines go through the dos service'),
    (BEFORE_CALL + r'(mktemp|tmpnam|tempnam)\s*\(', 'makes a name that another may take'),
    (BEFORE_CALL + r'(localtime|gmtime|ctime|asctime)\s*\(', 'returns a shared buffer; use the form with _r'),
    (BEFORE_CALL + r'(atoi|atol|atoll|atof)\s*\(', 'cannot report an error; use std::from_chars'),
    (BEFORE_CALL + r'(alloca|setjmp|longjmp)\s*\(', 'escapes the rules of ownership'),
    (r'(?<!operator )(?<![\w.])new\s+(\([^)]*\)\s*)?[A-Za-z_:]', 'raw new; use std::make_unique or a value'),
    (r'(?<!operator )(?<!= )\bdelete\b\s*(\[\s*\])?\s*[A-Za-z_(*:]', 'raw delete; use a std::unique_ptr'),
    (r'^(?![^\n]*\bconst(?:expr)?\b)[^\n]*\bchar\s+\w+\s*\[', 'raw char buffer; use Text, std::string or std::array'),
]


def check_state(tree):
    """Variables are shared only by standing in their owner's header: no source says extern."""
    for path in tree.named('.cpp'):
        for line, _ in matches(tree.text(path), r'^[ \t]*extern\b(?! *"C")'):
            if not tree.excepted('state', path):
                yield f'{path}:{line}: extern stands only in headers'


def check_banned(tree):
    """No unbounded text calls, host shells, raw new and delete, raw char buffers."""
    for path in tree.cpp():
        code = tree.code(path)
        for pattern, reason in BANNED:
            for line, match in matches(code, pattern):
                if not tree.excepted('banned', path):
                    yield f'{path}:{line}: {match.group(0).strip()}: {reason}'
        if path.endswith('.h'):
            for line, _ in matches(code, r'^\s*using\s+namespace\b'):
                yield f'{path}:{line}: using namespace in a header'
            if '#pragma once' not in code:
                yield f'{path}:1: has no #pragma once'


def check_size(tree):
    """No file has more than 800 lines."""
    for path in tree.named('.cpp', '.h', '.py', '.cmake'):
        lines = tree.text(path).count('\n')
        if lines > LONGEST_FILE and not path.startswith('tests/data/') and not tree.excepted('size', path):
            yield f'{path}: has {lines} lines; split out a named idea'


def check_space(tree):
    """No white space at a line's end, no tabs in code, lines end with a line feed."""
    for path in text_files(tree):
        text = tree.text(path)
        for line, _ in matches(text, r'[ \t\r]+$'):
            yield f'{path}:{line}: white space at the end of the line'
        if path.endswith(('.cpp', '.h', '.py')) and '\t' in text:
            yield f'{path}:{line_of(text, text.index(chr(9)))}: tab'
        if text and not text.endswith('\n'):
            yield f'{path}: the last line is not ended'


def check_format(tree):
    """Code is laid out as clang-format 14 does it (checked where that is installed)."""
    program = shutil.which('clang-format-14') or shutil.which('clang-format')
    version = ''
    if program:
        version = subprocess.run([program, '--version'], capture_output=True, text=True, check=False).stdout
    if ' 14.' not in version:
        print('note: clang-format 14 is not installed; the layout of the code is not checked')
        return
    style = tree.text('.clang-format') if '.clang-format' in tree.files else ''
    keys = {path: digest(version, style, tree.text(path)) for path in tree.cpp()
            if not path.startswith('tests/data/')}

    def misfit(path):
        run = subprocess.run([program, '--dry-run', '-Werror', '--ferror-limit=1', path], cwd=tree.root,
                             capture_output=True, text=True, check=False)
        where = re.match(r'[^:]*:(\d+)', run.stderr)
        return f'{path}:{where.group(1) if where else 1}: not as clang-format lays it out' if run.returncode else ''

    yield from Passed(tree, 'format').run(keys, misfit)


def code_lines(tree, paths, comment):
    return sum(1 for path in paths for line in tree.text(path).splitlines() if not re.match(comment, line))


def note_ratio(tree):
    """How many lines of tests there are to a line of code."""
    code = [path for path in tree.cpp() if not path.startswith(('tests/', 'bench/'))]
    tests = [path for path in tree.named('.cpp', '.h', '.rexx', '.sh', '.py')
             if path.startswith('tests/') and not path.startswith('tests/data/')]
    lines = code_lines(tree, code, r'\s*(//.*)?$')
    test_lines = code_lines(tree, tests, r'\s*((//|#).*)?$')
    if lines:
        yield (f'{lines} lines of code, {test_lines} of tests; tests are {test_lines * 100 // lines}% of the code '
               '(aim: 25 to 33%)')


def note_long_functions(tree):
    """Functions that do not fit a screen; tables and flat switches may be longer."""
    for path in tree.named('.cpp'):
        lines = tree.text(path).splitlines()
        start = None
        for number, line in enumerate(lines, 1):
            if re.match(r'[A-Za-z_].*\)[^;]*\{$', line) and not line.startswith('namespace'):
                start = number
            elif line == '}' and start:
                if number - start > LONGEST_FUNCTION:
                    yield f'{path}:{start}: function of {number - start + 1} lines'
                start = None


def note_unreferenced(tree):
    """Shared variables that stand in a header but that no second source mentions."""
    names = {}
    for path in tree.named('.h'):
        for line, match in matches(tree.code(path), r'^extern\s+[^;(]*?\b(\w+)\s*;'):
            names[match.group(1)] = f'{path}:{line}'
    uses = {}
    for path in tree.named('.cpp'):
        for word in set(re.findall(r'\w+', tree.code(path))) & set(names):
            uses[word] = uses.get(word, 0) + 1
    idle = sorted(name for name in names if uses.get(name, 0) < 2)
    if idle:
        yield f'{len(idle)} shared variables that only their owner mentions: {" ".join(idle[:12])}' + (
            ' ...' if len(idle) > 12 else '')
