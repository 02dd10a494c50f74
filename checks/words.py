"""Words that have no place in the tree: papers that a reader does not have, one machine's paths, work left open."""
import re

TEXT_SUFFIXES = ('.cpp', '.h', '.py', '.sh', '.cmake', '.txt', '.md', '.rexx', '.cd', '.ct', '.list', '.in', '.toml',
                 '.xml', '.json', '.svg', '.1', '.desktop', '.dict')
TEXT_NAMES = ('start', 'check', 'run', '.clang-tidy', '.clang-format', '.gitignore', 'LICENSE')

# Written in pieces, so that this file passes its own rule.
PAPERS = re.compile(r'\b' r'Part [0-9]{1,2}' r'\.[0-9]\b|\bthe' r' spec\b|\bspec' r'\.md\b|\bspecifi' r'cations?\b', re.I)
MACHINE = re.compile(r'(^|[^A-Za-z0-9_.~-])/(work|farm|root|tmp/' r'brief)/')
OPEN_WORK = re.compile(r'\b(TO' r'DO|FIX' r'ME|XX' r'X|HA' r'CK)\b|not (yet )?imple' r'mented')


def text_files(tree):
    for path in tree.files:
        if path.startswith(('tests/data/', 'fuzz/corpus/')):
            continue
        if path.endswith(TEXT_SUFFIXES) or path.rsplit('/', 1)[-1] in TEXT_NAMES:
            yield path


def lines_with(tree, path, pattern):
    for number, line in enumerate(tree.text(path).splitlines(), 1):
        match = pattern.search(line)
        if match:
            yield number, match.group(0).strip()


def check_words(tree):
    """No mention of papers that a reader does not have, no path of one developer's machine."""
    for path in text_files(tree):
        if tree.excepted('words', path):
            continue
        for number, word in lines_with(tree, path, PAPERS):
            yield f'{path}:{number}: mentions "{word}"'
        for number, word in lines_with(tree, path, MACHINE):
            yield f'{path}:{number}: names a path of one machine, "{word}"'


def check_open_work(tree):
    """No work is left open in the code."""
    for path in tree.cpp():
        if not path.startswith(('tests/', 'bench/')):
            for number, word in lines_with(tree, path, OPEN_WORK):
                if not tree.excepted('open', path):
                    yield f'{path}:{number}: says "{word}"'
