#!/usr/bin/env python3
"""Takes a picture of each window of the program for Windows, from the screen: pictures.py FOLDER
DRIVE, which is the root of U:. To be run by scripts/screenshots, on a display and with a Wine server of
its own, whose resolution is TARNVALE_DPI."""

import subprocess
import sys
import time
from pathlib import Path

from person import DPI, Installation, Person

MAIN = "Tarnvale"
TOOLS = [("Tarnvale Compressor", "compressor", "Tarnvale Compressor"),
         ("Tarnvale Splitter", "splitter", "Tarnvale Splitter"),
         ("Registry Backup Maker", "registry", "Registry Backup Maker"),
         ("User Data Applications", "user-data", "User Data Applications"),
         ("Server Upload & Download", "ftp-settings", "FTP Server Management")]
SCREENS = [("Schedule My Backup Process", "schedule"), ("Include Files In My Backup List", "list"),
           ("Storage Location For Backup", "storage"), ("General & Backup Settings", "general"),
           ("Advanced Auto Settings", "advanced"), ("Restore A Selected Backup", "restore")]
PANELS = {"ftp-settings": [("Upload A Compressed File", "ftp-upload"),
                           ("Download A Compressed File", "ftp-download")],
          "user-data": [("Windows XP Files", "user-data-windows-files")]}
PROGRESS_WIDTH = 304
FRAME = 20  # the window manager's, above a window
SETTINGS = """[When]
AlwaysAt=17:45
Each=???
Default=False
Days=62
[Log]
Save=True
[Destiny]
Dir=U:\\Ann\\Storage
Backup=
[Setup]
Wizard=1
[Entries]
0=U:\\Ann\\Documents\\Notes.txt
1=U:\\Ann\\Documents\\Letters\\*+++++*
"""


def settle():
    """Until the screen is the same twice."""
    def picture():
        return subprocess.run(["import", "-window", "root", "-depth", "8", "rgb:-"],
                              stdout=subprocess.PIPE, check=True).stdout
    before = picture()
    for _ in range(20):
        time.sleep(0.3)
        now = picture()
        if now == before:
            return
        before = now


def main(target, drive):
    person = Person()

    def keep(name, window, frame=FRAME):
        person.hand("mousemove", 0, person.screen_height() - 1)
        settle()
        area = f"{window.width + 2}x{window.height + frame + 2}+{window.left - 1}+{window.top - frame}"
        subprocess.run(["import", "-window", "root", "-crop", area, "+repage", "-strip", "+dither",
                        "-colors", "128", "-define", "png:compression-level=9",
                        f"PNG8:{target / name}.png"], check=True)

    first = Installation(None).start()
    person.wait_until_up("Form2")
    keep("splash", person.window("Form2"), 0)
    person.wait_until_active("End User Liscence Agreement")
    keep("agreement", person.window("End User Liscence Agreement"))
    first.remove()
    program = Installation(SETTINGS, drive / "Ann")
    (program.folder / "Data.txt").write_text('"U:\\Ann\\Data"\r\n')
    program.start("U:\\Ann\\Tarnvale.exe")
    person.wait_until_up("Form2")
    person.bring_up()
    person.wait_for("the end of the splash", lambda: not person.is_up("Form2"))
    for link, name in SCREENS:
        person.click(MAIN, link)
        keep(name, person.window(MAIN), FRAME + 20)
    person.click(MAIN, "Perform A Quick Backup")
    box = person.wait_for_box()
    keep("question", box)
    person.answer(box, "n")
    person.click(MAIN, SCREENS[0][0])
    for link, name, title in TOOLS:
        person.wait_for("the main window", lambda: person.activate(MAIN))
        person.click(MAIN, link)
        person.wait_until_active(title)
        keep(name, person.window(title))
        for panel, panel_name in PANELS.get(name, []):
            person.click(title, panel)
            keep(panel_name, person.window(title))
        person.press("alt+F4")
        person.wait_for(f"{title} to go", lambda: not person.is_up(title))
    person.wait_for("the main window", lambda: person.activate(MAIN))
    person.press("F10", "Down")
    person.wait_for("the menu", person.menus)
    keep("menu", person.window(MAIN), FRAME + 20)
    program.remove()
    keep_popups(person, drive, keep)
    person.leave()


def keep_popups(person, drive, keep):
    """A scheduled run is announced, and the announcement leads on to its progress."""
    soon = time.strftime("%H:%M", time.gmtime(time.time() + 65))
    program = Installation(SETTINGS.replace("17:45", soon), drive / "Ann")
    (program.folder / "Data.txt").write_text('"U:\\Ann\\Data"\r\n')
    program.start("U:\\Ann\\Tarnvale.exe")
    person.wait_until_up("Form2")
    person.wait_for("the end of the splash", lambda: not person.is_up("Form2"))

    def popup(width):
        person.look()
        return next((w for w in person.windows if w.kind == "TarnvaleWindow" and w.is_up and
                     w.width == width * DPI // 96), None)
    person.wait_for("the announcement", lambda: popup(288), 150)
    settle()
    announcement = popup(288)
    keep("alert", announcement, 0)
    person.click_at(announcement.left + 144 * DPI // 96, announcement.top + 102 * DPI // 96)
    person.wait_for("the progress", lambda: popup(PROGRESS_WIDTH))
    settle()
    keep("progress-popup", popup(PROGRESS_WIDTH), 0)
    program.remove()


main(Path(sys.argv[1]), Path(sys.argv[2]))
