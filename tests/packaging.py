#!/usr/bin/env python3
"""Builds the Debian package with cpack and checks it: the files a user needs are in it, its
dependencies name the libraries the programs link, the desktop entry validates, and the
programs run from the unpacked package with its own plug-ins.

    packaging.py BUILD_DIR
"""
import os
import subprocess
import sys
import tempfile
from pathlib import Path


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def main():
    if len(sys.argv) != 2:
        print(__doc__.strip().splitlines()[-1].strip(), file=sys.stderr)
        return 2
    build = Path(sys.argv[1]).resolve()
    gui = (build / "bin" / "vellum").exists()
    problems = []
    with tempfile.TemporaryDirectory() as scratch:
        scratch = Path(scratch)
        run("cpack", "-G", "DEB", "-B", str(scratch), "--config", str(build / "CPackConfig.cmake"))
        packages = list(scratch.glob("vellum_*.deb"))
        if len(packages) != 1:
            print("packaging: expected one vellum_*.deb, found %s" % packages)
            return 1
        package = packages[0]
        files = {line.split()[-1].lstrip(".") for line in run("dpkg-deb", "-c", str(package)).splitlines()}
        wanted = ["/usr/bin/vellum-cli", "/usr/lib/vellum/plugins/DirectedGraph.gc",
                  "/usr/share/vellum/examples/sierpinski/sierpinski.mod",
                  "/usr/share/doc/vellum/README.md", "/usr/share/doc/vellum/interchange.md"]
        if gui:
            wanted += ["/usr/bin/vellum", "/usr/share/applications/vellum.desktop",
                       "/usr/share/icons/hicolor/scalable/apps/vellum.svg",
                       "/usr/share/mime/packages/vellum.xml"]
        problems += ["the package lacks %s" % name for name in wanted if name not in files]

        depends = run("dpkg-deb", "-f", str(package), "Depends")
        needed = ["libc6", "libstdc++6", "libxml2", "libcgraph6", "libpng16-16", "libfreetype6",
                  "fonts-dejavu-core"]
        if gui:
            needed += ["libwxgtk3.2", "libwxgtk-gl3.2"]
        problems += ["Depends lacks %s: %s" % (name, depends.strip())
                     for name in needed if name not in depends]

        root = scratch / "root"
        run("dpkg-deb", "-x", str(package), str(root))
        if gui:
            check = subprocess.run(["desktop-file-validate",
                                    str(root / "usr/share/applications/vellum.desktop")],
                                   capture_output=True, text=True)
            if check.returncode != 0:
                problems.append("the desktop entry does not validate: " + check.stdout + check.stderr)
        # The unpacked programs find their own libraries and plug-ins.
        env = dict(os.environ, LD_LIBRARY_PATH="")
        examples = root / "usr/share/vellum/examples/sierpinski"
        result = subprocess.run([str(root / "usr/bin/vellum-cli"), "run", str(examples / "sierpinski.mod"),
                                 "gen2", str(examples / "triangle.dg"), "--stats", "--quiet"],
                                capture_output=True, text=True, env=env)
        if result.returncode != 0:
            problems.append("the packaged vellum-cli cannot run an example: " + result.stdout + result.stderr)
    for problem in problems:
        print("packaging:", problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
