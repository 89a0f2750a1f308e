#!/usr/bin/env python3
"""Fails on an include that points up the layers.

    layering.py SOURCE_DIR

Each folder may include its own headers and those of the layers it builds on (the table below,
which README.md states in words). Tests may also include the shared test support; helpers kept
in one folder's tests/ are that folder's own. System headers (<...>) are not looked at.
"""
import os
import re
import sys

# folder -> the folders it may include from, besides itself
ALLOWED = {
    'base': set(),
    'grammar': {'base'},
    'graph': {'base', 'grammar'},
    'koral': {'base', 'grammar', 'graph'},
    'tpx': {'base', 'grammar'},
    'gui': {'base', 'grammar', 'graph', 'koral', 'tpx'},
    'app': {'base', 'grammar', 'graph', 'koral', 'tpx', 'gui'},
    'plugins': {'base', 'grammar', 'graph', 'koral'},
    'tools': {'base', 'grammar', 'graph', 'koral', 'tpx', 'gui'},
    'bench': {'base', 'grammar', 'graph', 'koral', 'plugins', 'tpx', 'gui'},
    'fuzz': {'base', 'grammar', 'graph', 'koral', 'plugins', 'tpx'},
    'tests': {'base', 'grammar', 'graph', 'koral', 'plugins', 'tools'},
}
# What the test code of any folder may use in addition.
TEST_SUPPORT = 'tests/support'
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')
# Folders that must build without wxWidgets although their layer may use it.
WITHOUT_WX = ('gui/view/', 'gui/edit/', 'gui/icons/')
WX_INCLUDE = re.compile(r'^\s*#\s*include\s+<wx/')
SOURCE = ('.cpp', '.h', '.hpp', '.cc')


def is_test_file(path):
    parts = path.split('/')
    return 'tests' in parts[1:] or parts[0] in ('tests', 'fuzz')


def allowed(folder, path, target, layer):
    if layer not in ALLOWED:
        return True  # not one of ours
    if '/tests/' in target or target.startswith('tests/'):
        # test helpers: the shared support, or the including folder's own
        return is_test_file(path) and (target.startswith(TEST_SUPPORT + '/') or layer == folder)
    return layer == folder or layer in ALLOWED[folder]


def problems_in(root, folder):
    found = []
    for dirpath, _, names in os.walk(os.path.join(root, folder)):
        for name in sorted(names):
            if not name.endswith(SOURCE):
                continue
            path = os.path.relpath(os.path.join(dirpath, name), root)
            with open(os.path.join(root, path), errors='replace') as f:
                for number, line in enumerate(f, 1):
                    if path.startswith(WITHOUT_WX) and WX_INCLUDE.match(line):
                        found.append('%s:%d: includes wxWidgets' % (path, number))
                    match = INCLUDE.match(line)
                    if not match:
                        continue
                    target = match.group(1)
                    if '/' not in target:
                        continue  # a header beside the including file
                    layer = target.split('/')[0]
                    if not allowed(folder, path, target, layer):
                        found.append('%s:%d: includes "%s"' % (path, number, target))
    return found


def main():
    if len(sys.argv) != 2:
        print(__doc__.strip().splitlines()[2].strip(), file=sys.stderr)
        return 2
    root = sys.argv[1]
    problems = []
    for folder in sorted(ALLOWED):
        if os.path.isdir(os.path.join(root, folder)):
            problems += problems_in(root, folder)
    for problem in problems:
        print(problem)
    print('layering: %d includes point up the layers' % len(problems))
    return 1 if problems else 0


if __name__ == '__main__':
    sys.exit(main())
