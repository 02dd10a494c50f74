"""Who may include whom. Arrows run down; a folder never includes one above it, and no two include each other."""
import re

from source import matches

# From the top to the bottom. Folders of one floor may use each other one way: the higher one binds them.
FLOORS = [
    ['frame'],
    ['automation'],
    ['locations', 'content', 'prefs', 'fileops', 'inspect', 'archives', 'online', 'media'],
    ['interface'],
    ['model'],
    ['sak'],
    ['platform/commands'],
    ['platform/intuition', 'platform/workbench', 'platform/application', 'platform/console', 'platform/rexx'],
    ['platform/datatypes'],
    ['platform/icon'],
    ['platform/locale'],
    ['platform/iffparse'],
    ['platform/dos'],
    ['platform/exec'],
    ['platform/utility'],
]
GENERATED = {'sak/Messages.h'}  # headers that the build makes
FLOOR_OF = {folder: number for number, floor in enumerate(FLOORS) for folder in floor}

HOST_INCLUDE = re.compile(
    r'<(Q[A-Za-z]|unistd|fcntl|dirent|pthread|poll|signal\.h|pwd|grp|dlfcn|spawn|termios|sys/|netinet/|arpa/|linux/'
    r'|X11/|xcb/|dbus/|wayland)')
HOST_NAME = (r'\bQ[A-Z][A-Za-z]\w*|\b(pid_t|mode_t|off_t|off64_t|ssize_t|uid_t|gid_t|dev_t|ino_t|nlink_t|pthread_\w+'
             r'|sockaddr\w*|struct\s+stat\w*|struct\s+dirent\w*)\b|\bDIR\s*\*')
HOST_PATH = r'"/(usr|tmp|home|etc|proc|dev|var|run|mnt|media|opt)(/|")'


def folder_of(path):
    """The folder of the house that a file belongs to, or nothing (tests, tools and what else stands outside)."""
    words = path.split('/')
    for length in (2, 1):
        folder = '/'.join(words[:length])
        if len(words) > length and folder in FLOOR_OF:
            return folder
    return None


def own_includes(tree, path):
    return [(line, name[1:-1]) for line, name in tree.includes(path) if name[0] == '"']


def check_layers(tree):
    """Includes go down the floors, are written from the root, and name files that exist."""
    known = set(tree.files)
    for path in tree.cpp():
        here = folder_of(path)
        for line, name in own_includes(tree, path):
            if name not in known:
                if not name.endswith('.moc') and name not in GENERATED and not tree.excepted('layers', path):
                    yield f'{path}:{line}: "{name}" is not a file of the tree (includes are written from the root)'
                continue
            there = folder_of(name)
            if here is None or here == there or tree.excepted('layers', path):
                continue
            if there is None:
                yield f'{path}:{line}: {name} stands outside the house'
            elif FLOOR_OF[there] < FLOOR_OF[here]:
                yield f'{path}:{line}: {here} includes {name}, which stands above it'


def circle_through(start, arrows):
    """The shortest way from start back to start along the arrows, or nothing."""
    ways, seen = [[start]], set()
    while ways:
        way = ways.pop(0)
        for there in sorted(arrows.get(way[-1], ())):
            if there == start:
                return way + [start]
            if there not in seen:
                seen.add(there)
                ways.append(way + [there])
    return None


def circles(arrows):
    reported = set()
    for start in sorted(arrows):
        way = circle_through(start, arrows)
        if way and not reported & set(way):
            reported |= set(way)
            yield ' -> '.join(way)


def check_circles(tree):
    """No folders and no headers include each other in a circle."""
    folders, files = {}, {}
    for path in tree.cpp():
        here = folder_of(path)
        for _, name in own_includes(tree, path):
            there = folder_of(name)
            if name in tree.files:
                files.setdefault(path, set()).add(name)
            if here and there and here != there and not tree.excepted('circles', path):
                folders.setdefault(here, set()).add(there)
    for way in circles(folders):
        yield f'{way}: folders include each other'
    for way in circles(files):
        yield f'{way}: files include each other'


def is_private(tree, path):
    """Whether the comment at the head of a header says so: "Private to platform/dos"."""
    head = re.match(r'(//[^\n]*\n)*', tree.text(path)).group(0)
    return re.search(r'\bprivate to\W+(//\W*)?platform\b', head, re.I) is not None


def host_names(tree, path):
    """What a header names of the host, in order, each once."""
    body = re.sub(r'^[ \t]*#.*', '', tree.code(path), flags=re.M)
    names = [name for _, name in tree.includes(path) if HOST_INCLUDE.match(name)]
    return list(dict.fromkeys(names + [match.group(0) for _, match in matches(body, HOST_NAME)]))


def seen_from_above(tree):
    """The headers of platform/ that the program above it sees, with the file through which it sees them."""
    known = set(tree.files)
    seen = {}
    todo = [path for path in tree.cpp() if folder_of(path) and not path.startswith('platform/')]
    while todo:
        path = todo.pop()
        for _, name in own_includes(tree, path):
            if name in known and name.startswith('platform/') and name not in seen:
                seen[name] = path
                todo.append(name)
    return seen


def check_seam(tree):
    """What the program sees of platform/ names nothing of the host, and no header there that calls itself private."""
    for path, through in sorted(seen_from_above(tree).items()):
        names = host_names(tree, path)
        if names:
            yield f'{path}:1: is seen through {through} and names {", ".join(names[:5])}'
        elif is_private(tree, path) and not through.startswith('platform/'):
            yield f'{path}:1: calls itself private and is included by {through}'


def check_host(tree):
    """Above platform/ there is no host header and no host path."""
    for path in tree.cpp():
        if path.startswith(('platform/', 'tests/', 'bench/', 'fuzz/')) or tree.excepted('host', path):
            continue
        for line, name in tree.includes(path):
            if HOST_INCLUDE.match(name):
                yield f'{path}:{line}: includes {name}'
        for line, match in matches(tree.code_with_literals(path), HOST_PATH):
            yield f'{path}:{line}: names the host path {match.group(0)}'
