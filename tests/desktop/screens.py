# SPDX-License-Identifier: GPL-3.0-or-later

"""The screens and sheets of the program, one function for each: it opens the screen, yields while it is shown, and closes it.
It yields the title of a sheet that is below another one."""

import re
from contextlib import contextmanager

import flows
from desktop_driver import BUTTON, DIALOG, FIELD, ROW, SWITCH, key
from home_on_disk import PLACEHOLDER


@contextmanager
def sheet(program, text, *steps):
    """A sheet that shows the text (in no other screen), and that Escape closes."""
    for step in steps:
        step()
    program.says(text)
    program.wait_for(lambda: (focused := program.focused()) and focused.role != DIALOG, "the focus in the sheet")
    try:
        yield
    finally:
        key("Escape")
        program.gone(None, text)


def empty(test):
    @contextmanager
    def shown():
        test.program.find(BUTTON, flows.PROTECT)
        yield
    return shown()


def method(test):
    return sheet(test.program, "Protect other.txt", lambda: flows.open_protection(test.program, test.file("other.txt")))


def new_password(test):
    program = test.program
    return sheet(program, "Confirm password", lambda: flows.open_protection(program, test.file("other.txt")),
                 lambda: program.press(BUTTON, re.compile(f"^{flows.PASSWORD_CARD}")),
                 lambda: program.gone(None, "Protect other.txt"))


ITEM_PASSWORD_QUESTION = "Enter the password for 'letter.txt':"


def item_password(test):
    return sheet(test.program, ITEM_PASSWORD_QUESTION,
                 lambda: flows.press_in_row(test.program, "letter.txt", "Unlock Item"))


def removal(test):
    return sheet(test.program, re.compile("^This will restore"),
                 lambda: flows.press_in_row(test.program, "letter.txt", "Remove Protection"))


DELETE_QUESTION = 'Secure delete "letter.txt"?'


def delete_question(test):
    return sheet(test.program, DELETE_QUESTION,
                 lambda: flows.press_in_row(test.program, "letter.txt", "Secure Shred"))


def shred_confirmation(test):
    return sheet(test.program, "Permanent Deletion Warning", lambda: flows.ask_to_shred(test.program, "letter.txt"),
                 lambda: test.program.gone(DIALOG, DELETE_QUESTION))


def bulk_removal(test):
    @contextmanager
    def shown():
        with selection(test):
            with sheet(test.program, re.compile("^Remove Protection from"), lambda: test.program.press(BUTTON, "Remove (1)")):
                yield
    return shown()


def duplicate_question(test):
    return sheet(test.program, re.compile("^Until the copy is protected"),
                 lambda: flows.press_in_row(test.program, "letter.txt", "Duplicate as Encrypted Copy"))


def master_password(test):
    return sheet(test.program, "Master Password", lambda: flows.press_in_row(test.program, "letter.txt", "Unlock Item"))


@contextmanager
def bulk_progress(test):
    """The progress of an operation that waits for a password."""
    program = test.program
    program.press(BUTTON, "Select")
    program.press(BUTTON, "Select All")
    program.press(BUTTON, "Unlock (1)")
    program.press(BUTTON, flows.ACCESS_PROMPT)
    with sheet(program, ITEM_PASSWORD_QUESTION):
        yield "Bulk Operation"
    program.gone(DIALOG, "Bulk Operation")
    program.gone(None, "1 selected")


@contextmanager
def shred_progress(test):
    """The progress of a shred that waits for a password; without one, the item of its own is destroyed as well."""
    program = test.program
    flows.protect_with_password(program, test.file("notes.txt"))
    flows.ask_to_shred(program, "notes.txt")
    program.press(SWITCH, re.compile("^I understand"))
    program.find(FIELD, re.compile("to confirm:$")).type("shred permanently")
    program.press(BUTTON, "🗑️ Shred Permanently")
    with sheet(program, "Enter the password for 'notes.txt':"):
        yield "Secure Shredding in Progress"
    program.gone(DIALOG, "Secure Shredding in Progress")
    program.gone(ROW, re.compile("^notes.txt"))


@contextmanager
def row_error(test):
    """Reports that a copy could not be made, since the item's container is missing."""
    program = test.program
    [container] = test.home.storage.iterdir()
    away = test.home.path / "container"
    container.rename(away)
    with sheet(program, "Error", lambda: flows.press_in_row(program, "letter.txt", "Duplicate as Encrypted Copy"),
               lambda: program.press(BUTTON, "Duplicate")):
        yield
    away.rename(container)


def error(test):
    program = test.program
    return sheet(program, re.compile("cannot be protected because"), lambda: program.press(BUTTON, flows.PROTECT),
                 lambda: flows.choose_in_panel(program, test.home.documents))


def bulk_picker(test):
    return sheet(test.program, "Bulk File Protection", lambda: test.program.press(BUTTON, "Bulk Protect"))


def shortcuts(test):
    return sheet(test.program, "Keyboard Shortcuts", lambda: key("F1"))


def preferences(section):
    return lambda test: sheet(test.program, flows.PREFERENCES, lambda: flows.open_preferences(test.program, section))


@contextmanager
def new_master_password(test):
    with preferences("Security")(test):
        with sheet(test.program, "Confirm password",
                   lambda: test.program.press(BUTTON, "Set or Reset Master Password")):
            yield


@contextmanager
def recovery(test):
    with preferences("Backup")(test):
        with sheet(test.program, "Recover All Files",
                   lambda: test.program.press(BUTTON, "Recover Files")):
            yield


@contextmanager
def selection(test):
    test.program.press(BUTTON, "Select")
    test.program.press(BUTTON, "Select All")
    test.program.says(re.compile("^[0-9]+ selected"))
    yield
    test.program.press(BUTTON, "Done")
    test.program.gone(None, re.compile("^[0-9]+ selected"))


@contextmanager
def filter_menu(test):
    test.program.press(BUTTON, re.compile("^Status"))
    test.program.find("menu item", "Locked")
    yield
    key("Escape")
    test.program.gone("menu item", "Locked")


@contextmanager
def row_menu(test):
    test.program.find(BUTTON, "Unlock Item").focus()
    key("shift+F10")
    test.program.find("menu item", "Copy Path")
    yield
    key("Escape")
    test.program.gone("menu item", "Copy Path")


@contextmanager
def search_without_result(test):
    field = test.program.find(FIELD, "Search items")
    field.type("nothing")
    test.program.says("No items match your search criteria")
    yield
    key("Escape")
    test.program.find(ROW, "letter.txt, locked")


@contextmanager
def lost_items(test):
    test.program.quit()
    letter = test.home.documents / "letter.txt"
    test.home.forget(letter)
    letter.write_bytes(PLACEHOLDER)
    test.program = test.start()
    test.program.find("alert", re.compile("in private storage|back at its place"))
    test.program.wait_until_active()
    with sheet(test.program, re.compile("needs? your decision"), lambda: test.program.press(BUTTON, "Show")):
        yield


WITHOUT_ITEMS = {"empty": empty, "method": method, "new password": new_password, "error": error, "bulk picker": bulk_picker,
                 "shortcuts": shortcuts, "general": preferences("General"), "security": preferences("Security"),
                 "backup": preferences("Backup"), "new master password": new_master_password, "recovery": recovery}
WITH_AN_ITEM = {"list": empty, "selection": selection, "filter": filter_menu, "row menu": row_menu,
                "no results": search_without_result, "item password": item_password, "removal": removal,
                "delete question": delete_question, "shred confirmation": shred_confirmation, "bulk removal": bulk_removal,
                "duplicate": duplicate_question, "bulk progress": bulk_progress, "shred progress": shred_progress,
                "row error": row_error, "lost items": lost_items}
