#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""A tour of the real program, driven as by a person with a screen reader.

Prints each step and what it changed on disk, saves screenshots, and exits with 1 if a step failed.
"""

import argparse
import sys
import traceback
from pathlib import Path

from cryptography.exceptions import InvalidTag
from cryptography.hazmat.primitives.ciphers.aead import AESGCM
from cryptography.hazmat.primitives.hashes import SHA256
from cryptography.hazmat.primitives.kdf.hkdf import HKDF

import flows
from desktop_driver import BUTTON, DIALOG, DesktopError, Program, screenshot
from desktop_steps import DesktopSteps
from list_steps import ListSteps
from home_on_disk import PLACEHOLDER, ROOT, SHARED_DOMAIN, Home, Keyring, differences, picture

LETTER = b"Dear Ada,\nthe drafts are in the blue box.\n"


class Tour(DesktopSteps, ListSteps):
    def __init__(self, program, screenshots):
        self._binary = program
        self._screenshots = screenshots
        self._step = 0
        self._shot = 0
        self.home = Home()
        self.keyring = Keyring()
        self.program = None
        self.panel = None

    # Output

    def step(self, title):
        self._step += 1
        print(f"\n{self._step}. {title}", flush=True)

    def did(self, text):
        print(f"   - {text}", flush=True)

    def found(self, text):
        print(f"     found: {text}", flush=True)

    def check(self, holds, text):
        if not holds:
            raise DesktopError(f"This is not true: {text}")
        self.found(text)

    def shot(self, name):
        self._shot += 1
        self._screenshots.mkdir(parents=True, exist_ok=True)
        screenshot(self._screenshots / f"{self._shot:02}-{name}.png")

    # The steps

    def run(self):
        self.start()
        self.protect_file()
        self.protect_folder()
        self.several_at_once()
        self.search()
        self.menu_of_a_row()
        self.to_the_trash()
        self.shred()
        self.every_preference()
        self.in_the_tray()
        self.in_a_file_manager()
        self.when_idle()
        self.set_master_password()
        self.unlock_and_lock()
        self.restart()
        self.refuse()
        self.rescue()
        self.remove_protection()
        self.at_login()

    def close(self):
        if self.program is not None:
            self.program.kill()
        if self.panel is not None:
            self.panel.stop()
        self.home.remove()

    def start(self):
        self.step("Start in an empty home folder")
        self.letter = self.home.documents / "letter.txt"
        self.letter.write_bytes(LETTER)
        self.letter.chmod(0o640)
        flows.add_attributes(self.letter)
        self.drafts = self.home.path / "drafts"
        (self.drafts / "old").mkdir(parents=True)
        (self.drafts / "one.txt").write_text("one\n")
        (self.drafts / "old" / "two.txt").write_text("two\n")
        (self.drafts / "link").symlink_to("one.txt")
        flows.add_attributes(self.drafts / "one.txt")
        self.drafts.chmod(0o750)
        self.before = {path: picture(path) for path in (self.letter, self.drafts)}
        self.program = Program(self._binary, self.home)
        self.program.find(DIALOG, "Welcome to Quillhaven")
        self.shot("introduction")
        self.program.press(BUTTON, "Get Started")
        self.program.gone(DIALOG, "Welcome to Quillhaven")
        self.did("read the introduction")
        self.program.find(None, flows.PROTECT)
        self.shot("empty-window")
        self.check(self.home.storage.is_dir(), f"private storage exists: {self.home.storage}")
        self.check(self.home.storage.stat().st_mode & 0o077 == 0, "other users cannot read it")

    def protect_file(self):
        self.step('Protect the file "letter.txt" with a password')
        flows.open_protection(self.program, self.letter)
        self.did('pressed "Protect New Item" and chose the file in the panel')
        self.shot("method-question")
        self.program.find(flows.BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}")).press()
        self.did('pressed the card "Password Protection"')
        self.program.find(flows.FIELD, "Password").type(flows.ITEM_PASSWORD)
        self.program.find(flows.FIELD, "Confirm password").type(flows.ITEM_PASSWORD)
        self.shot("new-password")
        self.program.press(flows.BUTTON, "Protect")
        self.did("typed the password twice and confirmed it")
        self.program.says(flows.ACCESS_MESSAGE)
        self.shot("access-panel")
        self.program.press(flows.BUTTON, flows.ACCESS_PROMPT)
        self.did('confirmed the panel with "Grant Access"')
        flows.row(self.program, "letter.txt", "locked")
        self.did('the list reads "letter.txt, locked"')
        self.shot("file-protected")

        item = self.home.item(self.letter)
        self.letter_id = item["id"]
        self.check(self.letter.read_bytes() == PLACEHOLDER, f"the placeholder is at {self.letter}")
        kept = Path(item["originalBackupPath"])
        self.check(kept.parent == self.home.storage and kept.read_bytes() == LETTER,
                   f"the data is unchanged in private storage: {kept.name}")
        container = Path(item["containerPath"])
        self.check(container == self.home.documents / "letter.txt.secured" and self.opens(container, flows.ITEM_PASSWORD),
                   f"the container {container.name} can be opened with the password ({container.stat().st_size} bytes)")
        self.check(not self.opens(container, "another"), "but not with another one")
        self.check(self.keyring.entries().get(self.letter_id) == flows.ITEM_PASSWORD,
                   f"the keyring contains the password under {self.letter_id}")
        self.check_summary()

    def protect_folder(self):
        self.step('Protect the folder "drafts"')
        flows.protect_with_password(self.program, self.drafts)
        self.did('the list reads "drafts, locked"')
        self.shot("folder-protected")
        item = self.home.item(self.drafts)
        self.check(self.drafts.read_bytes() == PLACEHOLDER, f"a placeholder file is at {self.drafts}")
        kept = Path(item["originalBackupPath"])
        self.check((kept / "old" / "two.txt").read_text() == "two\n", "the whole folder is in private storage")
        self.check(Path(item["containerPath"]).read_text() == f"FOLDER:{kept}", "its container is only a marker")
        self.check(item["id"] not in self.keyring.entries(), "the keyring contains nothing for a folder")
        self.check_summary()

    def set_master_password(self):
        self.step("Set a master password")
        flows.set_master_password(self.program)
        self.did("the preferences say that one is set")
        self.check(self.keyring.entries().get("master_password") == flows.MASTER_PASSWORD, "the keyring contains it")
        self.shot("master-password-set")

    def unlock_and_lock(self):
        self.step("Unlock the file from its row, and lock it again")
        flows.press_in_row(self.program, "letter.txt", "Unlock Item")
        self.program.find(flows.FIELD, "Master Password")
        self.shot("master-password-question")
        flows.enter_master_password(self.program)
        self.did("entered the master password")
        self.program.says("Enter the password for 'letter.txt':")
        self.shot("item-password-question")
        flows.enter_item_password(self.program, "letter.txt")
        self.did("entered the item's password")
        flows.grant_access(self.program)
        self.did('confirmed the panel with "Grant Access"')
        flows.row(self.program, "letter.txt", "unlocked")
        self.did('the list reads "letter.txt, unlocked"')
        self.shot("file-unlocked")
        self.check_unchanged(self.letter)
        item = self.home.item(self.letter)
        self.check(not Path(item["originalBackupPath"]).exists(), "it is no longer in private storage")
        self.check(item["isMounted"] and item["mountedPath"] == str(self.letter), "the catalogue says unlocked")
        self.check_summary()

        flows.lock(self.program, "letter.txt", flows.MASTER_PASSWORD)
        self.did('locked it: the master password again, and the list reads "letter.txt, locked"')
        self.check(self.letter.read_bytes() == PLACEHOLDER, "the placeholder is back")
        self.check(Path(item["originalBackupPath"]).read_bytes() == LETTER, "the data is back in private storage")
        self.check_summary()

    def restart(self):
        self.step("Quit, and start again")
        catalogue = self.home.catalogue()
        self.end_program()
        self.check(self.home.catalogue() == catalogue, "quitting changed nothing in the catalogue")
        self.program = Program(self._binary, self.home)
        for name in ("letter.txt", "drafts"):
            flows.row(self.program, name, "locked")
            self.did(f'the list reads "{name}, locked"')
        flows.wait_for_master_password(self.program)
        self.did("the program knows that a master password is set")
        self.shot("after-restart")
        self.check(self.home.catalogue() == catalogue, "the catalogue is unchanged")

    def refuse(self):
        self.step("Try to protect the Documents folder")
        program = self.program
        program.press(flows.BUTTON, flows.PROTECT)
        flows.choose_in_panel(program, self.home.documents)
        program.says(f'"{self.home.documents.name}" cannot be protected because Quillhaven needs it at its place. '
                     "Protect the items in it instead.")
        self.did("the window says why it is refused")
        self.shot("refused")
        flows.dialog_button(program, "OK").press()
        self.check(self.home.documents.is_dir() and len(self.home.catalogue()) == 2, "nothing has changed")

    def rescue(self):
        self.step("Lose the record of the file, as a power cut may, and find the file again")
        self.end_program()
        self.home.forget(self.letter)
        self.letter.write_bytes(b"saved over the placeholder\n")
        self.did("the record is gone, and something else was saved over the placeholder")
        self.program = Program(self._binary, self.home)
        self.program.find("alert", flows.re.compile("^1 item in private storage has no entry"))
        self.shot("lost-item-notice")
        self.letter.write_bytes(PLACEHOLDER)
        flows.find_lost_items(self.program)
        self.program.press(flows.BUTTON, "Look Again")
        self.program.find("list item", "letter.txt")
        self.shot("lost-items")
        self.letter.write_bytes(b"saved over the placeholder\n")
        self.program.press(flows.BUTTON, "Give Back")
        flows.enter_master_password(self.program)
        flows.enter_item_password(self.program, "letter.txt")
        self.program.says(flows.re.compile("^Nothing is lost"))
        self.did("it was given back for both passwords")
        self.shot("nothing-lost")
        flows.dialog_button(self.program, "Close").press()
        self.check_unchanged(self.letter)
        aside = self.letter.with_name("letter (kept aside).txt")
        self.check(aside.read_bytes() == b"saved over the placeholder\n", f"what was at its place is now {aside.name}")
        self.program.find("alert", flows.re.compile(f"It was kept there as \"{flows.re.escape(aside.name)}\""))
        self.shot("kept-aside")
        aside.unlink()
        (self.home.documents / "letter.txt.secured").unlink()
        self.program.press(flows.BUTTON, flows.PROTECT)
        flows.choose_in_panel(self.program, self.letter)
        flows.enter_master_password(self.program)
        self.program.press(flows.BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}"))
        flows.enter_new_password(self.program, flows.ITEM_PASSWORD)
        flows.grant_access(self.program)
        flows.row(self.program, "letter.txt", "locked")
        self.letter_id = self.home.item(self.letter)["id"]
        self.did("it is protected again")

    def remove_protection(self):
        self.step("Remove the protection of both")
        flows.press_in_row(self.program, "letter.txt", "Remove Protection")
        self.program.says("This will restore 'letter.txt' to its original location and remove it from Quillhaven's "
                          "protection. Your original file will be safely restored.")
        self.shot("remove-question")
        flows.dialog_button(self.program, "Remove Protection").press()
        flows.enter_master_password(self.program)
        flows.grant_access(self.program)
        self.program.gone(flows.ROW, flows.re.compile("^letter.txt, "))
        flows.remove_protection(self.program, "drafts", master_password=flows.MASTER_PASSWORD)
        self.did("both were removed from the list")
        self.shot("nothing-protected")
        for path in (self.letter, self.drafts):
            self.check_unchanged(path)
        self.check(self.home.catalogue() == [], "the catalogue is empty")
        self.check(list(self.home.storage.iterdir()) == [], "private storage is empty")
        left = [each.name for each in self.home.documents.glob("*.secured")]
        self.check(left == ["holiday image.png.secured"], "only the container of the file in the trash is left in Documents")
        self.check(self.letter_id not in self.keyring.entries(), "the keyring no longer contains the file's password")

    # Checks that several steps share

    def check_unchanged(self, path):
        changed = differences(self.before[path], picture(path))
        if changed:
            raise DesktopError(f"{path.name} has changed:\n" + "\n".join(changed))
        self.found(f"{path.name} is unchanged: bytes, times to the nanosecond, mode, owner, attributes, access list")

    def end_program(self):
        code = self.program.quit()
        if code != 0:
            raise DesktopError(f"The program ended with {code}, not with 0.\n{self.program.describe()}")
        self.found("the program ended with exit code 0")

    def check_summary(self):
        keys = {"id", "originalName", "originalPath", "isFolder", "isMounted"}
        own = [{key: item[key] for key in keys} for item in self.home.catalogue()]
        self.check(self.home.catalogue(SHARED_DOMAIN) == own,
                   f"both settings databases list {len(own)} item{'s' if len(own) != 1 else ''} identically")

    @staticmethod
    def opens(container, password):
        """Whether a container can be decrypted to the letter: HKDF over SHA-256 for the key, then AES-256-GCM."""
        stored = container.read_bytes()
        magic, salt, nonce, sealed = stored[:10], stored[10:42], stored[42:54], stored[54:]
        key = HKDF(algorithm=SHA256(), length=32, salt=salt, info=b"").derive(password.encode())
        try:
            return magic == b"QUILLHAVEN" and AESGCM(key).decrypt(nonce, sealed, None) == LETTER
        except InvalidTag:
            return False


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", type=Path, default=ROOT / "build" / "release" / "src" / "quillhaven")
    parser.add_argument("--screenshots", type=Path, default=ROOT / "build" / "tour")
    arguments = parser.parse_args()
    for old in arguments.screenshots.glob("[0-9][0-9]-*.png"):
        old.unlink()
    tour = Tour(arguments.program, arguments.screenshots)
    try:
        tour.run()
    except Exception:
        tour.shot("where-it-stopped")
        traceback.print_exc()
        print("\nThe tour stopped: a step did not happen.", flush=True)
        return 1
    finally:
        tour.close()
    print(f"\nThe tour is complete. Screenshots: {arguments.screenshots}", flush=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
