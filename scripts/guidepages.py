# SPDX-License-Identifier: GPL-3.0-or-later
"""The pages of docs/guide: which there are, and what stands in them. They are written in a small part of Markdown:
headings, paragraphs, lists, tables, fenced blocks, pictures on lines of their own, comments; inside of a text code, links,
**captions of the program** and *stress*."""

import re
from dataclasses import dataclass, field
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
GUIDE = ROOT / "docs" / "guide"
INDEX = GUIDE / "README.md"
HELP = ROOT / "data" / "zelvane.html"

NAMED_KEYS = "Enter|Esc|Tab|Space|Up|Down|Left|Right|Home|End|PgUp|PgDown|Ins|Del|F[0-9]+|NumPad [-+*]"
KEY = re.compile(rf"(?:(?:(?:Ctrl|Alt|Shift)\+)+(?:[A-Z0-9]|{NAMED_KEYS})|{NAMED_KEYS}|Ctrl|Alt|Shift)")

INLINE = re.compile(
    r"`(?P<code>[^`]+)`"
    r"|\[(?P<label>(?:[^][`]|`[^`]*`)+)\]\((?P<target>[^)\s]+)\)"
    r"|\*\*(?P<caption>.+?)\*\*"
    r"|\*(?P<stress>[^*\s][^*]*)\*"
)


@dataclass
class Block:
    """A piece of a page. `kind` is heading, paragraph, bullets, steps, table, fence, picture or comment."""

    kind: str
    text: str = ""  # of a heading, a paragraph, a fence or a comment; the address of a picture
    level: int = 0  # of a heading; the line of a fence, from 1
    word: str = ""  # the language of a fence; what a picture shows
    items: list = field(default_factory=list)  # of a list, each a list of blocks; the rows of a table, lists of cells


def slug(heading):
    """What a link to a heading calls it."""
    plain = re.sub(r"[*`]", "", heading).lower()
    return re.sub(r" ", "-", re.sub(r"[^\w\- ]", "", plain))


def cells(row):
    return [cell.strip() for cell in re.split(r"(?<!\\)\|", row.strip().strip("|"))]


def parse(text, first=1):
    """The blocks of a text whose first line is line `first` of its page."""
    lines = text.split("\n")
    blocks = []
    at = 0
    while at < len(lines):
        line = lines[at]
        begun = at
        if not line.strip():
            at += 1
        elif line.startswith("```"):
            at = next(i for i in range(at + 1, len(lines)) if lines[i].startswith("```"))
            blocks.append(Block("fence", "\n".join(lines[begun + 1 : at]) + "\n", first + begun, line[3:].strip()))
            at += 1
        elif line.startswith("<!--"):
            blocks.append(Block("comment", line[4 : line.index("-->")].strip()))
            at += 1
        elif found := re.match(r"(#+) (.*)", line):
            blocks.append(Block("heading", found[2], len(found[1])))
            at += 1
        elif found := re.fullmatch(r"!\[(.*)\]\((.*)\)", line):
            blocks.append(Block("picture", found[2], word=found[1]))
            at += 1
        elif line.startswith("|"):
            while at < len(lines) and lines[at].startswith("|"):
                at += 1
            rows = [cells(row) for row in lines[begun:at]]
            blocks.append(Block("table", items=[rows[0], *rows[2:]]))
        elif found := re.match(r"(\* |[0-9]+\. )", line):
            item = re.compile(r"\* " if line.startswith("*") else r"[0-9]+\. ")
            block = Block("bullets" if line.startswith("*") else "steps")
            while at < len(lines) and (mark := item.match(lines[at])):
                indent = mark.end()
                inner = [lines[at][indent:]]
                begun = at
                at += 1
                while at < len(lines) and (lines[at].startswith(" " * indent) or not lines[at].strip()):
                    inner.append(lines[at][indent:])
                    at += 1
                block.items.append(parse("\n".join(inner), first + begun))
            blocks.append(block)
        else:
            while at < len(lines) and lines[at].strip() and not re.match(r"```|#|\||!\[|\* |[0-9]+\. |<!--", lines[at]):
                at += 1
            if at == begun:
                raise ValueError(f"line {first + at} is none of the forms that a page may have: {line}")
            blocks.append(Block("paragraph", " ".join(one.strip() for one in lines[begun:at])))
    return blocks


def walk(blocks):
    """All blocks, those inside of lists too."""
    for block in blocks:
        yield block
        if block.kind in ("bullets", "steps"):
            for item in block.items:
                yield from walk(item)


def texts(blocks):
    """Everything that is read as a text."""
    for block in walk(blocks):
        if block.kind in ("heading", "paragraph"):
            yield block.text
        elif block.kind == "table":
            for row in block.items:
                yield from row


class Page:
    def __init__(self, path):
        self.path = path
        self.name = path.stem
        self.blocks = parse(path.read_text(encoding="utf-8"))
        if not self.blocks or self.blocks[0].level != 1:
            raise ValueError(f"{path} does not begin with its title")
        self.title = self.blocks[0].text

    def fences(self):
        return [block for block in walk(self.blocks) if block.kind == "fence"]

    def pictures(self):
        return [block for block in walk(self.blocks) if block.kind == "picture"]

    def headings(self):
        return [block for block in self.blocks if block.kind == "heading"]

    def links(self):
        return [found["target"] for text in texts(self.blocks) for found in INLINE.finditer(text) if found["target"]]


def pages():
    """The pages, in the order of the index, without the index itself."""
    return [Page(GUIDE / target) for target in Page(INDEX).links() if "#" not in target]
