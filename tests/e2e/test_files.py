# SPDX-License-Identifier: GPL-3.0-or-later
"""The document's file renamed, copied, moved, deleted and backed up from the menus, by keys, and the
sound that plays renamed."""

import os
import wave
from pathlib import Path

from support.stage import NARROW, check, equal, main, options, settled

STORE = options(NARROW, Startup=2)

ORCHESTRA = b"sr = 44100\r\ninstr 1\r\na1 oscil 10000, 440, 1\r\nout a1\r\nendin\r\n"


def titled(stage, editor, window, path, mark=""):
    stage.until(lambda: f"{path}{mark} (" in window.title(), lambda: f"{path}{mark} in the title; it is {window.title()}")
    editor.at_rest()


def asked(stage, editor, window, picture, title="Zelvane"):
    """The dialog of this title that has come up over the window."""
    dialog = editor.window(title, beside=window)
    stage.until(dialog.is_active, "the dialog in front")
    editor.at_rest()
    dialog.screenshot(picture)
    return dialog


def opened(stage, name):
    """An editor with a document of this name in a folder of its own."""
    stage.write_store(STORE)
    folder = stage.home / "my piece"
    folder.mkdir(exist_ok=True)
    path = folder / name
    path.write_bytes(ORCHESTRA)
    path.chmod(0o640)
    editor, window = settled(stage, path)
    titled(stage, editor, window, path)
    return editor, window, path


def work_on_the_file(stage):
    editor, window, path = opened(stage, "a.orc")
    window.keys("alt+f", "h")
    editor.at_rest()
    stage.screenshot("files-menu")
    window.keys("r")
    dialog = asked(stage, editor, window, "files-rename", "Rename")
    dialog.keys("ctrl+a")
    dialog.type("b.orc")
    dialog.keys("Return")
    renamed = path.with_name("b.orc")
    titled(stage, editor, window, renamed)
    check(not path.exists(), "the old name is gone")
    equal(renamed.read_bytes(), ORCHESTRA, "the renamed file")

    # A copy over another file asks first, and the copy is opened when the user wants it.
    target = stage.home / "copies"
    target.mkdir()
    copy = target / "c.orc"
    copy.write_bytes(b"old")
    window.keys("alt+f", "h", "c")
    dialog = asked(stage, editor, window, "files-copy-to", "Copy to")
    dialog.keys("ctrl+a")
    dialog.type(str(copy))
    dialog.keys("Return")
    question = asked(stage, editor, window, "files-replace")
    question.keys("alt+y")
    stage.until(lambda: copy.read_bytes() == ORCHESTRA, "the copy")
    stage.until(lambda: question.number not in stage.windows_of(editor.pid), "the end of the question")
    question = asked(stage, editor, window, "files-open-copy")
    question.keys("alt+y")
    titled(stage, editor, window, copy)
    equal(copy.stat().st_mode & 0o777, 0o640, "the rights of the copy")
    equal(stage.setting("CopyTo"), str(target), "the folder that is remembered")

    # A changed text goes on in the new place.
    window.type("; new")
    titled(stage, editor, window, copy, "*")
    moved = renamed.with_name("d.orc")
    window.keys("alt+f", "h", "m")
    dialog = asked(stage, editor, window, "files-move-to", "Move to")
    dialog.keys("ctrl+a")
    dialog.type(str(moved))
    dialog.keys("Return")
    question = asked(stage, editor, window, "files-save-moved")
    question.keys("Return")
    titled(stage, editor, window, moved)
    equal(moved.read_bytes(), b"; new" + ORCHESTRA, "the moved file")
    check(not copy.exists(), "nothing stands in the old place")

    window.keys("alt+f", "h", "p")
    box = asked(stage, editor, window, "files-properties", "Zelvane - d.orc Properties")
    box.keys("Escape")
    editor.at_rest()
    editor.close(window)


def deleted_file_is_in_the_trash(stage):
    editor, window, path = opened(stage, "gone.orc")
    window.keys("alt+f", "h", "d")
    question = asked(stage, editor, window, "files-delete")
    question.keys("Escape")
    editor.at_rest()
    check(path.exists(), "a Cancel deletes nothing")
    window.keys("alt+f", "h", "d")
    asked(stage, editor, window, "files-delete").keys("Return")
    stage.until(lambda: "- Untitled (" in window.title(), "a new document")
    check(not path.exists(), "the file is gone")
    trash = stage.folder / "data" / "Trash"
    equal((trash / "files" / "gone.orc").read_bytes(), ORCHESTRA, "the file in the trash")
    note = (trash / "info" / "gone.orc.trashinfo").read_text().splitlines()
    equal(note[:2], ["[Trash Info]", "Path=" + str(path).replace(" ", "%20")], "its note")
    editor.close(window)


def back_up_and_clear_away(stage):
    temporary = stage.folder / "tmp"
    temporary.mkdir()
    (temporary / "csound1.tmp").write_bytes(b"left")
    (temporary / "mine").write_bytes(b"mine")
    stage.environment["TMPDIR"] = str(temporary)
    editor, window, path = opened(stage, "song.orc")
    window.keys("alt+f", "b")
    asked(stage, editor, window, "files-backup", "Create Backup").keys("alt+y")
    told = asked(stage, editor, window, "files-backup-made")
    found = list(path.parent.glob("song(*).orc"))
    equal(len(found), 1, "the number of backups")
    equal(found[0].read_bytes(), ORCHESTRA, "the backup")
    equal(found[0].stat().st_mode & 0o777, 0o440, "the rights of the backup")
    told.keys("Return")
    editor.at_rest()

    window.keys("alt+t", "t")
    asked(stage, editor, window, "files-temporary", "Delete Csound Temporary Files").keys("alt+y")
    stage.until(lambda: [file.name for file in temporary.glob("[!.]*")] == ["mine"], "the temporary file is gone")
    editor.at_rest()
    editor.close(window)


def rename_the_sound_that_plays(stage):
    editor, window, path = opened(stage, "song.orc")
    sound = path.with_name("song.wav")
    with wave.open(str(sound), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(8000)
        file.writeframes(bytes(2 * 8000 * 600))
    folder = Path(f"/proc/{editor.pid}/fd")

    def is_open():
        return any(os.path.realpath(number) == str(sound) for number in folder.iterdir())

    window.keys("alt+l", "p")
    stage.until(is_open, "the sound is open")
    window.keys("alt+l", "h", "r")
    # The clock of the player goes on under the dialog: there is no rest.
    dialog = editor.window("Rename", beside=window)
    stage.until(dialog.is_active, "the dialog in front")
    dialog.keys("ctrl+a")
    dialog.type("other.wav")
    dialog.keys("Return")
    stage.until(path.with_name("other.wav").exists, "the new name")
    check(not sound.exists() and not is_open(), "the sound is closed, and its old name gone")
    editor.at_rest()
    titled(stage, editor, window, path)
    editor.close(window)


main(rename_the_sound_that_plays, work_on_the_file, deleted_file_is_in_the_trash, back_up_and_clear_away)
