# SPDX-License-Identifier: GPL-3.0-or-later
"""The pages of the guide and the help page made of them: links, pictures, captions, keys, and the music in them."""

import importlib.machinery
import importlib.util
import re
import shutil
import subprocess
import sys
import tempfile
from html.parser import HTMLParser
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))
sys.dont_write_bytecode = True  # scripts/ stays as it is

import guidepages  # noqa: E402
from guidepages import GUIDE, HELP, INDEX, INLINE, KEY, Page, slug, texts  # noqa: E402

LARGEST = 60_000  # bytes of a picture
LANGUAGES = ("csound-orc", "csound-sco", "csound-csd", "settings", "fragments", "macro", "sh")

# Captions of the toolkit's own dialogs and buttons.
TOOLKIT = {"Yes", "No", "OK", "Cancel", "Print to File (PDF)", "Properties", "Options >>"}

# Keys that every field, list and button has.
ORDINARY = set("Enter Esc Tab Space Up Down Left Right Home End PgUp PgDown Ins Del Ctrl Alt Shift".split())
TOOLKIT_NAMES = {"PgUp": "PageUp", "PgDown": "PageDown", "Esc": "Escape", "Enter": "Return", "Del": "Delete", "Ins": "Insert"}

faults = []


def check(condition, what):
    if not condition:
        faults.append(what)


def script(name):
    """A script without an ending, as a module."""
    loader = importlib.machinery.SourceFileLoader(name.replace("-", "_"), str(ROOT / "scripts" / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


def bare(caption):
    """A caption without its underlined letter and what follows the words."""
    return plain(re.sub(r"&(.)", r"\1", caption))


def plain(caption):
    return caption.removesuffix("...").removesuffix(":").strip()


class Program:
    """What the program shows, by its source."""

    def __init__(self):
        texts = [file.read_text(encoding="utf-8") for file in (ROOT / "src").rglob("*") if file.suffix in (".cpp", ".h")]
        self.literals = [one.replace('\\"', '"') for text in texts for one in re.findall(r'"((?:[^"\\\n]|\\.)*)"', text)]
        self.captions = {bare(one) for one in self.literals} | TOOLKIT
        self.captions |= {line[:-1] for line in (ROOT / "data" / "presets").read_text().splitlines() if line.endswith("=")}
        self.keys = {key for one in self.literals for key in one.split("; ")}
        self.named_keys = {name for text in texts for name in re.findall(r"Qt::Key_(\w+)", text)}
        self.mnemonics = {letter.upper() for one in self.literals for letter in re.findall(r"&(\w)", one)}
        self.rows = {}  # the captions along the way -> the key that is shown
        self.bar_keys = {}  # of the rows below the menu bar that have keys: the way -> all of its keys
        self.buttons = {}  # captions of toolbar buttons with a key of their own
        self._menus()

    def _menus(self):
        table = (ROOT / "src" / "shell" / "ui" / "menutable.cpp").read_text(encoding="utf-8")
        row = re.compile(r'\{Menu::(\w+),\s*([\w:\[\]]+),\s*u"([^"]*)"(?:,\s*\{(?:u"([^"]*)")?)?')
        way = {"Bar": (), "Popups": ()}
        for menu, what, caption, key in row.findall(table):
            here = (*way[menu], bare(caption))
            if what.startswith("Menu::"):
                way[what.removeprefix("Menu::")] = here if caption else ()
            self.rows[here] = key.split("; ")[0] or None
            if key and len(here) > 1:
                self.bar_keys[here] = key.split("; ")
        self.rows[("Presets", "Ready-made presets")] = None  # comes and goes

        bar = (ROOT / "src" / "window" / "ui" / "toolbartable.cpp").read_text(encoding="utf-8")
        button = re.compile(r'\.description = u"(\w+)",(?:(?!\.key)[^}])*?\.shortcut = u"([^"]+)"')
        self.buttons = dict(button.findall(bar))

    def has_key(self, key):
        last = key.rsplit("+", 1)[-1] if not key.endswith("+") else "+"
        return (
            key in ORDINARY
            or key in self.keys
            or re.fullmatch(r"(Ctrl|Alt)\+[0-9]", key)
            or TOOLKIT_NAMES.get(last, last) in self.named_keys
            or key.startswith("Alt+") and last in self.mnemonics
            or key == "Alt+NumPad *" and "Asterisk" in self.named_keys
        )


def the_help_page_is_made_of_the_guide(all_pages):
    check(HELP.read_text(encoding="utf-8") == script("make-help").help_page(),
          "data/zelvane.html is not what the pages of docs/guide say: run scripts/make-help")


def every_page_is_in_the_index(all_pages):
    listed = {page.path.name for page in all_pages}
    there = {file.name for file in GUIDE.glob("*.md")} - {INDEX.name}
    check(listed == there, f"the index lists {sorted(listed)}, there are {sorted(there)}")


def every_link_leads_somewhere(all_pages):
    for page in [Page(INDEX), *all_pages]:
        for target in page.links():
            if "://" in target:
                continue
            name, _, heading = target.partition("#")
            file = GUIDE / name if name else page.path
            if not file.is_file():
                check(False, f"{page.path.name} links to {target}: no such file")
            elif heading:
                check(heading in {slug(one.text) for one in Page(file).headings()}, f"{page.path.name} links to {target}: no such heading")


class Anchors(HTMLParser):
    def __init__(self):
        super().__init__()
        self.names, self.targets, self.sources, self.open = [], [], [], []

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name == "id":
                self.names.append(value)
            elif name == "href":
                self.targets.append(value)
            elif name == "src":
                self.sources.append(value)
        if tag not in ("meta", "img", "link", "br", "rect", "path"):
            self.open.append(tag)

    def handle_startendtag(self, tag, attributes):
        pass

    def handle_endtag(self, tag):
        check(self.open and self.open[-1] == tag, f"</{tag}> of the help page ends {self.open[-1:]}")
        if self.open:
            self.open.pop()


def the_help_page_needs_nothing_else(all_pages):
    page = Anchors()
    page.feed(HELP.read_text(encoding="utf-8"))
    check(not page.open, f"{page.open} of the help page have no end")
    check(len(page.names) == len(set(page.names)), "names of the help page that stand twice")
    for target in page.targets:
        check(target.startswith("#") and target[1:] in page.names, f"the help page links to {target}")
    for source in page.sources:
        check(source.startswith("data:image/png;base64,"), f"the help page shows {source[:40]}")
    check(len(page.sources) == sum(len(page.pictures()) for page in all_pages), "the pictures of the help page")


def every_picture_is_there_and_shown(all_pages):
    shown = [picture.text for page in all_pages for picture in page.pictures()]
    there = {file.name for file in GUIDE.glob("*.png")}
    check(set(shown) == there, f"shown or there, not both: {sorted(set(shown) ^ there)}")
    made = {f"{name}.png" for names in script("make-guide-pictures").SCENES.values() for name in names}
    check(made == there, f"made by the script or there, not both: {sorted(made ^ there)}")
    for name in there:
        size = (GUIDE / name).stat().st_size
        check(size <= LARGEST, f"{name} has {size} bytes")
    for page in all_pages:
        for picture in page.pictures():
            check(len(picture.word) > 10, f"{page.path.name}: {picture.text} is not described")


def captions_and_keys_are_the_programs(all_pages):
    program = Program()
    check(len(program.rows) > 120, f"the menu table is read: {len(program.rows)} rows")
    told = 0
    for page in [Page(INDEX), *all_pages]:
        for text in texts(page.blocks):
            for found in INLINE.finditer(text):
                if found["caption"]:
                    told += 1
                    whole = found["caption"].replace("`", "")
                    way = tuple(plain(part) for part in whole.split(" > "))
                    if len(way) == 1:
                        check(plain(whole) in program.captions or whole in TOOLKIT, f"{page.path.name}: nothing is called {whole}")
                        continue
                    check(way in program.rows, f"{page.path.name}: no row {whole}")
                    key = re.match(r" \(`([^`]+)`\)", text[found.end() :])
                    if key:
                        check(program.rows.get(way) == key[1], f"{page.path.name}: {whole} has the key {program.rows.get(way)}")
                elif found["code"] and KEY.fullmatch(found["code"]):
                    check(program.has_key(found["code"]), f"{page.path.name}: no key {found['code']}")
    check(told > 150, f"only {told} captions are told")


def the_page_of_keys_is_right(all_pages):
    """Each key of a row of the menus stands there, with its row; for the others see tests/e2e/test_guide.py."""
    program = Program()
    check(len(program.bar_keys) > 50, f"rows with keys: {len(program.bar_keys)}")
    page = next(page for page in all_pages if page.name == "keys")
    tables = [block for block in page.blocks if block.kind == "table" and block.items[0][1] == "Command"]
    told = {}
    for keys, command in (row for table in tables for row in table.items[1:]):
        caption = re.match(r"\*\*(.+?)\*\*", command)
        way = tuple(plain(part) for part in caption[1].split(" > ")) if caption else command
        check(way not in told, f"keys.md: {command} stands there twice")
        told[way] = re.findall(r"`([^`]+)`", keys)
    for way in sorted(told.keys() | program.bar_keys.keys()):
        check(told.get(way) == program.bar_keys.get(way), f"keys.md: {way} has {program.bar_keys.get(way)}, not {told.get(way)}")
    check(program.buttons == {"Back": "Ctrl+PgUp", "Next": "Ctrl+PgDown"}, f"keys of buttons: {program.buttons}")
    check(any(row == ["`Ctrl+PgUp` `Ctrl+PgDown`", "back, next: through the files that you have opened"]
              for block in page.blocks if block.kind == "table" for row in block.items), "keys.md: back and next")


def every_block_is_an_example(all_pages):
    for page in all_pages:
        for fence in page.fences():
            check(fence.word in LANGUAGES, f"{page.path.name}:{fence.level}: a block of the language {fence.word!r}")


def csound(folder, what, *arguments):
    run = subprocess.run(["csound", "-d", *map(str, arguments)], cwd=folder, capture_output=True, text=True, timeout=600, check=False)
    said = run.stdout + run.stderr
    check(run.returncode == 0 and "0 errors in performance" in said, f"Csound on {what}: {said[-1500:]}")


def the_music_is_rendered(all_pages):
    """A score belongs to the orchestra before it. An orchestra may be shown before a change: it stands right behind then."""
    rendered = 0
    with tempfile.TemporaryDirectory(prefix="zelvane-guide-") as folder:
        folder = Path(folder)
        sound = folder / "sound.wav"
        for page in all_pages:
            music = [fence for fence in page.fences() if fence.word.startswith("csound-")]
            for fence, before, behind in zip(music, [None, *music], [*music[1:], None]):
                what = f"{page.path.name}:{fence.level}"
                kind = fence.word.removeprefix("csound-")
                behind_kind = behind.word.removeprefix("csound-") if behind else ""
                if kind == "sco":
                    check(before and before.word == "csound-orc", f"{what}: a score without an orchestra")
                    continue
                if kind == "orc" and behind_kind != "sco":
                    check(behind_kind == "orc", f"{what}: an orchestra that nobody can try")
                    continue
                files = [folder / f"piece.{kind}"]
                files[0].write_text(fence.text)
                if kind == "orc":
                    files.append(folder / "piece.sco")
                    files[1].write_text(behind.text)
                sound.unlink(missing_ok=True)
                csound(folder, what, "-W", "-o", sound, *files)
                check(sound.exists() and sound.stat().st_size > 10_000, f"{what} makes no sound")
                rendered += 1
    check(rendered >= 4, f"only {rendered} pieces")


def main():
    if not shutil.which("csound"):
        sys.exit("csound is not installed")
    all_pages = guidepages.pages()
    for scenario in (
        the_help_page_is_made_of_the_guide,
        every_page_is_in_the_index,
        every_link_leads_somewhere,
        the_help_page_needs_nothing_else,
        every_picture_is_there_and_shown,
        captions_and_keys_are_the_programs,
        the_page_of_keys_is_right,
        every_block_is_an_example,
        the_music_is_rendered,
    ):
        before = len(faults)
        scenario(all_pages)
        print(f"{scenario.__name__} {'FAILED' if len(faults) > before else 'passed'}", flush=True)
    sys.exit("\n".join(faults) if faults else 0)


main()
