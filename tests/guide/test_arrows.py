# SPDX-License-Identifier: GPL-3.0-or-later
"""Who may include whom, as docs/architecture.md tells it under "Arrows"."""

import re
import sys
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2] / "src"

# Who may include more: a layer or one file, and which layers or names of files.
EXCEPTIONS = {
    "writing": {"language"},
    "writing/ui": {"language"},
    "preferences/allsettingkeys.h": {"*keys.h"},
}

# Two modules that name each other: a class, and what screen readers see of it.
CIRCLES = [{"platform/ui/textaccessible", "platform/ui/textcontrol"}]

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(["<])([^">]+)[">]', re.MULTILINE)
SYSTEM = re.compile(
    r"(sys|linux|net|netinet|arpa)/.*"
    r"|(c?signal|dirent|dlfcn|fcntl|grp|langinfo|poll|pthread|pty|pwd|sched|spawn|termios|unistd|utime|windows)(\.h)?"
)
PLATFORM_MACRO = re.compile(r"\b(Q_OS_\w+|__linux__|__unix__|__APPLE__|_WIN32)\b")


def folder(name):
    """The layer that a file stands in: "run", "run/ui", or nothing for the programs themselves."""
    return name.rpartition("/")[0]


def may_include(layer):
    """The layers that the rules give to a layer, beside itself; nothing where it may include all."""
    if layer in ("", "window/ui"):
        return None
    room = layer.removesuffix("/ui")
    allowed = {layer, room, "platform"}
    if room != "platform":
        allowed.add("shell")
    if layer.endswith("/ui"):
        allowed.add("platform/ui")
        if room != "platform":
            allowed.add("shell/ui")
    return allowed


def is_excepted(name, target):
    for place in (folder(name), name):
        for what in EXCEPTIONS.get(place, ()):
            if what in (folder(target), target) or (what[0] == "*" and target.endswith(what[1:])):
                return (place, what)
    return None


def circles(modules):
    """The groups of modules that reach each other."""

    def reached(start):
        seen, ahead = set(), [start]
        while ahead:
            for other in modules.get(ahead.pop(), ()):
                if other not in seen:
                    seen.add(other)
                    ahead.append(other)
        return seen

    reach = {module: reached(module) for module in modules}
    found = []
    for module in sorted(modules):
        circle = {other for other in reach[module] if module in reach.get(other, ())}
        if circle and circle not in found:
            found.append(circle)
    return found


def main():
    faults, used, modules, seen = [], set(), {}, 0
    for file in sorted(SOURCES.rglob("*")):
        if file.suffix not in (".cpp", ".h"):
            continue
        name = file.relative_to(SOURCES).as_posix()
        module = name.rpartition(".")[0]
        text = file.read_text(encoding="utf-8")
        allowed = may_include(folder(name))
        for mark, target in INCLUDE.findall(text):
            seen += 1
            if mark == "<":
                if SYSTEM.fullmatch(target) and not name.startswith("platform/"):
                    faults.append(f"{name}: <{target}> belongs into platform/")
                continue
            if not (SOURCES / target).is_file():
                faults.append(f'{name}: "{target}" is no file of src/')
                continue
            if (other := target.rpartition(".")[0]) != module:
                modules.setdefault(module, set()).add(other)
            if allowed is None or folder(target) in allowed:
                continue
            if exception := is_excepted(name, target):
                used.add(exception)
            else:
                faults.append(f'{name}: must not include "{target}"')
        if not name.startswith("platform/"):
            faults += [f"{name}: {macro} belongs into platform/" for macro in PLATFORM_MACRO.findall(text)]

    if not seen:
        faults.append(f"{SOURCES}: no include was found")
    faults += [f"nobody needs the exception {place} -> {what}"
               for place, whats in EXCEPTIONS.items() for what in sorted(whats) if (place, what) not in used]
    found = circles(modules)
    faults += [f"a circle of includes: {', '.join(sorted(circle))}" for circle in found if circle not in CIRCLES]
    faults += [f"no circle any more: {', '.join(sorted(circle))}" for circle in CIRCLES if circle not in found]
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
