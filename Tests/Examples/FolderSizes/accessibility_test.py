"""Reads the program's window as a screen reader does: through the desktop's accessibility bus."""

import pathlib
import subprocess
import sys
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 20  # seconds


def children(element):
    return [element.get_child_at_index(i) for i in range(element.get_child_count())]


def wait_for_window():
    """The program's window: the only one that is on this bus."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            for application in children(Atspi.get_desktop(0)):
                for window in children(application):
                    if window.get_child_count() > 0:
                        return window
        except GLib.Error:
            pass  # it has not told everything yet
        time.sleep(0.05)
    sys.exit("no window appeared on the accessibility bus")


def main(program):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name, "Sample")
        folder.mkdir()
        (folder / "letters.txt").write_bytes(b"x" * 12)
        process = subprocess.Popen([program, str(folder)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            window = wait_for_window()
            role = window.get_role_name()
            texts = [element.get_name() for element in children(window)]
            roles = {element.get_role_name() for element in children(window)}
            places = [element.get_extents(Atspi.CoordType.WINDOW) for element in children(window)]
        finally:
            process.terminate()
            process.wait(PATIENCE)
    assert role == "frame", role
    assert "Sample" in texts, texts
    assert "letters.txt" in texts, texts
    row = texts.index("letters.txt")
    assert texts[row : row + 4] == ["letters.txt", "File", "12 bytes", "100 %"], texts
    assert "" not in texts, texts
    assert roles == {"label"}, roles
    assert all(place.width > 0 and place.height > 0 for place in places), [str(place) for place in places]
    print(f"{len(texts)} texts read: {texts}")


main(sys.argv[1])
