"""Remembers which texts have passed a slow check, so that a second run takes no time."""
import concurrent.futures
import hashlib
import json
import os


def digest(*parts):
    sum = hashlib.sha256()
    for part in parts:
        sum.update(part.encode('utf-8', 'surrogateescape') + b'\0')
    return sum.hexdigest()


class Passed:
    """The digests of what has passed, kept in build/checks/<name>.json."""

    def __init__(self, tree, name):
        self.path = os.path.join(tree.root, 'build', 'checks', name + '.json')
        try:
            with open(self.path, encoding='utf-8') as file:
                self.old = set(json.load(file))
        except (OSError, ValueError):
            self.old = set()

    def run(self, keys, check):
        """Yields check(item) for the items whose key is new; an empty answer is remembered as passed."""
        todo = [item for item, key in keys.items() if key not in self.old]
        passed = {key for key in keys.values() if key in self.old}
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for item, answer in zip(todo, pool.map(check, todo)):
                if answer:
                    yield answer
                else:
                    passed.add(keys[item])
        self.save(passed)

    def save(self, passed):
        if passed == self.old:
            return
        try:
            os.makedirs(os.path.dirname(self.path), exist_ok=True)
            new = f'{self.path}.{os.getpid()}'
            with open(new, 'w', encoding='utf-8') as file:
                json.dump(sorted(passed), file)
            os.replace(new, self.path)
        except OSError:
            pass  # a tree that cannot be written is checked in full each time
