# SPDX-License-Identifier: GPL-3.0-or-later

"""The steps of a user in the window, by the texts on the screen. Shared by the tour and the window tests."""

import re
import subprocess

from desktop_driver import BUTTON, DIALOG, FIELD, ROW, TAB, DesktopError

ITEM_PASSWORD = "Correct7Horse"
MASTER_PASSWORD = "Master9Staple"

PROTECT = "Protect New Item"
PREFERENCES = "Settings Modal"
MASTER_PASSWORD_IS_SET = "A master password is set. It is asked for before items are changed."
ACCESS_PROMPT = "Grant Access"
ACCESS_MESSAGE = "Please grant access to the selected item"
PASSWORD_CARD = "Password Protection"
TOUCH_ID_CARD = "Touch ID Protection"


def choose_in_panel(program, path):
    """Chooses a path in the panel that "Protect New Item" opens."""
    field = program.find(FIELD, "Name:")
    field.set_text(str(path))
    program.press(BUTTON, "Open")


def open_protection(program, path, shown=None):
    """Goes from the toolbar to the choice of a protection method."""
    program.press(BUTTON, PROTECT)
    choose_in_panel(program, path)
    program.says(f"Protect {shown or path.name}")


def enter_new_password(program, password, again=None):
    """Fills in the two fields for a new password, and presses "Protect"."""
    program.find(FIELD, "Password").type(password)
    program.find(FIELD, "Confirm password").type(password if again is None else again)
    program.press(BUTTON, "Protect")


def grant_access(program):
    """Confirms the item that the access panel already shows."""
    program.says(ACCESS_MESSAGE)
    program.press(BUTTON, ACCESS_PROMPT)


def choose_instead(program, path):
    """Chooses another file than the one that the access panel shows."""
    program.says(ACCESS_MESSAGE)
    program.press(BUTTON, "Choose…")
    program.find(FIELD, "File name:").set_text(str(path))
    program.press_in("Choose Another Item", BUTTON, ACCESS_PROMPT)


def decline_access(program):
    program.press_in(ACCESS_MESSAGE, BUTTON, "Cancel")


def protect_with_password(program, path, password=ITEM_PASSWORD, grant=grant_access, shown=None):
    """Protects an item, and waits until the list shows it as locked, under the name `shown` if it differs."""
    open_protection(program, path, shown)
    program.press(BUTTON, re.compile(f"^{PASSWORD_CARD}"))
    enter_new_password(program, password)
    grant(program)
    return row(program, shown or path.name, "locked")


def row(program, name, state):
    """Returns the row of an item when it is shown as locked or unlocked."""
    return program.find(ROW, f"{name}, {state}")


def press_in_row(program, name, button):
    """Presses a button in the row of an item."""
    found = program.wait_for(
        lambda: (line := program.look(ROW, re.compile(f"^{re.escape(name)}, (un)?locked$"))) and line.find(BUTTON, button),
        f'the button "{button}" in the row of {name}')
    found.press()


def ask_to_shred(program, name):
    """Goes from the row of an item to the confirmation of a shred."""
    press_in_row(program, name, "Secure Shred")
    program.find(DIALOG, f'Secure delete "{name}"?')
    program.press(BUTTON, "Secure Delete")


def enter_item_password(program, name, password=ITEM_PASSWORD):
    program.says(f"Enter the password for '{name}':")
    program.find(FIELD, "Password").type(password)
    program.press(BUTTON, "Unlock")


def enter_master_password(program, password=MASTER_PASSWORD):
    program.find(FIELD, "Master Password").type(password)
    program.press(BUTTON, "Authenticate")


def open_preferences(program, section=None):
    """Opens the preferences, at this section if there is one."""
    program.press(BUTTON, "Preferences")
    program.find(DIALOG, PREFERENCES)
    if section is not None:
        program.press(TAB, f"Switch to {section} settings")
        program.find(None, f"{section} section")


def close_preferences(program):
    program.press(BUTTON, "Close Settings")
    program.gone(DIALOG, PREFERENCES)


def ask_for_new_master_password(program):
    """Opens the dialog in which a first master password is chosen, over the preferences."""
    open_preferences(program, "Security")
    program.press(BUTTON, "Set or Reset Master Password")
    program.find(DIALOG, "Set Master Password")


def set_master_password(program, password=MASTER_PASSWORD):
    ask_for_new_master_password(program)
    enter_new_password(program, password)
    program.says(MASTER_PASSWORD_IS_SET)
    close_preferences(program)


def wait_for_master_password(program):
    """Waits until the program knows that there is a master password."""
    open_preferences(program, "Security")
    program.says(MASTER_PASSWORD_IS_SET)
    close_preferences(program)


def unlock(program, name, password=ITEM_PASSWORD, master_password=None):
    press_in_row(program, name, "Unlock Item")
    if master_password is not None:
        enter_master_password(program, master_password)
    if password is not None:
        enter_item_password(program, name, password)
    grant_access(program)
    return row(program, name, "unlocked")


def lock(program, name, master_password=None):
    press_in_row(program, name, "Lock Item")
    if master_password is not None:
        enter_master_password(program, master_password)
    return row(program, name, "locked")


def remove_protection(program, name, locked=True, master_password=None):
    press_in_row(program, name, "Remove Protection")
    program.says(f"This will restore '{name}' to its original location and remove it from Quillhaven's protection. "
                 "Your original file will be safely restored.")
    dialog_button(program, "Remove Protection").press()
    if master_password is not None:
        enter_master_password(program, master_password)
    if locked:
        grant_access(program)
    program.gone(ROW, re.compile(f"^{re.escape(name)}, "))


def find_lost_items(program):
    """Opens the sheet of lost items from the notice, and waits until the search has ended."""
    program.find("alert", re.compile("in private storage|back at its place"))
    program.press(BUTTON, "Show")
    program.says(re.compile("needs? your decision"))


def dialog_button(program, name):
    """Returns a button outside the rows: the last one with that name."""

    def last():
        outside = [button for button in program.find_all(BUTTON, name)]
        return outside[-1] if outside else None

    return program.wait_for(last, f'the dialog\'s button "{name}"')


def add_attributes(path, access_list=True):
    """Gives a file properties that are easily lost in a move: an extended attribute and an access list."""
    subprocess.run(["setfattr", "-n", "user.quillhaven.note", "-v", "kept", str(path)], check=True)
    if access_list:
        subprocess.run(["setfacl", "-m", "u:65534:r", str(path)], check=True)


__all__ = [name for name in dir() if not name.startswith("_")]
