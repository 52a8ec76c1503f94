"""Somebody at a screen: looks at the program's windows, and has a mouse and a keyboard.

The mouse and the keys are the display's (xdotool); what is to be seen is read by a program
beside (window_probe.cpp). What is drawn has no window of its own: it is found by its name in
the layout. All of it runs under Wine, on a display of its own."""

import os
import shutil
import subprocess
import tempfile
import threading
import time
from pathlib import Path

CHECKOUT = Path(__file__).resolve().parents[3]
PROGRAMS = Path(os.environ.get("TARNVALE_PROGRAMS", CHECKOUT / "build/windows-x64/bin"))
UNDER_WINE = CHECKOUT / "scripts/under-wine"
PATIENCE_S = 25
DPI = int(os.environ.get("TARNVALE_DPI", 96))  # the display's


def under_wine(*command, **options):
    return subprocess.Popen([str(UNDER_WINE), *map(str, command)], **options)


def run_to_end(*command):
    """The exit status of a Windows program, and what it printed."""
    done = subprocess.run([str(UNDER_WINE), *map(str, command)], stdout=subprocess.PIPE, timeout=60)
    return done.returncode, done.stdout.decode(errors="replace")


def told(path):
    """A path in the program's own language."""
    return "Z:" + str(path).replace("/", "\\")


class Seen:
    """A window, or a field in one."""

    def __init__(self, fields):
        self.handle, self.owner, self.kind, self.text, flags, *place = fields
        self.left, self.top, self.width, self.height = map(int, place)
        for flag in ("visible", "enabled", "minimised", "foreground", "focus", "menu"):
            setattr(self, flag, flag in flags.split())
        self.rows, self.selected = [], []

    @property
    def is_up(self):
        return self.visible and not self.minimised


class Person:
    def __init__(self):
        self.probe = under_wine(PROGRAMS / "window_probe.exe", stdin=subprocess.PIPE,
                                stdout=subprocess.PIPE)
        self.layout = {}
        for _, window, name, kind, *place in self._ask("layout"):
            self.layout.setdefault((window, name.strip()), []).append((kind, tuple(map(int, place))))

    def leave(self):
        self.probe.kill()
        self.probe.wait()

    # What there is to see.

    def _ask(self, question):
        self.probe.stdin.write(question.encode() + b"\n")
        self.probe.stdin.flush()
        # A probe that hangs is ended, and with it the reading below.
        limit = threading.Timer(60, self.probe.kill)
        limit.start()
        try:
            answers = []
            while True:
                line = self.probe.stdout.readline()
                if not line:
                    raise RuntimeError(f"the probe has ended, or doesn't answer: {question}")
                line = line.decode(errors="replace").rstrip("\r\n")
                if line == ".":
                    return answers
                answers.append(line.split("\t"))
        finally:
            limit.cancel()

    def look(self):
        self.windows, self.fields, lists = [], [], {}
        for what, *fields in self._ask("windows"):
            if what == "window":
                self.windows.append(Seen(fields))
            elif what == "child":
                self.fields.append(Seen(fields))
                lists[fields[0]] = self.fields[-1]
            else:
                handle, selected, text = fields
                lists[handle].rows.append(text)
                if selected:
                    lists[handle].selected.append(text)

    def window(self, title, kind="TarnvaleWindow"):
        """The one on top with this title; None where there isn't any."""
        self.look()
        return next((w for w in self.windows if (w.text, w.kind) == (title, kind)), None)

    def is_up(self, title):
        window = self.window(title)
        return window is not None and window.is_up

    def box(self):
        """A box or a dialog of the system's that can be used."""
        self.look()
        return next((w for w in self.windows if w.kind == "#32770" and w.visible and w.enabled),
                    None)

    def text_of(self, window):
        """What a box says."""
        return next((f.text for f in self.fields if f.owner == window.handle and
                     f.kind == "Static" and f.text), "")

    def place(self, title, name, nth=0):
        """Where a control's place is on the screen."""
        return self._place_in(self.window(title), title, name, nth)

    def _place_in(self, window, title, name, nth):
        # A label before a field often has its name.
        what = [place for kind, place in self.layout[title, name] if kind != "label"]
        left, top, width, height = (pixels * DPI // 96 for pixels in what[nth])
        return window.left + left, window.top + top, width, height

    def _fields_at(self, window, title, name, nth):
        left, top, width, _ = self._place_in(window, title, name, nth)
        return [f for f in self.fields if f.owner == window.handle and
                left - 2 <= f.left <= left + 4 and top - 2 <= f.top <= top + 12 * DPI // 96 and
                abs(f.width - width) <= 30]

    def field(self, title, name, nth=0):
        """The native window of a control, by its place."""
        near = self.wait_for(f"a field of {title} where {name} is", lambda: self._fields_at(
            self.window(title), title, name, nth), 5)
        return next((f for f in near if f.visible), near[0])

    def shown_fields(self, title):
        """The names of all native fields that are to be seen."""
        window = self.window(title)
        return {name for (owner, name), controls in self.layout.items() if owner == title
                for nth, (kind, _) in enumerate(c for c in controls if c[0] != "label")
                if kind in ("field", "list", "files", "tree", "combo") and
                any(f.visible for f in self._fields_at(window, title, name, nth))}

    def visible_edits(self, title):
        window = self.window(title)
        return [f for f in self.fields
                if f.owner == window.handle and f.kind == "Edit" and f.visible]

    def focused(self):
        self.look()
        return next((f for f in self.fields + self.windows if f.focus), None)

    # Waiting.

    @staticmethod
    def wait_for(what, condition, patience_s=PATIENCE_S):
        end = time.monotonic() + patience_s
        while True:
            result = condition()
            if result:
                return result
            if time.monotonic() > end:
                raise AssertionError("waited in vain for " + what)
            time.sleep(0.05)

    def wait_until_up(self, title):
        return self.wait_for(title + " on the screen", lambda: self.is_up(title))

    def wait_until_active(self, title):
        def is_active():
            window = self.window(title)
            return window is not None and window.is_up and window.foreground
        return self.wait_for(title + " to be the active window", is_active)

    def wait_for_box(self, title=None):
        def shown():
            box = self.box()
            return box if box and (title is None or box.text == title) else None
        return self.wait_for("a box" if title is None else f"the box {title}", shown)

    def wait_until_foreground(self, window):
        def is_foreground():
            self.look()
            return any(w.handle == window.handle and w.foreground for w in self.windows)
        self.wait_for(f"{window.text} to have the keys", is_foreground)

    def wait_until_gone(self, window):
        def gone():
            self.look()
            return not any(w.handle == window.handle and w.visible for w in self.windows)
        self.wait_for(f"{window.text} to be gone", gone)

    # What a person does.

    @staticmethod
    def hand(*what):
        return subprocess.run(["xdotool", *map(str, what)], check=True,
                              stdout=subprocess.PIPE).stdout.decode()

    def screen_height(self):
        return int(self.hand("getdisplaygeometry").split()[1])

    def press(self, *keys):
        self.hand("key", "--delay", 20, *keys)

    def type(self, text):
        self.hand("type", "--delay", 8, text)

    def click_at(self, x, y, button=1, repeat=1):
        self.hand("mousemove", x, y, "click", "--repeat", repeat, "--delay", 60, button)

    def click(self, title, name, nth=0, repeat=1):
        left, top, width, height = self.place(title, name, nth)
        # Of check boxes and links only the mark and the words take clicks.
        self.click_at(left + min(width // 2, 12), top + height // 2, repeat=repeat)

    def click_in(self, field, repeat=1):
        self.click_at(field.left + min(field.width // 2, 12), field.top + min(field.height // 2, 8),
                      repeat=repeat)

    def write(self, title, name, text, nth=0):
        """Into a field, in place of what is there."""
        self.click_in(self.field(title, name, nth))
        self.wait_for(f"the focus in {name}", lambda: self.field(title, name, nth).focus)
        self.press("Home", "shift+End")
        self.type(text)
        self.wait_for(f"{text} in {name}", lambda: self.field(title, name, nth).text == text)

    def answer(self, box, key):
        """A box is answered by a key; it may not have the focus yet."""
        self.wait_until_foreground(box)
        self.press(key)
        self.wait_until_gone(box)

    @staticmethod
    def find_tray():
        """Wine shows the notification area as a window of its own, whose first icon is ours."""
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Wine System Tray$"],
                               stdout=subprocess.PIPE).stdout.decode().split()
        return found[-1] if found else None

    def click_icon(self, button=1, repeat=1):
        area = self.wait_for("the icon", self.find_tray)
        self.hand("mousemove", "--window", area, 10, 10, "click", "--repeat", repeat, "--delay", 60,
                  button)

    def activate(self, title):
        """As a task bar does it; false as long as it isn't the active one."""
        window = self.window(title)
        if window is None or not window.is_up:
            return False
        if not window.foreground:
            self.hand("search", "--onlyvisible", "--name", f"^{title}$", "windowactivate")
        return self.window(title).foreground

    def menus(self):
        """Those that are open, the one that was opened first in front."""
        self.look()
        return [w for w in self.windows if w.kind == "#32768" and w.visible][::-1]

    def choose_in_icon_menu(self, *rows):
        """By the mouse, as the icon's keys belong to another program. A row is a share of its
        menu's height."""
        def is_open():
            if not self.menus():
                self.click_icon(button=3)
                time.sleep(0.3)
            return self.menus()
        self.wait_for("the icon's menu", is_open)
        known = set()
        for share in rows:
            menu = self.wait_for("the menu of the row", lambda: next(
                (m for m in self.menus() if m.handle not in known), None))
            known.add(menu.handle)
            self.click_at(menu.left + 30, menu.top + int(menu.height * share))

    def bring_up(self, active=True):
        """By the icon, as the program begins behind it; in its first second it takes its window
        away again."""
        self.wait_for("the icon", self.find_tray)

        def is_up():
            if not self.is_up("Tarnvale"):
                self.click_icon(repeat=2)
                time.sleep(0.3)
            return self.is_up("Tarnvale")
        self.wait_for("the window", is_up)
        if active:
            self.wait_until_active("Tarnvale")

    def choose_below(self, title, name, folder, is_chosen):
        """A folder below the one that a tree is open at. The tree takes a letter that comes late
        for the first one of another name, so what isn't chosen then is typed again."""
        def focus():
            tree = self.field(title, name)
            # Below its last row, which changes nothing of what is chosen.
            self.click_at(tree.left + tree.width - 30, tree.top + tree.height - 30)
            self.wait_for(f"the focus in {name}", lambda: self.field(title, name).focus)

        focus()
        self.press("Right")
        for more_tries in (True, True, False):
            self.type(folder)
            try:
                return self.wait_for(f"{folder} to be chosen", is_chosen,
                                     3 if more_tries else PATIENCE_S)
            except AssertionError:
                if not more_tries:
                    raise
            focus()


class Installation:
    """The program with its companions, a data folder, documents and a place for copies."""

    def __init__(self, settings=None, folder=None):
        self.folder = folder or Path(tempfile.mkdtemp(prefix="tarnvale-"))
        self.folder.mkdir(exist_ok=True)
        for name in ("Tarnvale.exe", "Quit.exe", "U3-Data.exe"):
            shutil.copy(PROGRAMS / name, self.folder / name)
        for name in ("Data", "Documents/Letters", "Storage", "Archives"):
            (self.folder / name).mkdir(parents=True)
        (self.folder / "Documents/Notes.txt").write_text("Things to remember.\n")
        (self.folder / "Documents/Plan.txt").write_text("First things first.\n")
        (self.folder / "Documents/Letters/Ann.txt").write_text("Dear Ann,\n" * 5000)
        (self.folder / "Data.txt").write_text(f'"{told(self.folder / "Data")}"\r\n')
        if settings is not None:
            (self.folder / "Data/Tarnvale.ini").write_bytes(
                settings.replace("\n", "\r\n").encode())
        self.process = None

    def start(self, program=None):
        """By `program` when that isn't its native path."""
        self.process = under_wine(program or self.folder / "Tarnvale.exe",
                                  stderr=subprocess.DEVNULL)
        return self

    def runs(self):
        return self.process is not None and self.process.poll() is None

    def is_helped(self):
        """U3-Data.exe, which the program starts and doesn't wait for, is still at work."""
        helper = told(self.folder / "U3-Data.exe").encode()
        for process in Path("/proc").glob("[0-9]*/cmdline"):
            try:
                if helper in process.read_bytes():
                    return True
            except OSError:
                pass  # it has ended
        return False

    def settings(self):
        path = self.folder / "Data/Tarnvale.ini"
        return path.read_text() if path.exists() else ""

    def remove(self):
        if self.runs():
            self.process.kill()
            self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)
