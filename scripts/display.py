# SPDX-License-Identifier: GPL-3.0-or-later
"""A display of its own with a window manager, and folders of its own, for the built program.

    with Stage(program, screenshots) as stage:
        editor = stage.start("piece.csd")
        window = editor.window()
        window.keys("ctrl+1")
        stage.until(lambda: wav.exists(), "the sound file")

Everything waits for what must come, up to a limit, and fails with what it waited for. Nothing waits for a fixed time.
"""

import array
import os
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import wave
from pathlib import Path

TITLE = "Zelvane"
DISPLAY_SIZE = "1280x900x24"
# Seconds, for what takes one or two where nothing else runs: nothing but a failure waits so long.
PATIENCE = 120.0
SERVANT_PATIENCE = 5.0
DISPLAY_ATTEMPTS = 3


class Failure(AssertionError):
    pass


def check(condition, what):
    if not condition:
        raise Failure(what)


def equal(found, expected, what):
    if found != expected:
        raise Failure(f"{what}: found {found!r}, expected {expected!r}")


def end(servant):
    """Ends a process that was started here. A display server that gets its signal just before it goes to sleep
    never hears it: after a time it is killed."""
    servant.terminate()
    try:
        servant.wait(SERVANT_PATIENCE)
    except subprocess.TimeoutExpired:
        servant.kill()
        servant.wait()


def read_line(pipe):
    """The line that comes from a pipe; empty when the pipe ends without one, or none comes in time."""
    limit = time.monotonic() + PATIENCE
    line = b""
    while not line.endswith(b"\n"):
        if not select.select([pipe], [], [], max(0.0, limit - time.monotonic()))[0]:
            return ""
        piece = os.read(pipe, 64)
        if not piece:
            return ""
        line += piece
    return line.decode().strip()


class Window:
    """A window of the display, by its number."""

    def __init__(self, stage, number):
        self.stage = stage
        self.number = number

    def _run(self, *command):
        return self.stage.output(*command)

    def title(self):
        return self._run("xdotool", "getwindowname", self.number).strip()

    def geometry(self):
        """(x, y, width, height) of the inside, on the screen."""
        lines = self._run("xdotool", "getwindowgeometry", "--shell", self.number).split()
        values = dict(line.split("=") for line in lines)
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def state(self):
        """The words of the window manager's state, such as MAXIMIZED_VERT or HIDDEN."""
        text = self._run("xprop", "-id", self.number, "_NET_WM_STATE")
        return set(re.findall(r"_NET_WM_STATE_(\w+)", text))

    def is_active(self):
        return self.stage.active_window() == self.number

    def activate(self):
        if self.is_active():
            return  # a window manager that is told so again lets go of the focus for a moment, and a key is lost
        self._run("xdotool", "windowactivate", self.number)
        self.stage.until(self.is_active, f"window {self.title()!r} is active")

    def keys(self, *keys):
        """Presses keys as a person does: through the display, to the window that has the focus."""
        self.activate()
        self._run("xdotool", "key", "--clearmodifiers", *keys)

    def type(self, text):
        self.activate()
        self._run("xdotool", "type", "--clearmodifiers", "--", text)

    def click(self, x, y):
        self.activate()
        self._run("xdotool", "mousemove", "--window", self.number, str(x), str(y), "click", "1")

    def move(self, x, y):
        self._run("xdotool", "windowmove", self.number, str(x), str(y))

    def resize(self, width, height):
        self._run("xdotool", "windowsize", self.number, str(width), str(height))

    def ask_to_close(self):
        """What the cross in the title bar does."""
        self._run("wmctrl", "-i", "-c", self.number) if shutil.which("wmctrl") else self.keys("alt+F4")

    def screenshot(self, name):
        return self.stage.screenshot(name, self.number)


class Process:
    """A started process of the program."""

    def __init__(self, stage, arguments, environment):
        self.stage = stage
        self.log = stage.folder / f"output-{len(stage.processes)}.txt"
        self.process = subprocess.Popen(
            [stage.program, *map(str, arguments)],
            env=environment,
            cwd=stage.home,
            stdin=subprocess.DEVNULL,
            stdout=self.log.open("wb"),
            stderr=subprocess.STDOUT,
        )

    @property
    def pid(self):
        return self.process.pid

    def runs(self):
        return self.process.poll() is None

    def output(self):
        return self.log.read_text(errors="replace")

    def window(self, title=None, patience=PATIENCE, beside=None):
        """The process's window whose title passes; any visible one with the application's title without `title`.
        `beside` is a window that is not meant."""
        accept = title if callable(title) else (lambda text: text == title) if title else (lambda text: TITLE in text)
        found = []

        def look():
            check(self.runs(), f"the program has ended with {self.process.poll()}: {self.output()}")
            for number in self.stage.windows_of(self.pid):
                if (not beside or number != beside.number) and accept(Window(self.stage, number).title()):
                    found.append(number)
                    return True
            return False

        self.stage.until(look, lambda: f"a window titled {title!r}; there are {self.titles()}", patience)
        return Window(self.stage, found[-1])

    def dialog(self, window):
        """The window that stands over this one."""
        return self.window(lambda title: True, beside=window)

    def at_rest(self):
        """Waits until the program has nothing more to do: a new instance shows no other sign that its start is over."""

        def runs():
            check(self.runs(), f"the program has ended with {self.process.poll()}: {self.output()}")

        self.stage.rest_of(self.pid, runs)

    def titles(self):
        return [Window(self.stage, number).title() for number in self.stage.windows_of(self.pid)]

    def ended(self, patience=PATIENCE):
        """Waits for the end and gives the exit code."""
        self.stage.until(lambda: not self.runs(), f"the end of process {self.pid}", patience)
        return self.process.returncode

    def close(self, window):
        """Closes the editor as a person does, and waits for its end."""
        window.keys("alt+F4")
        equal(self.ended(), 0, "exit code")


class Stage:
    def __init__(self, program, screenshots, size=DISPLAY_SIZE):
        self.program = str(Path(program).resolve())
        self.screenshots = Path(screenshots)
        self.screenshots.mkdir(parents=True, exist_ok=True)
        self.size = size
        self.processes = []
        self.servants = []

    def __enter__(self):
        # A short place: the name of a socket may have 107 characters.
        self.folder = Path(tempfile.mkdtemp(prefix="zelvane-e2e-"))
        self.home = self._make("home")
        runtime = self._make("run")
        runtime.chmod(0o700)
        self.environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(self.home),
            "LC_ALL": "C.UTF-8",
            "TZ": "UTC",
            "XDG_RUNTIME_DIR": str(runtime),
            "XDG_CONFIG_HOME": str(self._make("config")),
            "XDG_DATA_HOME": str(self._make("data")),
            "XDG_STATE_HOME": str(self._make("state")),
            "XDG_CACHE_HOME": str(self._make("cache")),
            "QT_QPA_PLATFORM": "xcb",
            "QT_ACCESSIBILITY": "0",
            "SDL_AUDIODRIVER": "dummy",
            "DBUS_SESSION_BUS_ADDRESS": "disabled:",
            "MAGICK_THREAD_LIMIT": "1",  # its threads wait for each other without sleep where others have the processors
        }
        for name in ("ASAN_OPTIONS", "LD_LIBRARY_PATH"):
            if name in os.environ:
                self.environment[name] = os.environ[name]
        self.store = self.folder / "config" / "zelvane" / "settings"
        try:
            self._open_display()
        except BaseException:
            self.__exit__(*sys.exc_info())
            raise
        return self

    def __exit__(self, kind, error, trace):
        if kind is not None:
            for process in self.processes:
                print(f"output of {process.pid}:\n{process.output()}", file=sys.stderr)
            if "DISPLAY" in self.environment:
                try:
                    print("see", self.screenshot("failure-" + Path(sys.argv[0]).stem), file=sys.stderr)
                except (Failure, subprocess.SubprocessError, OSError):
                    pass
        for process in self.processes:
            if process.runs():
                process.process.kill()
                process.process.wait()
        self._end_left()
        for servant in reversed(self.servants):
            end(servant)
        shutil.rmtree(self.folder, ignore_errors=True)

    def _end_left(self):
        """Ends what the program has started and a scenario that failed has left: a console, and what runs in it."""
        servants = {servant.pid for servant in self.servants}
        for entry in Path("/proc").iterdir():
            if entry.name.isdigit() and int(entry.name) not in servants | {os.getpid()}:
                try:
                    if f"XDG_RUNTIME_DIR={self.folder}/".encode() in (entry / "environ").read_bytes():
                        os.kill(int(entry.name), signal.SIGKILL)
                except OSError:
                    continue

    def _make(self, name):
        path = self.folder / name
        path.mkdir(parents=True)
        return path

    def _open_display(self):
        """One that has not come in time is given up: a server or a window manager may hang at its start."""
        for attempt in range(DISPLAY_ATTEMPTS):
            try:
                self._start_display()
                return
            except (Failure, subprocess.TimeoutExpired):
                if attempt == DISPLAY_ATTEMPTS - 1:
                    raise
                self._end_display()

    def _end_display(self):
        for servant in reversed(self.servants):
            servant.kill()
            servant.wait()
        self.servants.clear()
        self.environment.pop("DISPLAY", None)

    def _start_display(self):
        self.frames = self.folder / "frames"  # what is on the screen, as a file
        self.frames.mkdir(exist_ok=True)
        read, write = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", self.size, "-nolisten", "tcp", "-noreset",
             "-fbdir", str(self.frames),
             "-r"],  # no repeated keys: the tool that presses one may have to wait before it lets go
            pass_fds=[write],
            stdin=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        self.servants.append(server)
        os.close(write)
        with os.fdopen(read, "rb") as pipe:
            number = read_line(pipe.fileno())
        check(number, "the display server has not started")
        self.environment["DISPLAY"] = ":" + number
        # The first key that a new display gets changes its keyboard, and a window manager that takes its keys anew on
        # that loses the next one: so it comes before the window manager.
        self.output("xdotool", "key", "Shift_L")
        # The window manager's own keys, and Super+M to maximize.
        keys = '<keybind key="W-m"><action name="ToggleMaximize"/></keybind></keyboard>'
        config = self.folder / "openbox.xml"
        config.write_text(Path("/etc/xdg/openbox/rc.xml").read_text().replace("</keyboard>", keys))
        # It takes no notice of a window that is shown while it starts: what is started comes behind this.
        manages = self.folder / "manages"
        manages.unlink(missing_ok=True)
        self.servants.append(
            subprocess.Popen(
                ["openbox", "--sm-disable", "--config-file", str(config), "--startup", f"touch {manages}"],
                env=self.environment,
                stdin=subprocess.DEVNULL,
                stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
            )
        )
        self.until(manages.exists, "the window manager", PATIENCE / DISPLAY_ATTEMPTS)

    def lose_display(self):
        """The display goes with all windows, as at a crash of its server, and another comes."""
        self._end_display()
        for process in self.processes:
            process.ended()
        self._open_display()

    # Waiting

    def until(self, condition, what, patience=PATIENCE):
        limit = time.monotonic() + patience
        while not condition():
            if time.monotonic() > limit:
                raise Failure(f"has not come in {patience:g} s: {what() if callable(what) else what}")
            time.sleep(0.05)

    def rest_of(self, pid, runs=lambda: None):
        """Waits until a process has nothing more to do; `runs` fails when it has ended."""
        seen = []
        served = []
        begun = time.monotonic()

        def look():
            runs()
            seen.append(self._work_of(pid))
            served.append(all(self._work_of(servant.pid)[0] in "SZ" for servant in self.servants))
            # Where others have the processors a caret that blinks leaves no long rest.
            enough = 8 if time.monotonic() - begun < PATIENCE / 6 else 4
            # Asleep, and not only waiting for a processor that others have, or for a display that waits for one.
            return len(seen) > 8 and len(set(seen[-enough:])) == 1 and seen[-1][0] == "S" and all(served[-3:])

        self.until(look, f"rest in process {pid}")

    def _work_of(self, pid):
        """The state of a process, and what it has used of a processor."""
        with open(f"/proc/{pid}/stat", encoding="ascii") as file:
            fields = file.read().rsplit(")", 1)[1].split()
        return fields[0], fields[11], fields[12]

    # The display

    def output(self, *command):
        result = subprocess.run(
            list(map(str, command)), env=self.environment, capture_output=True, text=True, timeout=PATIENCE, check=False
        )
        return result.stdout

    def windows_of(self, pid):
        """The visible windows of a process, by the window manager's list."""
        listed = re.findall(r"0x[0-9a-f]+", self.output("xprop", "-root", "_NET_CLIENT_LIST"))
        owned = []
        for number in listed:
            owner = re.search(r"= (\d+)", self.output("xprop", "-id", number, "_NET_WM_PID"))
            if owner and int(owner.group(1)) == pid:
                owned.append(int(number, 16))
        return owned

    def active_window(self):
        text = self.output("xdotool", "getactivewindow").strip()
        return int(text) if text else 0

    def screenshot(self, name, window="root"):
        path = self.screenshots / f"{name}.png"
        path.unlink(missing_ok=True)
        self.until(lambda: self._import(window, path), f"the picture {name}")
        return path

    def _import(self, window, path):
        """False while the window is not on the screen, or where the picture has not come in time: the next try may."""
        try:
            result = subprocess.run(
                ["import", "-window", str(window), str(path)],
                env=self.environment,
                check=False,
                timeout=PATIENCE / 4,
                stderr=subprocess.DEVNULL,
            )
        except subprocess.TimeoutExpired:
            return False
        return result.returncode == 0 and path.exists() and path.stat().st_size > 0

    # The program

    def start(self, *arguments):
        process = Process(self, arguments, self.environment)
        self.processes.append(process)
        return process

    def write_store(self, text):
        """Writes the settings file as a person does with an editor."""
        self.store.parent.mkdir(parents=True, exist_ok=True)
        self.store.write_text(text, encoding="utf-8")

    def read_store(self):
        """Sections, lower case, with their keys, lower case; in order."""
        sections = {}
        current = {}
        if not self.store.exists():
            return sections
        for line in self.store.read_text(encoding="utf-8").splitlines():
            line = line.strip()
            if line.startswith("[") and line.endswith("]"):
                current = sections.setdefault(line[1:-1].lower(), {})
            elif "=" in line and not line.startswith((";", "#")):
                key, value = line.split("=", 1)
                current.setdefault(key.strip().lower(), value.strip())
        return sections

    def setting(self, key, section="options"):
        return self.read_store().get(section.lower(), {}).get(key.lower())


# Files


class Sound:
    """What is in a WAV file."""

    def __init__(self, path):
        with wave.open(str(path)) as file:
            self.rate = file.getframerate()
            self.frames = file.getnframes()
            data = file.readframes(self.frames)
            check(file.getsampwidth() == 2, "samples of 16 bits")
        samples = array.array("h", data)
        if sys.byteorder == "big":
            samples.byteswap()
        self.peak = max(map(abs, samples), default=0)

    @property
    def seconds(self):
        return self.frames / self.rate


def rendered(path):
    """Whether the file is there and whole: its header tells as much as there is."""
    try:
        size = path.stat().st_size
        with wave.open(str(path)) as file:
            body = file.getnframes() * file.getnchannels() * file.getsampwidth()
            return body > 0 and size >= body
    except (OSError, EOFError, wave.Error):
        return False
