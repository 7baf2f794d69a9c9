#!/usr/bin/env python3
"""Holds the #include lines of our sources against the layers of the program.

A folder of src/ includes only itself and the folders it stands on; no headers include each other in a circle;
the layers below the windows include nothing of Qt's screen modules; only src/platform asks for an operating
system. Prints each breach and ends with 1 if there is one.
"""

import re
import subprocess
import sys
from pathlib import Path

# What each folder links to directly. Order and links are those of docs/architecture.md.
LINKS = {
    "base": [],
    "platform": ["base"],
    "analysis": ["base"],
    "wfdb": ["base"],
    "study": ["platform", "analysis", "wfdb"],
    "acq": ["platform", "analysis"],
    "equipment": ["platform"],
    "recorder": ["study", "acq", "equipment"],
    "display": ["analysis"],
    "report": ["study"],
    "dialogs": ["display", "report", "recorder"],
    "windows": ["dialogs"],
    "app": ["windows"],
    "cli": ["recorder", "report"],
}
SIMULATOR_LINKS = ["platform", "analysis", "wfdb"]
# The only ones that know the icons and style sheets of res/ by their headers; all others know their names.
WITH_RESOURCES = {"app"}
WITHOUT_SCREEN = {"base", "platform", "analysis", "wfdb", "study", "acq", "equipment", "recorder", "cli"}
SCREEN_MODULES = ("QtGui", "QtWidgets", "QtPrintSupport")
OUR_FOLDERS = ("src", "res", "tests", "benchmarks", "fuzz", "simulators", "accuracy")

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
SYSTEM_CONDITION = re.compile(
    r"^\s*#\s*(?:if|ifdef|ifndef|elif)\b.*\b(?:Q_OS_\w+|_?WIN(?:32|64)|__linux__|__linux|linux|__unix__|unix|"
    r"__APPLE__|__MINGW32__|__MINGW64__)\b", re.MULTILINE)


def reachable(folder):
    """The folder and everything below it."""
    found = {folder}
    for link in LINKS[folder]:
        found |= reachable(link)
    return found


def screen_headers():
    """Names under which the classes of the screen modules are included without their module."""
    found = subprocess.run(["pkg-config", "--variable=includedir", "Qt5Core"], capture_output=True, text=True,
                           check=False)
    names = set()
    for module in SCREEN_MODULES:
        folder = Path(found.stdout.strip()) / module
        names |= {path.name for path in folder.iterdir()} if folder.is_dir() else set()
    return names


def line_of(text, position):
    return text.count("\n", 0, position) + 1


class Checker:
    def __init__(self, root):
        self.root = root
        self.breaches = []
        self.graph = {}
        self.screen_headers = screen_headers()

    def run(self):
        for folder in OUR_FOLDERS:
            for path in sorted((self.root / folder).rglob("*")):
                if path.suffix in (".h", ".cpp"):
                    self.check_file(path)
        self.check_cycles()
        return self.breaches

    def check_file(self, path):
        text = path.read_text(encoding="utf-8")
        parts = path.relative_to(self.root).parts
        allowed = self.allowed_folders(path, parts)
        targets = self.graph.setdefault(path, [])
        for match in INCLUDE.finditer(text):
            where = f"{path.relative_to(self.root)}:{line_of(text, match.start())}"
            target = self.resolve(path, match.group(2)) if match.group(1) == '"' else None
            if target:
                targets.append(target)
            self.check_include(where, parts, match.group(2), target, allowed)
        if parts[:2] != ("src", "platform"):
            for match in SYSTEM_CONDITION.finditer(text):
                self.breach(path, line_of(text, match.start()),
                            "asks for an operating system; that belongs in src/platform")

    def allowed_folders(self, path, parts):
        """Folders of src/ that a file may include; None for any."""
        if parts[0] == "simulators":
            return set().union(*(reachable(link) for link in SIMULATOR_LINKS))
        if parts[0] != "src":
            return None
        if len(parts) < 3 or parts[1] not in LINKS:
            self.breach(path, 1, "lies in no folder that the layers know")
            return None
        return reachable(parts[1])

    def check_include(self, where, parts, name, target, allowed):
        if target and allowed is not None:
            folder = target.relative_to(self.root).parts
            if folder[0] == "src" and folder[1] not in allowed:
                self.breaches.append(f"{where}: includes {name}, but {'/'.join(parts[:2])} may not know "
                                     f"src/{folder[1]}")
            is_resource = folder[0] == "res" and parts[0] == "src" and parts[1] in WITH_RESOURCES
            if folder[0] not in ("src", parts[0]) and not is_resource:
                self.breaches.append(f"{where}: includes {name}, which is not part of the program")
        if parts[0] == "src" and parts[1] in WITHOUT_SCREEN:
            if name.split("/")[0] in SCREEN_MODULES or name in self.screen_headers:
                self.breaches.append(f"{where}: includes {name}, but src/{parts[1]} runs without a screen")

    def resolve(self, path, name):
        for folder in (path.parent, self.root / "src", self.root / "tests", self.root):
            target = (folder / name).resolve()
            if target.is_file() and self.root in target.parents:
                return target
        return None

    def check_cycles(self):
        done = set()
        for path in self.graph:
            self.walk(path, [], done)

    def walk(self, path, trail, done):
        if path in trail:
            circle = [str(each.relative_to(self.root)) for each in trail[trail.index(path):] + [path]]
            self.breaches.append("headers include each other: " + " -> ".join(circle))
        elif path not in done:
            for target in self.graph.get(path, []):
                self.walk(target, trail + [path], done)
            done.add(path)

    def breach(self, path, line, text):
        self.breaches.append(f"{path.relative_to(self.root)}:{line}: {text}")


def main():
    root = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).parent.parent).resolve()
    checker = Checker(root)
    breaches = checker.run()
    print("\n".join(breaches) if breaches else f"{len(checker.graph)} files keep to the layers.")
    return 1 if breaches or not checker.graph else 0


if __name__ == "__main__":
    sys.exit(main())
