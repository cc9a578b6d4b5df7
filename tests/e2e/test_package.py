# SPDX-License-Identifier: GPL-3.0-or-later
"""The Debian package of the built program: made, checked by the tools of its formats, unpacked, and used."""

import gzip
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from support.stage import Sound, check, copy_example, equal, main, rendered

SOURCE = Path(__file__).resolve().parents[2]
BUILD = Path(sys.argv[1]).resolve().parents[1] if len(sys.argv) > 1 else None
LARGEST = 5_000_000  # bytes
SIDES = (16, 22, 24, 32, 48, 64, 128, 256)

STORE = """[Options]
Used=2
Splash=0
Csound=/usr/bin/csound

[Presets]
Render=

[Render]
Command=$CSOUND$
Args=-d -W -o $WAVE$ $DOCUMENT$
"""


def programs_built():
    return [program for name in ("zelvane", "zelvane-console") if (program := Path(sys.argv[1]).resolve().with_name(name)).exists()]


def run(*command, timeout=1200, **options):
    """Runs a tool to its good end and gives what it has printed. `timeout` is in seconds."""
    result = subprocess.run(
        list(map(str, command)), capture_output=True, text=True, timeout=timeout, check=False, stdin=subprocess.DEVNULL, **options
    )
    check(result.returncode == 0, f"{command[0]} has ended with {result.returncode}: {result.stdout}{result.stderr}")
    return result.stdout + result.stderr


# In the place of CMake for scripts/make-deb: all but the compiler's work, which this build has done, is done.
BUILT = """#!/bin/sh
if [ "$1" = --build ]; then
  mkdir -p build/package/bin && cp {programs} build/package/bin || exit
  set -- "$@" --target zelvane_installed
fi
exec {cmake} "$@"
"""


class Package:
    """The package, made once for all scenarios by the script in a copy of the source, and what is in it."""

    def __init__(self, folder):
        self.folder = Path(folder)
        copy = self.folder / "source"
        shutil.copytree(SOURCE, copy, symlinks=True, ignore=shutil.ignore_patterns("build", ".git", "__pycache__"))
        stand_in = self.folder / "bin" / "cmake"
        stand_in.parent.mkdir()
        programs = " ".join(shlex.quote(str(program)) for program in programs_built())
        stand_in.write_text(BUILT.format(programs=programs, cmake=shutil.which("cmake")))
        stand_in.chmod(0o755)
        environment = os.environ | {"PATH": f"{stand_in.parent}:{os.environ['PATH']}"}
        run(copy / "scripts" / "make-deb", env=environment)
        made = list((copy / "build" / "package" / "package").glob("*.deb"))
        equal(len(made), 1, "packages made")
        self.file = made[0]
        self.root = self.folder / "root"
        run("dpkg-deb", "-x", self.file, self.root)
        self.share = self.root / "usr" / "share"

    def field(self, name):
        return run("dpkg-deb", "-f", self.file, name).strip()


def is_there_whole(stage):
    size = package.file.stat().st_size
    check(size < LARGEST, f"the package has {size} bytes")
    version = re.search(r"VERSION (\d+\.\d+\.\d+)", (SOURCE / "CMakeLists.txt").read_text()).group(1)
    equal(package.field("Version"), version, "version")
    equal(package.field("Maintainer"), "the Zelvane authors <zelvane@example.org>", "maintainer")
    depends = package.field("Depends")
    for name in ("libc6", "libqt6widgets6", "libqt6svg6", "libqscintilla2-qt6", "libsndfile1", "libsdl2"):
        check(f" {name}" in depends, f"{name} in {depends}")
    for name in ("shared-mime-info", "xdg-utils"):  # called, not linked
        check(f" {name}" in depends, f"{name} in {depends}")
    # Not linked either: it draws the icons. A library in its place would always be there.
    owners = {line.split(":")[0] for line in run("dpkg-query", "-S", "*/iconengines/libqsvgicon.so").splitlines()}
    named = {name.strip().split(" ")[0] for name in depends.split(",") if "|" not in name}
    check(owners & named, f"one of {owners} in {depends}")
    check("csound" in package.field("Recommends"), "Csound itself is recommended")

    help_page = (package.share / "zelvane" / "zelvane.html").read_text()
    check(help_page.count('src="data:image/png') == len(list((SOURCE / "docs" / "guide").glob("*.png"))), "the pictures of the help page")
    for name in ("opcodes.txt", "zelvane.html", "csound.hlp", "presets", "zelvane.csr"):
        check((package.share / "zelvane" / name).is_file(), f"{name} in the package")
    for piece in (SOURCE / "examples").iterdir():
        check((package.share / "doc" / "zelvane" / "examples" / piece.name).is_file(), f"{piece.name} of the examples")
    for page in (SOURCE / "docs" / "guide").iterdir():
        check((package.share / "doc" / "zelvane" / "guide" / page.name).is_file(), f"{page.name} of the guide")
    for program in programs_built():
        packed = package.root / "usr" / "bin" / program.name
        check(packed.is_file() and packed.stat().st_mode & 0o111, f"{program.name} in the package")
        check("not found" not in run("ldd", packed), f"the libraries of {program.name}")
        check("RUNPATH" not in run("readelf", "-d", packed), f"{program.name} looks for libraries in the build")
    changes = gzip.decompress((package.share / "doc" / "zelvane" / "changelog.gz").read_bytes()).decode()
    check(changes.startswith(f"zelvane ({version}) "), "the log of changes begins with this version")
    manual = gzip.decompress((package.share / "man" / "man1" / "zelvane.1.gz").read_bytes()).decode()
    check(f'"Zelvane {version}"' in manual, "the manual page is of this version")
    description = (package.share / "metainfo" / "org.example.zelvane.metainfo.xml").read_text()
    check(f'<releases>\n    <release version="{version}"' in description, "software centres are told of this version")
    check("GPL-3" in (package.share / "doc" / "zelvane" / "copyright").read_text(), "the licence is told")


def installation_gives_the_same_files(stage):
    prefix = stage.folder / "prefix"
    run("cmake", "--install", BUILD, "--prefix", prefix)

    def files(root):
        return sorted(str(file.relative_to(root)) for file in root.rglob("*") if not file.is_dir())

    equal(files(prefix), files(package.root / "usr"), "files of cmake --install and of the package")
    for program in (prefix / "bin").iterdir():
        check(program.stat().st_mode & 0o111, f"{program.name} can be run")
        check("RUNPATH" not in run("readelf", "-d", program), f"{program.name} looks for libraries in the build")


def software_centres_show_the_documented_picture(stage):
    description = (package.share / "metainfo" / "org.example.zelvane.metainfo.xml").read_text()
    addresses = re.findall(r"<image[^>]*>([^<]+)</image>", description)
    equal([address.rsplit("/", 1)[1] for address in addresses], ["window.png"], "pictures")
    width, height = map(int, run("identify", "-format", "%w %h", SOURCE / "docs" / "guide" / "window.png").split())
    check(width >= 620 and width > height, f"docs/guide/window.png has {width} by {height} pixels")


def icons_have_their_sizes(stage):
    icons = package.share / "icons" / "hicolor"
    run("xmllint", "--noout", icons / "scalable" / "apps" / "zelvane.svg")
    for side in SIDES:
        picture = icons / f"{side}x{side}" / "apps" / "zelvane.png"
        equal(run("identify", "-format", "%wx%h", picture), f"{side}x{side}", picture.name)
        # The emblem's ground in the middle of its left side; outside its round corners nothing is drawn.
        colours = run("convert", picture, "-format", f"%[pixel:p{{{side // 8},{side // 2}}}] %[pixel:p{{0,0}}]", "info:")
        check(re.match(r"s?rgba?\((2\d|3\d|4\d),", colours) and colours.split()[-1].endswith(",0)"), f"{picture}: {colours}")


def formats_are_right(stage):
    applications = package.share / "applications"
    for entry in applications.iterdir():
        equal(run("desktop-file-validate", entry), "", entry.name)
    metainfo = list((package.share / "metainfo").iterdir())
    equal(len(metainfo), 1, "descriptions for software centres")
    run("appstreamcli", "validate", "--no-net", metainfo[0])
    run("xmllint", "--noout", metainfo[0], package.share / "mime" / "packages" / "zelvane.xml")
    for page in (package.share / "man" / "man1").iterdir():
        environment = stage.environment | {"MANWIDTH": "80", "MANROFFSEQ": ""}
        warnings = run("man", "--warnings", "-E", "UTF-8", "-l", "-T", "utf8", "-Z", page, env=environment)
        check("warning" not in warnings and "error" not in warnings.lower().replace("x error", ""), f"{page.name}: {warnings[-2000:]}")
    told = run("lintian", "--fail-on", "error", "--allow-root", package.file, env=stage.environment)
    check(not re.search(r"^E:", told, re.MULTILINE), told)


def files_are_known_by_name_and_content(stage):
    types = stage.folder / "data" / "mime"
    shutil.copytree(package.share / "mime", types)
    equal(run("update-mime-database", types, env=stage.environment), "", "what it says")
    shutil.copytree(package.share / "applications", stage.folder / "data" / "applications")
    environment = stage.environment | {"PATH": f"{package.root}/usr/bin:{stage.environment['PATH']}"}
    unnamed = "; a piece\n<CsoundSynthesizer>\n</CsoundSynthesizer>\n"
    for name, text, kind in (("a.orc", "; x\n", "orc"), ("B.SCO", "; x\n", "sco"), ("c d.csd", "; x\n", "csd"), ("d", unnamed, "csd")):
        piece = stage.home / name
        piece.write_text(text)
        told = run("gio", "info", "--attributes=standard::content-type", piece, env=environment)
        check(f"content-type: text/x-csound-{kind}" in told, f"{name}: {told}")
        default = run("xdg-mime", "query", "default", f"text/x-csound-{kind}", env=environment)
        equal(default.strip(), "zelvane.desktop", f"what opens {name}")


def completion_offers_pieces_and_options(stage):
    for name in ("piece.csd", "piece.ORC", "picture.png", "-style.sco"):
        (stage.home / name).touch()
    (stage.home / "pi dir").mkdir()
    script = package.share / "bash-completion" / "completions" / "zelvane"

    def offered(*words):
        typed = f"source {script}; COMP_WORDS=(zelvane \"$@\"); COMP_CWORD=$#; _zelvane; printf '%s\\n' \"${{COMPREPLY[@]}}\""
        told = run("bash", "--norc", "-uc", typed, "bash", *words, cwd=stage.home, env=stage.environment)
        return sorted(filter(None, told.split("\n")))

    equal(offered("pi"), ["pi dir", "piece.ORC", "piece.csd"], "names")
    equal(offered("--v"), ["--version"], "an option")
    equal(offered("--", "-"), ["./-style.sco"], "a name like an option")
    check({"/i", "/p", "/r"} <= set(offered("/")), "the switches")
    check("/p" not in offered("x", "/"), "no switch behind a name")
    equal(offered("/r", "piece.c"), ["piece.csd"], "a name behind a switch")


def unpacked_program_renders_a_piece(stage):
    stage.program = str(package.root / "usr" / "bin" / "zelvane")
    stage.write_store(STORE)
    piece = copy_example(stage, "oscil.csd", "a piece")
    wave = piece.with_suffix(".wav")
    opened = stage.home / "opened"
    browser = stage.home / "bin" / "xdg-open"
    browser.parent.mkdir()
    browser.write_text(f'#!/bin/sh\nprintf "%s" "$1" > {opened}.part && mv {opened}.part {opened}\n')
    browser.chmod(0o755)
    stage.environment["PATH"] = f"{browser.parent}:{stage.environment['PATH']}"
    editor = stage.start("--", f"file://{str(piece).replace(' ', '%20')}")
    window = editor.window(lambda title: str(piece) in title)
    editor.at_rest()
    check("Unified Format" in window.title(), window.title())
    check((stage.folder / "data" / "zelvane" / "opcodes.txt").is_file(), "the list of opcodes comes from the package")
    window.screenshot("package-opened")
    window.keys("ctrl+1")
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {editor.output()}")
    window.keys("shift+F1")
    stage.until(opened.exists, "the help page in the browser")
    page = Path(opened.read_text())
    equal(page.parent, stage.folder / "data" / "zelvane", "the folder of the help page")
    check(page.read_bytes() == (SOURCE / "data" / "zelvane.html").read_bytes(), "the help page is the shipped one")
    check(Sound(wave).seconds > 1 and Sound(wave).peak > 300, f"{wave} is no sound")
    editor.close(window)


with tempfile.TemporaryDirectory(prefix="zelvane-package-") as place:
    try:
        package = Package(place)
    except AssertionError as failure:
        sys.exit(f"the package FAILED: {failure}")
    main(
        is_there_whole,
        installation_gives_the_same_files,
        software_centres_show_the_documented_picture,
        icons_have_their_sizes,
        formats_are_right,
        files_are_known_by_name_and_content,
        completion_offers_pieces_and_options,
        unpacked_program_renders_a_piece,
    )
