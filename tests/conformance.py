#!/usr/bin/env python3
"""Runs the vellum-cli example cases for the commands and file types the tool offers so far.

    conformance.py CLI CASES_DIR --kinds eval check ... --extensions .dg .drl ...

Cases of other kinds, or naming files of other types, are left out (and counted as such); the
rest go to the cases' own runner, whose closing line decides. A case with a folder in
conformance-overrides/ (beside this script) runs on a copy whose files that folder replaces, its
case.json keys merged in: where Vellum deliberately differs from the case (its README says why).
"""
import argparse
import json
import os
import shutil
import subprocess
import sys
import tempfile


def wanted(meta, kinds, extensions):
    if meta.get('kind') not in kinds:
        return False
    if meta['kind'] == 'eval':
        return True  # its arguments are expressions and bindings, not files
    files = [a for a in meta.get('args', [])[1:] if '.' in a and not a.startswith('-')]
    return all(os.path.splitext(f)[1] in extensions for f in files if f != 'OUT')


OVERRIDES = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'conformance-overrides')


def copy_overridden(case, override, target):
    """The case folder copied to `target`, with the override's files in place of its own."""
    shutil.copytree(case, target)
    for name in os.listdir(override):
        source = os.path.join(override, name)
        if name == 'case.json':
            with open(os.path.join(target, name)) as f:
                meta = json.load(f)
            with open(source) as f:
                meta.update(json.load(f))
            with open(os.path.join(target, name), 'w') as f:
                json.dump(meta, f, indent=1)
        else:
            shutil.copy(source, os.path.join(target, name))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('cli')
    parser.add_argument('cases')
    parser.add_argument('--kinds', nargs='+', required=True)
    parser.add_argument('--extensions', nargs='*', default=[])
    args = parser.parse_args()

    root = os.path.join(args.cases, 'cases')
    if not os.path.isdir(root):
        print('conformance: no cases at %s' % root)
        return 1
    chosen = tempfile.mkdtemp(prefix='vellum_conformance_')
    left_out = 0
    overridden = []
    for name in sorted(os.listdir(root)):
        case = os.path.join(root, name, 'case.json')
        if not os.path.isfile(case):
            continue
        with open(case) as f:
            meta = json.load(f)
        if not wanted(meta, args.kinds, set(args.extensions)):
            left_out += 1
        elif os.path.isdir(os.path.join(OVERRIDES, name)):
            copy_overridden(os.path.join(root, name), os.path.join(OVERRIDES, name),
                            os.path.join(chosen, name))
            overridden.append(name)
        else:
            os.symlink(os.path.join(root, name), os.path.join(chosen, name))
    print('conformance: %d cases for commands or file types not offered yet' % left_out)
    if overridden:
        print('conformance: expectations overridden (see %s/README.md): %s'
              % (os.path.relpath(OVERRIDES), ' '.join(overridden)))
    runner = os.path.join(args.cases, 'run.py')
    return subprocess.call([sys.executable, runner, args.cli, chosen])


if __name__ == '__main__':
    sys.exit(main())
