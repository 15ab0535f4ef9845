"""Drives a program of the desktop from outside, as a user would: AT-SPI to see, X test events to act.

Each layer uses those above it in this list only:

    node      one accessible object as it was read, and how names are compared
    bus       calls to the program over D-Bus, and which program that is
    tree      reading and finding what the program shows
    actions   windows, mouse, keyboard, menus, dialogs
    views     tables, trees, lists, combo boxes; with it the driver, Ui, is whole
    command   the command line of uidrive.py
"""

from .bus import UiError
from .command import main
from .views import Ui

__all__ = ["Ui", "UiError", "main"]
