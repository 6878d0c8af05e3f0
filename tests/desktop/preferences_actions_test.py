#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The buttons of the preferences: support, repairs, updates, the master password and the state of the backups."""

from urllib.parse import parse_qs, urlsplit

import flows
from desktop_driver import BUTTON, DIALOG, FIELD, SWITCH, TAB, key
from preferences_case import CLOSE, STORED, PreferencesTest
from window_case import main

SET_OR_RESET = "Set or Reset Master Password"
ENTER_STRONG = "Enter a strong password (8+ characters with uppercase, lowercase, and numbers):"
WEAK = "Password must be at least 8 characters with uppercase, lowercase, and numbers"
ANOTHER = "Other5Hammer"
ENTRY = "com.tarnwick.quillhaven.desktop"


class Support(PreferencesTest):
    """With programs of the user's for some kinds of addresses, and none of the system's."""

    starts = False

    def setUp(self):
        super().setUp()
        self.notes = {}

    def launch(self, *schemes):
        for scheme in schemes:
            self.install(scheme)
        # A browser of the machine that runs the test stays closed.
        self.program = self.start(BROWSER="/bin/false", XDG_DATA_DIRS=str(self.home.path / "no-system-data"))
        self.wait_for_window()
        self.open("General")

    def install(self, scheme):
        """Installs a program for these addresses, which notes the one that it is given."""
        note = self.notes[scheme] = self.home.path / f"opened-{scheme}"
        program = self.home.path / f"{scheme}-program"
        program.write_text(f"#!/bin/sh\nprintf %s \"$1\" >'{note}.new'\nmv '{note}.new' '{note}'\n")
        program.chmod(0o755)
        applications = self.home.data / "applications"
        applications.mkdir(exist_ok=True)
        (applications / f"{scheme}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName={scheme}\nExec={program} %u\nMimeType=x-scheme-handler/{scheme};\n")
        with open(self.home.config / "mimeapps.list", "a") as defaults:
            if defaults.tell() == 0:
                defaults.write("[Default Applications]\n")
            defaults.write(f"x-scheme-handler/{scheme}={scheme}.desktop\n")

    def opened(self, scheme):
        """Waits until an address was opened, and returns it."""
        note = self.notes[scheme]
        self.program.wait_for(note.exists, f"a {scheme} address to be opened")
        address = note.read_text()
        note.unlink()
        return address

    def mail(self):
        parts = urlsplit(self.opened("mailto"))
        self.assertEqual((parts.scheme, parts.path), ("mailto", "support@quillhaven.example"))
        return {name: value for name, [value] in parse_qs(parts.query, strict_parsing=True).items()}

    def test_contact_support_opens_a_mail_to_the_support_desk(self):
        self.launch("mailto")
        self.program.find(None, "General section")
        self.find_below("label", "Priority support with response within 24 hours")
        self.press(BUTTON, "Contact Support")
        self.assertEqual(self.mail(), {"subject": "Quillhaven Support Request",
                                       "body": "\n\n--- Please describe your issue below ---\n\n"})

    def test_report_issue_adds_the_versions_to_the_mail(self):
        self.launch("mailto")
        self.press(BUTTON, "Report Issue")
        mail = self.mail()
        self.assertEqual(mail["subject"], "Quillhaven Support Request")
        for line in ("--- System Information ---", "App Version: ", "Bundle ID: com.tarnwick.quillhaven", "macOS Version: ",
                     "Mac Model: ", "--- Please describe your issue below ---"):
            self.assertIn(f"\n{line}", mail["body"])

    def test_feedback_opens_the_page_of_the_web_site(self):
        self.launch("https")
        self.press(BUTTON, "Feedback")
        self.assertEqual(self.opened("https"), "https://quillhaven.example/feedback")

    def test_without_a_program_for_the_address_nothing_happens(self):
        self.launch("mailto")
        self.press(BUTTON, "Feedback")
        # The mail after it arrives, and nothing else has been shown.
        self.press(BUTTON, "Contact Support")
        self.mail()
        self.assertEqual([each.name for each in self.program.find_all(DIALOG)], [flows.PREFERENCES])
        self.assertEqual(list(self.home.path.glob("opened-*")), [])


class Repairs(PreferencesTest):
    def test_a_deleted_desktop_entry_comes_back(self):
        entry = self.home.data / "applications" / ENTRY
        self.program.wait_for(entry.exists, "the desktop entry")
        before = entry.read_text()
        self.open("General")
        entry.unlink()
        self.press(BUTTON, "Repair: Links to Quillhaven")
        self.program.wait_for(lambda: entry.exists() and entry.read_text() == before, "the desktop entry to be back")

    def test_a_deleted_menu_of_a_file_manager_comes_back(self):
        actions = self.home.config / "Thunar" / "uca.xml"
        self.program.wait_for(actions.exists, "the entries of the menu")
        self.program.wait_for_log("✅ Finder extension")
        before = actions.read_bytes()
        self.open("General")
        actions.unlink()
        self.press(BUTTON, "Repair: File manager menus")
        self.program.wait_for(lambda: actions.exists() and actions.read_bytes() == before, "the entries to be back")


class Updates(PreferencesTest):
    def test_without_an_address_the_button_is_disabled_and_says_why(self):
        self.open("General")
        button = self.find_below(BUTTON, "Check for Updates")
        self.assertEqual(button.description, "This build of Quillhaven has no address for update information.")
        # The keyboard passes over it, and the line is in view after the one above it.
        self.reach(BUTTON, "Feedback")
        key("Next")
        self.program.says(button.description)
        self.program.find_disabled(BUTTON, "Check for Updates").press()
        key("Tab")
        self.wait_for_focus(CLOSE)
        self.assertFalse(self.program.shows(BUTTON, "Download Update"))
        self.find_below("label", flows.re.compile(r"^Current version: \d+\.\d+\.\d+$"))
        self.assertEqual(button.name, "Check for Updates")


class MasterPassword(PreferencesTest):
    def setUp(self):
        super().setUp()
        self.open("Security")

    def ask(self):
        self.press(BUTTON, SET_OR_RESET)
        self.program.wait_for_log("Master password button clicked in RefinedPreferencesModal")

    def reset(self):
        """Confirms that the password is replaced."""
        self.ask()
        self.program.says("Are you sure you want to reset your master password? This action cannot be undone.")
        self.press_in_sheet("Reset Master Password", "Reset")

    def enter(self, title, password):
        """Enters a new password into the dialog, which has no field for an old one."""
        dialog = self.program.wait_for(
            lambda: next((each for each in self.program.find_all(DIALOG, title) if each.description == ENTER_STRONG), None),
            f'the dialog "{title}"')
        fields = [node.name for node in dialog.walk() if node.role in (FIELD, "password text") and node.name]
        self.assertEqual(fields, ["Password", "Confirm password"])
        flows.enter_new_password(self.program, password)

    def wait_for_password(self, password):
        self.program.wait_for(lambda: self.keyring.entries().get("master_password") == password, "the password in the keyring")

    def test_it_is_set_and_then_replaced_without_the_old_one(self):
        self.assertEqual(self.find_below(BUTTON, SET_OR_RESET).description,
                         "Opens dialog to set or reset your master password")
        self.ask()
        self.enter("Set Master Password", flows.MASTER_PASSWORD)
        self.wait_for_password(flows.MASTER_PASSWORD)
        self.program.says(flows.MASTER_PASSWORD_IS_SET)
        self.reset()
        self.enter("Reset Master Password", ANOTHER)
        self.wait_for_password(ANOTHER)
        self.program.gone(DIALOG, "Reset Master Password")
        self.wait_for_focus(SET_OR_RESET)
        self.assertEqual([each.name for each in self.program.find_all(DIALOG)], [flows.PREFERENCES])

    def test_cancelling_either_dialog_leaves_the_password(self):
        self.ask()
        self.enter("Set Master Password", flows.MASTER_PASSWORD)
        self.wait_for_password(flows.MASTER_PASSWORD)
        self.program.gone(DIALOG, "Set Master Password")
        self.ask()
        self.press_in_sheet("Reset Master Password", "Cancel")
        self.program.gone(DIALOG, "Reset Master Password")
        self.reset()
        self.program.find(FIELD, "Confirm password")
        self.press_in_sheet("Reset Master Password", "Cancel")
        self.program.gone(DIALOG, "Reset Master Password")
        self.assertEqual(self.keyring.entries(), {"master_password": flows.MASTER_PASSWORD})

    def test_a_weak_one_is_rejected_in_its_dialog_while_strong_ones_are_enforced(self):
        self.ask()
        self.enter("Set Master Password", "feeble")
        self.program.says(WEAK)
        self.press_in_sheet("Set Master Password", "Cancel")
        self.program.gone(DIALOG, "Set Master Password")
        self.assertEqual(self.keyring.entries(), {})

    def test_a_weak_one_is_rejected_in_the_sheet_for_errors_otherwise(self):
        self.switch("Enforce strong passwords", False)
        self.ask()
        self.enter("Set Master Password", "feeble")
        self.assertEqual(self.program.find(DIALOG, "Error").description, WEAK)
        self.press_in_sheet("Error", "OK")
        self.program.gone(DIALOG, "Error")
        self.wait_for_focus(SET_OR_RESET)
        self.assertEqual(self.keyring.entries(), {})


class BackupState(PreferencesTest):
    def check_status(self, *, items=0, enabled, password, sentence):
        """Presses "Check Status", and compares the whole message."""
        self.press(BUTTON, "Check Status")
        alert = self.program.find(DIALOG, "iCloud Backup Status")
        self.assertEqual(alert.description, "\n".join([
            "iCloud Status:", "", "• iCloud Available: Yes", f"• Backup Enabled: {enabled}", f"• Protected Items: {items}",
            f"• Master Password: {password}", "", sentence]))
        buttons = [node.name for node in alert.walk() if node.matches(BUTTON, None)]
        self.assertEqual(buttons, ["OK"])
        alert.find(BUTTON, "OK").press()
        self.program.gone(DIALOG, "iCloud Backup Status")

    def select(self, section):
        self.program.press(TAB, f"Switch to {section} settings")
        self.program.find(None, f"{section} section")

    def test_the_status_names_what_is_missing_next(self):
        flows.protect_with_password(self.program, self.file("letter.txt"))
        self.home.make_cloud_folder()
        self.open("Backup")
        self.check_status(items=1, enabled="No", password="Not Set",
                          sentence="Enable iCloud backup in Security settings to automatically backup your protected files.")
        self.select("Security")
        self.assertEqual(self.find_below(SWITCH, "iCloud Backup").description,
                         "Automatically backup encrypted files to iCloud for recovery")
        self.assertFalse(self.program.shows(BUTTON, "Open iCloud Settings"))
        self.switch("iCloud Backup", True)
        self.select("Backup")
        self.check_status(items=1, enabled="Yes", password="Not Set",
                          sentence="Set a master password in Security settings to enable file recovery.")
        self.select("Security")
        self.press(BUTTON, SET_OR_RESET)
        self.program.find(DIALOG, "Set Master Password")
        flows.enter_new_password(self.program, flows.MASTER_PASSWORD)
        self.program.says(flows.MASTER_PASSWORD_IS_SET)
        self.select("Backup")
        self.check_status(items=1, enabled="Yes", password="Set",
                          sentence="iCloud backup is active! Use 'Recover Files' to restore your files with your master "
                                   "password. ✅")

    def test_the_status_of_a_folder_that_has_disappeared_begins_with_it(self):
        folder = self.home.make_cloud_folder()
        self.open("Security")
        self.switch("iCloud Backup", True)
        self.select("Backup")
        folder.rmdir()
        self.press(BUTTON, "Check Status")
        alert = self.program.find(DIALOG, "iCloud Backup Status")
        self.assertEqual(alert.description, "\n".join([
            "iCloud Status:", "", "• iCloud Available: No", "• Backup Enabled: Yes", "• Protected Items: 0",
            "• Master Password: Not Set", "",
            "To enable iCloud backup:", "1. Sign in to iCloud in System Preferences", "2. Enable iCloud Drive",
            "3. Restart Quillhaven"]))
        alert.find(BUTTON, "OK").press()
        self.program.gone(DIALOG, "iCloud Backup Status")
        # The section went with the folder.
        self.program.find(None, "General section")
        self.program.gone(TAB, "Switch to Backup settings")

    def test_backups_may_be_switched_on_without_a_folder(self):
        self.open("Security")
        self.assertEqual(self.find_below(BUTTON, "Open iCloud Settings").description,
                         "Lets you choose a folder of your sync tool for the backups")
        self.switch("iCloud Backup", True)
        self.wait_for_stored("enableiCloudBackup", STORED[True])
        self.find_below(BUTTON, "Open iCloud Settings")

    def test_each_button_says_what_it_does(self):
        self.home.make_cloud_folder()
        self.open("Backup")
        for name, description in (("Backup Now", "Create iCloud backup of all protected items"),
                                  ("Recover Files", "Restore files from iCloud backup using master password"),
                                  ("Check Status", "Check iCloud backup status and storage"),
                                  ("Change Folder…", "Backups are kept in a folder of your sync tool")):
            self.assertEqual(self.find_below(BUTTON, name).description, description)

    def test_a_failed_backup_is_shown_in_the_sheet_for_errors(self):
        flows.protect_with_password(self.program, self.file("letter.txt"))
        self.home.make_cloud_folder()
        self.open("Backup")
        self.press(BUTTON, "Backup Now")
        error = self.program.find(DIALOG, "Error")
        self.assertNotEqual(error.description, "")
        self.press_in_sheet("Error", "OK")
        self.program.gone(DIALOG, "Error")


if __name__ == "__main__":
    main()
