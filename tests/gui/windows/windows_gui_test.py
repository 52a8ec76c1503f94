#!/usr/bin/env python3
"""The program for Windows as a person uses it: windows_gui_test.py SUITE, on a display with a
window manager and with a Wine server of its own (see CMakeLists.txt)."""

import os
import shutil
import subprocess
import time
import unittest
from pathlib import Path

from person import PROGRAMS, Installation, Person, run_to_end, told, under_wine

MAIN = "Tarnvale"
AGREEMENT = "End User Liscence Agreement"
NORMAL = "[When]\nEach=01:00\nDefault=True\n[Setup]\nWizard=1\n"

# What of a screen has a window of its own.
SCREENS = {
    "Include Files In My Backup List": {"Folders", "Files Of The Folder", "Extension",
                                        "Selected Files And Directories For Backup"},
    "Storage Location For Backup": {"Folders For Storage", "Selected Backup Folder Path"},
    "General & Backup Settings": set(),
    "Advanced Auto Settings": {"Automatic Compression Storage Directory", "Outgoing Mail Server",
                               "Send To"},
    "Restore A Selected Backup": {"Backup To Restore", "Folders For Restore",
                                  "Folders Of Backups", "Location For Restore"},
    "Schedule My Backup Process": {"Interval Between Backups, Hours And Minutes",
                                   "Time Of The Backup, Hours And Minutes"},
}


class Suite(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.person = Person()

    @classmethod
    def tearDownClass(cls):
        cls.person.leave()

    def setUp(self):
        self.installations = []

    def tearDown(self):
        for installation in self.installations:
            installation.remove()

    def install(self, settings=NORMAL):
        self.installations.append(Installation(settings))
        return self.installations[-1]

    def start(self, settings=NORMAL):
        program = self.install(settings).start()
        self.person.wait_until_up("Form2")
        return program

    def box_says(self, title, text):
        box = self.person.wait_for_box(title)
        self.assertEqual(self.person.text_of(box), text)
        return box

    def ends(self, program):
        self.person.wait_for("the end of the program", lambda: not program.runs())


class Start(Suite):
    def test_the_first_start_asks_for_the_agreement_and_is_normal_from_then_on(self):
        person = self.person
        began = time.monotonic()
        program = self.start(None)
        splash = person.window("Form2")
        self.assertEqual((splash.width, splash.height), (440, 260))
        person.wait_until_active(AGREEMENT)
        self.assertGreater(time.monotonic() - began, 6)
        self.assertFalse(person.is_up("Form2"))
        self.assertTrue(person.focused().text.startswith("Please read this"))
        main = person.window(MAIN)
        self.assertFalse(main is not None and main.is_up)

        # Declined with No, by button and by cross: it stays.
        person.click(AGREEMENT, "Decline")
        question = "Selecting Decline Will Close Tarnvale. Continue ?"
        person.answer(self.box_says("Exit Tarnvale", question), "n")
        person.wait_until_active(AGREEMENT)
        person.press("alt+F4")
        person.answer(self.box_says("Exit Tarnvale", question), "n")
        person.wait_until_active(AGREEMENT)
        self.assertTrue(program.runs())

        # Behind it, the window comes up and can't be used.
        person.bring_up(active=False)
        person.wait_for("the window to be disabled", lambda: not person.window(MAIN).enabled)
        person.wait_for("the agreement above", lambda: person.activate(AGREEMENT))
        person.click(AGREEMENT, "Accept End User Liscence Agreement")
        person.wait_for("the settings", lambda: "Wizard=1" in program.settings())
        person.wait_for("the agreement to go", lambda: not person.is_up(AGREEMENT))
        person.wait_for("the window to be of use", lambda: person.window(MAIN).enabled)

    def test_the_agreement_declined_with_yes_ends_the_program(self):
        program = self.start("[Setup]\nWizard=0\n")
        self.person.wait_until_active(AGREEMENT)
        # By the keyboard: from the text past the one button to the other.
        self.person.press("Tab", "Tab", "space")
        self.person.answer(self.person.wait_for_box("Exit Tarnvale"), "y")
        self.ends(program)
        self.assertNotIn("Wizard=1", program.settings())

    def test_a_normal_start_waits_behind_the_icon(self):
        person = self.person
        self.start()
        person.wait_for("the end of the splash", lambda: not person.is_up("Form2"))
        person.wait_for("the icon", person.find_tray)
        self.assertFalse(person.is_up(MAIN))
        self.assertFalse(person.is_up(AGREEMENT))


class OneStart(Suite):
    """All tests of the suite are of one program, whose window is up."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.program = Installation(NORMAL).start()
        cls.person.wait_until_up("Form2")
        cls.person.bring_up()
        cls.person.wait_for("the end of the splash", lambda: not cls.person.is_up("Form2"))

    @classmethod
    def tearDownClass(cls):
        cls.program.remove()
        super().tearDownClass()


class Use(OneStart):
    """One working day: a test goes on with what the last one left."""

    def setUp(self):
        super().setUp()
        if not self.person.is_up(MAIN):
            self.person.bring_up()
        self.person.wait_for("the window to be active", lambda: self.person.activate(MAIN))

    def show(self, link):
        self.person.click(MAIN, link)
        self.shows(link)

    def shows(self, link):
        self.person.wait_for(f"the screen of {link}",
                             lambda: self.person.shown_fields(MAIN) == SCREENS[link], 5)

    def save(self):
        self.person.click(MAIN, "Save My Backup Settings")
        self.person.answer(self.box_says(
            "Settings Saved", "Your Tarnvale Settings Have Been Sucessfully Saved"), "Return")

    def test_1_each_link_shows_its_screen(self):
        for link in SCREENS:
            self.show(link)

    def test_2_the_list_is_made_by_mouse_and_keys(self):
        person = self.person
        self.show("Include Files In My Backup List")
        files = lambda: person.field(MAIN, "Files Of The Folder")
        person.choose_below(MAIN, "Folders", "Documents",
                            lambda: files().rows == ["Notes.txt", "Plan.txt"])
        person.click_in(files())
        person.press("shift+Down")
        person.wait_for("both selected", lambda: len(files().selected) == 2)
        person.click(MAIN, "Backup Selected Items")
        rows = lambda: person.field(MAIN, "Selected Files And Directories For Backup").rows
        documents = told(self.program.folder / "Documents")
        both = [documents + "\\Notes.txt", documents + "\\Plan.txt"]
        person.wait_for("the list", lambda: rows() == both)
        person.click(MAIN, "Include Sub Directories")
        person.click(MAIN, "Backup This Directory's Contents")
        person.wait_for("the folder", lambda: rows() == both + [documents + "\\*+++++*"])
        # The key belongs to the list alone.
        person.press("Delete")
        person.click_in(person.field(MAIN, "Selected Files And Directories For Backup"))
        person.press("Delete")
        person.wait_for("one less", lambda: rows() == [both[1], documents + "\\*+++++*"])

    def test_3_what_is_chosen_is_saved(self):
        person = self.person
        self.show("Storage Location For Backup")
        storage = told(self.program.folder / "Storage")

        def is_taken():
            person.click(MAIN, "Select This Location For My Backup Files")
            return person.field(MAIN, "Selected Backup Folder Path").text == storage
        person.choose_below(MAIN, "Folders For Storage", "Storage", is_taken)
        self.show("General & Backup Settings")
        person.click(MAIN, "Fennick Mode")
        person.click(MAIN, "Show Visual Notification Upon Backup")
        self.show("Advanced Auto Settings")
        person.write(MAIN, "Send To", "ann@home.test")
        person.write(MAIN, "Outgoing Mail Server", "mail.home.test")
        self.show("Schedule My Backup Process")
        person.click(MAIN, "Always At This Time:")
        person.wait_for("the time's focus", lambda: person.field(
            MAIN, "Time Of The Backup, Hours And Minutes").focus)
        person.type("1745")
        person.click(MAIN, "Every Sunday")
        self.save()
        settings = self.program.settings().splitlines()
        for line in ("AlwaysAt=17:45", "Incremental=True", "Dir=" + storage, "To=ann@home.test",
                     "STMP=mail.home.test", "Show=False"):
            self.assertIn(line, settings)

    def test_4_a_backup_on_demand_is_announced_and_copies(self):
        person = self.person
        person.click(MAIN, "Perform A Quick Backup")
        person.answer(self.box_says(
            MAIN, "Tarnvale Will Now Perform A Backup On Your Files. Proceed?"), "y")
        copy = self.program.folder / "Storage/Documents/Letters/Ann.txt"
        log = self.program.folder / "Data/Backup Log.txt"
        person.wait_for("the run", lambda: log.exists() and "Success" in log.read_text(), 40)
        self.assertEqual(copy.read_text(),
                         (self.program.folder / "Documents/Letters/Ann.txt").read_text())

    def test_5_tab_and_shift_tab_go_round_and_enter_is_tab(self):
        person = self.person
        self.show("Advanced Auto Settings")
        fields = ["Automatic Compression Storage Directory", "Outgoing Mail Server", "Send To"]
        person.click_in(person.field(MAIN, fields[0]))

        def goes_round(key):
            visited = []
            for _ in range(40):
                person.press(key)
                focused = next((n for n in fields if person.field(MAIN, n).focus), None)
                if focused and focused not in visited:
                    visited.append(focused)
                if focused == fields[0]:
                    return visited
            self.fail(f"{key} never comes back to the first field, but to {visited}")

        person.wait_for("the first field", lambda: person.field(MAIN, fields[0]).focus)
        self.assertEqual(goes_round("Tab"), fields[1:] + fields[:1])
        self.assertEqual(goes_round("shift+Tab"), fields[:0:-1] + fields[:1])
        self.assertEqual(goes_round("Return"), fields[1:] + fields[:1])

    def test_6_the_menu_opens_by_alt_and_its_rows_by_their_marks(self):
        person = self.person
        self.show("Schedule My Backup Process")
        person.press("F10", "Down")
        person.wait_for("the menu", person.menus)
        person.press("f")
        person.press("Down", "Return")
        self.shows("Advanced Auto Settings")
        person.press("F10", "Down")
        person.wait_for("the menu", person.menus)
        person.press("Escape", "Escape")
        person.wait_for("no menu", lambda: not person.menus())

    def test_7_the_window_goes_behind_the_icon_and_comes_back(self):
        person = self.person
        person.hand("search", "--onlyvisible", "--name", "^Tarnvale$", "windowminimize")
        person.wait_for("the window to go", lambda: not person.window(MAIN).visible)
        self.assertTrue(person.find_tray())
        person.bring_up()

    def test_8_the_icons_menu_shows_a_screen(self):
        person = self.person
        person.hand("search", "--onlyvisible", "--name", "^Tarnvale$", "windowminimize")
        person.wait_for("the window to go", lambda: not person.window(MAIN).visible)
        # "Backup Wizard", "Backup Files".
        person.choose_in_icon_menu(0.27, 0.38)
        person.wait_until_active(MAIN)
        self.shows("Include Files In My Backup List")

    def test_9_a_question_answered_by_its_mark_leads_back_to_the_window(self):
        person = self.person
        log = self.program.folder / "Data/Backup Log.txt"
        before = log.read_text()
        person.click(MAIN, "Perform A Quick Backup")
        person.answer(self.box_says(
            MAIN, "Tarnvale Will Now Perform A Backup On Your Files. Proceed?"), "n")
        person.wait_until_active(MAIN)
        self.assertEqual(log.read_text(), before)


class Tools(OneStart):
    """Each window of the tools is opened by its link, used and closed."""

    def open(self, link, title):
        self.person.wait_for("the main window", lambda: self.person.activate(MAIN))
        self.person.click(MAIN, link)
        self.person.wait_until_active(title)
        return title

    def close(self, title):
        self.person.wait_for(title, lambda: self.person.activate(title))
        self.person.press("alt+F4")
        self.person.wait_for(f"{title} to go", lambda: not self.person.is_up(title))

    def choose_file(self, name):
        """In the dialog that has come up."""
        person = self.person
        box = person.wait_for_box()
        path = told(self.program.folder / name)
        # Until then a field of the window below it has the focus, and the keys.
        person.wait_until_foreground(box)

        def focused_field():
            field = person.focused()
            return field if field and (field.owner, field.kind) == (box.handle, "Edit") else None
        person.wait_for("the dialog's focus", focused_field)
        person.type(path)
        person.wait_for(f"{path} in the dialog", lambda: (
            (field := focused_field()) and field.text == path))
        person.press("Return")
        person.wait_until_gone(box)

    def take_proposed_folder(self):
        """The desktop's, which with-wine has made."""
        box = self.person.wait_for_box()
        self.person.answer(box, "Return")
        return Path(os.environ["HOME"]) / "Desktop"

    def test_the_splitter_splits_a_file(self):
        person = self.person
        (self.program.folder / "Archives/Large.tvz").write_bytes(bytes(range(256)) * 1024)
        title = self.open("Tarnvale Splitter", "Tarnvale Splitter")
        person.click(title, "Open Compressed File To Split")
        self.choose_file("Archives/Large.tvz")
        person.wait_for("the name", lambda: person.field(title, "File Name").text == told(
            self.program.folder / "Archives/Large.tvz"))
        person.write(title, "Segment Size In Megabytes", "0.1")
        person.click(title, "Split Compressed File Now")
        folder = self.take_proposed_folder()
        box = self.box_says("Successfully Done",
                            "The Splitting Was Completed. The File Was Split Into 3 Parts.")
        person.answer(box, "Return")
        parts = [folder / f"Large.tvz.00{number}" for number in (1, 2, 3)]
        self.assertEqual(b"".join(part.read_bytes() for part in parts),
                         (self.program.folder / "Archives/Large.tvz").read_bytes())
        for part in parts:
            part.unlink()
        self.close(title)

    def test_the_registry_is_written_to_a_file(self):
        person = self.person
        title = self.open("Registry Backup Maker", "Registry Backup Maker")
        person.click(title, "Select Registry Backup Location")
        self.choose_file("Archives/registry.reg")
        person.wait_for("the name", lambda: person.field(
            title, "Registry Backup Location").text.endswith("registry.reg"))
        person.click(title, "Backup The Selected Registry Branch")
        person.answer(self.box_says(
            "Registry Backup", "Your Registry Has Been Sucessfully Backed Up"), "Return")
        file = self.program.folder / "Archives/registry.reg"
        person.wait_for("the registry's file", lambda: file.exists() and file.stat().st_size > 10000)
        self.close(title)

    def test_the_servers_settings_are_saved(self):
        person = self.person
        title = self.open("Server Upload & Download", "FTP Server Management")
        person.write(title, "FTP Server Address", "ftp.home.test")
        person.write(title, "Username", "ann")
        person.click_in(person.field(title, "Password"))
        person.wait_for("the password's focus", lambda: person.field(title, "Password").focus)
        person.type("open sesame")
        person.click(title, "Save My Current FTP Server Upload Settings")
        person.answer(self.box_says(
            MAIN, "Your FTP Server Settings Have Been Successfully Saved!"), "Return")
        settings = self.program.settings().splitlines()
        for line in ("Server=ftp.home.test", "Username=ann", "Password=open sesame"):
            self.assertIn(line, settings)
        self.close(title)

    def test_each_task_of_the_server_has_its_panel(self):
        person = self.person
        title = self.open("Server Upload & Download", "FTP Server Management")
        panels = {"Upload A Compressed File": [("Compressed Backup File", 0), ("Remote File Name", 0)],
                  "Download A Compressed File": [("Remote File Name", 1), ("Extension", 0)],
                  "FTP Upload Server Settings": [("FTP Server Address", 0), ("Username", 0),
                                                 ("Password", 0)]}
        for link, fields in panels.items():
            person.click(title, link)
            # The panels lie in one place, and some of their fields too.
            person.wait_for(f"the panel of {link} alone", lambda: (
                len(person.visible_edits(title)) == len(fields) and
                all(person.field(title, name, nth).visible for name, nth in fields)))
        self.close(title)

    def test_each_application_has_its_panel(self):
        person = self.person
        title = self.open("User Data Applications", "User Data Applications")
        for nth in range(7):
            link = ("Mozilla Firefox", "Internet Explorer", "Opera Browser", "Microsoft Outlook",
                    "Microsoft Outlook Express", "Mozilla Thunderbird", "Windows XP Files")[nth]
            person.click(title, link)
            person.wait_for(f"the panel of {link} alone",
                            lambda: len(person.visible_edits(title)) == 1)
        self.close(title)

    def test_the_compressor_packs_a_folder(self):
        person = self.person
        title = self.open("Tarnvale Compressor", "Tarnvale Compressor")
        note = Path(os.environ["HOME"]) / "Desktop/Note.txt"
        note.write_text("To be packed.\n")
        person.click(title, "Compress Backed Up Files")
        self.assertEqual(self.take_proposed_folder(), note.parent)
        self.choose_file("Archives/By Hand.tvz")
        archive = self.program.folder / "Archives/By Hand.tvz"
        person.wait_for("the archive", archive.exists)
        person.wait_for("a whole archive", lambda: run_to_end(
            PROGRAMS / "tvz.exe", "test", archive)[0] == 0)
        self.assertIn("Note.txt", run_to_end(PROGRAMS / "tvz.exe", "list", archive)[1])
        note.unlink()
        person.click(title, "Quit This Compression")
        person.wait_for("the window to go", lambda: not person.is_up(title))


class Exits(Suite):
    def bring_up(self):
        program = self.start()
        self.person.bring_up()
        return program

    def test_the_close_button_asks_and_no_keeps_the_program(self):
        person = self.person
        program = self.bring_up()
        question = "Are You Sure You Want You Exit Tarnvale Now?"
        person.press("alt+F4")
        person.answer(self.box_says("Exit Tarnvale", question), "n")
        person.wait_until_active(MAIN)
        self.assertTrue(program.runs())
        person.press("alt+F4")
        person.answer(self.box_says("Exit Tarnvale", question), "y")
        self.ends(program)

    def test_the_menu_ends_it(self):
        program = self.bring_up()
        self.person.press("F10", "Down")
        self.person.wait_for("the menu", self.person.menus)
        self.person.press("e")
        self.ends(program)

    def test_the_icons_menu_ends_it(self):
        program = self.start()
        self.person.choose_in_icon_menu(0.92)  # "Exit"
        self.ends(program)
        self.person.wait_for("no icon", lambda: not self.person.find_tray())

    def test_the_companion_ends_it(self):
        program = self.start()
        self.assertEqual(run_to_end(program.folder / "Quit.exe")[0], 0)
        self.ends(program)

    def test_a_second_instance_says_so_and_leaves_the_first_alone(self):
        first = self.bring_up()
        second = under_wine(first.folder / "Tarnvale.exe", stderr=subprocess.DEVNULL)
        box = self.box_says(MAIN, "Another Instance Of Tarnvale Is Already Running On This System.")
        self.person.answer(box, "Return")
        self.person.wait_for("the end of the second", lambda: second.poll() is not None)
        self.assertEqual(second.returncode, 0)
        self.assertTrue(first.runs())

    def test_the_loss_of_the_data_folder_ends_it(self):
        program = self.start()
        self.person.wait_for("the icon", self.person.find_tray)
        # It would make the folder anew.
        self.person.wait_for("the end of U3-Data.exe", lambda: not program.is_helped())
        shutil.rmtree(program.folder / "Data")
        self.ends(program)


if __name__ == "__main__":
    unittest.main(verbosity=2)
