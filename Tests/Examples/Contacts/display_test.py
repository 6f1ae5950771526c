"""Uses the program as somebody does who sits before it: with a real pointer and keyboard, on an X server."""

import json
import pathlib
import subprocess
import sys
import tempfile
import time

PATIENCE = 20  # seconds until the test gives up


def wait_for(what, condition):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        answer = condition()
        if answer:
            return answer
        time.sleep(0.05)
    raise AssertionError(f"{what}: did not happen in {PATIENCE} s")


def xdotool(*arguments):
    done = subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True)
    return done.stdout.split()


class Contacts:
    """The program on the screen."""

    def __init__(self, program, file):
        self.process = subprocess.Popen([program, "--appearance", "light", str(file)], stderr=subprocess.DEVNULL)
        title = f"^{file.name} – Contacts$"
        self.window = wait_for("a window", lambda: xdotool("search", "--onlyvisible", "--name", title))[0]
        wait_for("the keyboard", self.has_keyboard)

    def has_keyboard(self):
        xdotool("windowactivate", self.window)
        return xdotool("getactivewindow") == [self.window]

    def windows(self):
        return xdotool("search", "--onlyvisible", "--pid", self.process.pid)

    def keys(self, *names):
        xdotool("key", "--delay", "5", *names)

    def type(self, text):
        xdotool("type", "--delay", "5", text)

    def click(self, x, y):
        xdotool("mousemove", "--window", self.window, x, y, "click", 1)

    def close(self):
        xdotool("mousemove", "--window", self.window, 300, 200, "key", "ctrl+alt+x")
        assert self.process.wait(PATIENCE) == 0


def wait_for_file(file, name):
    def read():
        return file.exists() and name in file.read_text() and json.loads(file.read_text())["contacts"]

    return wait_for("the file", read)


program_path = sys.argv[1]
with tempfile.TemporaryDirectory() as folder:
    file = pathlib.Path(folder, "people.json")

    contacts = Contacts(program_path, file)
    alone = contacts.windows()
    contacts.click(30, 20)  # New, in the toolbar; the caret is then in the name
    contacts.type("Ada Lovelace")
    contacts.keys("ctrl+a", "ctrl+c", "Tab", "ctrl+v")  # the name in the e-mail field, too
    contacts.keys("ctrl+z")  # and not
    contacts.type("ada@example.org")
    contacts.keys("Tab")
    contacts.type("+44 20 7946 0018")
    contacts.keys("Tab", "Right")  # from person to company
    contacts.keys("Tab", "space")  # the colours
    wait_for("the palette", lambda: contacts.windows() != alone)
    contacts.keys("Escape")
    wait_for("the palette's end", lambda: contacts.windows() == alone)
    contacts.keys("Tab", "space")  # favourite
    contacts.keys("Tab", "space")  # help
    wait_for("the help", lambda: contacts.windows() != alone)
    contacts.keys("Escape")
    wait_for("the help's end", lambda: contacts.windows() == alone)
    contacts.keys("ctrl+s")
    (contact,) = wait_for_file(file, "Ada Lovelace")
    contacts.close()

    assert contact["name"] == "Ada Lovelace", contact
    assert contact["email"] == "ada@example.org", contact
    assert contact["phone"] == "+44 20 7946 0018", contact
    assert contact["kind"] == "company", contact
    assert contact["favourite"], contact

    # Reopened, it shows the same, and leaves the file alone; changed, it asks, and saves on Return.
    written = file.read_text()
    again = Contacts(program_path, file)
    again.close()
    assert file.read_text() == written
    again = Contacts(program_path, file)
    again.keys("ctrl+n")
    again.type("Grace Hopper")
    xdotool("mousemove", "--window", again.window, 300, 200, "key", "ctrl+alt+x")
    again.keys("Return")
    assert again.process.wait(PATIENCE) == 0
    assert [person["name"] for person in json.loads(file.read_text())["contacts"]] == ["Ada Lovelace", "Grace Hopper"]

    # A large file is written in the background; closed at once, the program ends when it is there as a whole.
    file.write_text(json.dumps({"contacts": [{"name": "Ada"}] * 100_000}))
    large = Contacts(program_path, file)
    large.keys("ctrl+n")
    large.type("Grace Hopper")
    large.keys("ctrl+s")
    large.close()
    people = json.loads(file.read_text())["contacts"]
    assert len(people) == 100_001 and people[-1]["name"] == "Grace Hopper", len(people)
    assert list(file.parent.iterdir()) == [file]
print("typed, copied, undone, chosen, shown, dismissed, saved, reopened, and saved in the background")
