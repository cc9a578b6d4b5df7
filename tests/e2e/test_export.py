# SPDX-License-Identifier: GPL-3.0-or-later
"""A coloured piece exported as HTML and RTF and printed, each by keys alone, and read back by programs that others wrote."""

import subprocess
from html.parser import HTMLParser

from support.pictures import pixels
from support.printserver import CREATE_JOB, PrintServer
from support.stage import WIDE, check, equal, main, options, settled

STORE = options(WIDE, CodeOutline=0, RelatedFiles=0)

TEXT, COMMENT, OPCODE, MACRO, LITERAL = "#000000", "#008000", "#0000ff", "#800080", "#008080"

# The stretches of the piece, with their colour and whether they are bold.
STRETCHES = [
    ("; caf\u00e9 \u03a9 \U0001f600 a<b & c\n", COMMENT, False),
    ("#define", MACRO, False),
    (" LOUD #10000#\n", TEXT, False),
    ("instr", OPCODE, True),
    (" 1\n  a1  ", TEXT, False),
    ("oscil", OPCODE, True),
    (" ", TEXT, False),
    ("$LOUD", MACRO, False),
    (", 440\n\t", TEXT, False),
    ("prints", OPCODE, True),
    (" ", TEXT, False),
    ('"a  tone"', LITERAL, False),
    ("\n", TEXT, False),
    ("endin", OPCODE, True),
    ("\n", TEXT, False),
]


class Page(HTMLParser):
    """The characters of a page with their colour and whether they are bold."""

    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.characters = []
        self.fonts = []
        self.bold = False
        self.body = False
        self.title = ""
        self.inside = ""

    def handle_starttag(self, tag, attributes):
        self.inside = tag
        if tag == "body":
            self.body = True
        elif tag == "font":
            self.fonts.append(dict(attributes).get("color"))
        elif tag == "b":
            self.bold = True
        elif tag == "br":
            self.characters.append(("\n", self.fonts[-1], self.bold))

    def handle_endtag(self, tag):
        self.inside = ""
        if tag == "font" and self.fonts:
            self.fonts.pop()
        elif tag == "b":
            self.bold = False
        elif tag == "body":
            self.body = False

    def handle_data(self, data):
        if self.inside == "title":
            self.title += data
        if self.body:
            for character in data.replace("\r", "").replace("\n", ""):
                self.characters.append((character, self.fonts[-1], self.bold))


def expected_characters():
    return [(character, colour, bold) for text, colour, bold in STRETCHES for character in text]


def opened(stage, printers="/no/printers"):
    stage.write_store(STORE)
    stage.environment["CUPS_SERVER"] = printers  # not those of this machine
    path = stage.home / "piece.orc"
    path.write_text("".join(text for text, _, _ in STRETCHES), encoding="utf-8", newline="\r\n")
    editor, window = settled(stage, path)
    stage.until(lambda: path.name in window.title(), "the piece in the window")
    editor.at_rest()
    return editor, window, path


def exported(stage, editor, window, row, path):
    """Chooses a row of the Export menu and takes the name that is offered."""
    window.keys("alt+f", "e")
    editor.at_rest()
    stage.screenshot(f"export-menu-{row}")
    window.keys(row)
    dialog = editor.dialog(window)
    stage.until(dialog.is_active, "the dialog in front")
    editor.at_rest()
    dialog.screenshot(f"export-dialog-{row}")
    equal(dialog.title(), f"Export to {path.suffix[1:].upper()} format", "the title of the dialog")
    dialog.keys("Return")
    stage.until(path.exists, f"{path}")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    editor.at_rest()
    return path.read_bytes()


def a_piece_is_exported(stage):
    editor, window, piece = opened(stage)
    before = piece.read_bytes()
    html = exported(stage, editor, window, "h", piece.with_suffix(".html"))
    page = Page()
    page.feed(html.decode("iso-8859-1"))
    page.close()
    equal(page.title, "piece.orc", "the title of the page")
    found = [(character, colour and colour.lower(), bold) for character, colour, bold in page.characters]
    equal(found, expected_characters(), "the characters of the page")

    # What the page names are the colours of the window.
    x, y, width, height = window.geometry()
    shown = {point for row in pixels(window.screenshot("export-piece"), f"{width}x{height}+0+0") for point in row}
    for colour in {colour for _, colour, _ in STRETCHES}:
        point = tuple(int(colour[i : i + 2], 16) for i in (1, 3, 5))
        check(point in shown, f"the colour {colour} in the window")

    rtf = exported(stage, editor, window, "r", piece.with_suffix(".rtf"))
    check(rtf.startswith(b"{\\rtf1"), "an RTF file")
    read = subprocess.run(
        ["unrtf", "--quiet", "--html", str(piece.with_suffix(".rtf"))], capture_output=True, check=True, text=True
    ).stdout
    for part in (
        '<font color="#008000">; caf&eacute; &Omega; ',
        'a&lt;b &amp; c',
        '<font color="#800080">#define</font>',
        '<b><font color="#0000ff">instr</font></b>',
        '<font color="#008080">&quot;a  tone&quot;</font>',
    ):
        check(part in read.replace('"a  tone"', "&quot;a  tone&quot;"), f"{part} in what unrtf reads: {read}")

    equal(piece.read_bytes(), before, "the piece")
    check("*" not in window.title(), "the piece is not modified")
    editor.close(window)


def printed(stage, editor, window, target):
    """Prints to a file in the program's own folder, by keys; nothing else is changed in the dialog."""
    window.keys("ctrl+p")
    dialog = editor.dialog(window)
    stage.until(dialog.is_active, "the print dialog in front")
    editor.at_rest()
    dialog.screenshot(f"print-dialog-{target.stem}")
    dialog.keys("alt+f", "ctrl+a")
    # Not the path: while that is typed the dialog may list files that fit, and the list takes the Return for itself.
    dialog.type(target.name)
    dialog.keys("Return")
    stage.until(target.exists, f"{target}")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    editor.at_rest()
    return subprocess.run(["pdftotext", "-layout", str(target), "-"], capture_output=True, check=True, text=True).stdout


def a_piece_is_printed(stage):
    editor, window, piece = opened(stage)
    # Cancel is no failure.
    window.keys("ctrl+p")
    dialog = editor.dialog(window)
    stage.until(dialog.is_active, "the print dialog in front")
    dialog.keys("Escape")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")

    text = printed(stage, editor, window, stage.home / "x-whole.pdf")
    lines = [line.strip() for line in text.splitlines() if line.strip()]
    equal(
        [" ".join(line.split()) for line in lines[1:]],
        ["#define LOUD #10000#", "instr 1", "a1 oscil $LOUD, 440", 'prints "a tone"', "endin", "1"],
        "the page",
    )
    check(lines[0].startswith("; caf\u00e9 \u03a9"), f"the first line: {lines[0]}")
    picture = stage.screenshots / "print-page"
    subprocess.run(["pdftoppm", "-png", "-r", "150", "-singlefile", str(stage.home / "x-whole.pdf"), str(picture)], check=True)
    shown = {point for row in pixels(picture.with_suffix(".png"), "1240x800+0+0") for point in row}
    for colour in {colour for _, colour, _ in STRETCHES}:
        point = tuple(int(colour[i : i + 2], 16) for i in (1, 3, 5))
        check(point in shown, f"the colour {colour} on the page")

    # A selection is all that is printed then.
    window.keys("ctrl+Home", "Down", "Down", "shift+End")
    text = printed(stage, editor, window, stage.home / "x-selection.pdf")
    equal(text.split(), ["instr", "1", "1"], "the page of the selection")
    check("*" not in window.title(), "the piece is not modified")
    editor.close(window)


def a_printer_takes_the_piece(stage):
    """What a printer refuses is told, and nothing else; what it takes is printed."""
    with PrintServer() as server:
        editor, window, _ = opened(stage, server.address)

        def printed_on():
            window.keys("ctrl+p")
            dialog = editor.dialog(window)
            stage.until(dialog.is_active, "the print dialog in front")
            editor.at_rest()
            dialog.screenshot("print-dialog-printer")
            title = dialog.title()
            dialog.keys("Return")
            return title

        printed_on()
        stage.until(lambda: len(server.jobs) == 1, "the job at the printer")
        check(b"%PDF-" in server.jobs[0] or b"%!PS" in server.jobs[0], "the job holds pages")
        stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
        editor.at_rest()
        check(len(editor.titles()) == 1, "nothing is told of a job that was taken")

        server.accepting = False
        asked = server.asked.count(CREATE_JOB)
        title = printed_on()
        # Not before: the window of the progress may stand for a moment.
        stage.until(lambda: server.asked.count(CREATE_JOB) > asked, "the request for a job")
        editor.at_rest()
        box = editor.window(lambda other: other != title, beside=window)
        stage.until(box.is_active, "the report in front")
        box.screenshot("print-refused")
        box.keys("Escape")
        stage.until(lambda: len(editor.titles()) == 1, "the end of the report")
        equal(len(server.jobs), 1, "jobs at the printer")
        editor.close(window)


main(a_piece_is_exported, a_piece_is_printed, a_printer_takes_the_piece)
