"""A program as assistive technology sees it: through the desktop's accessibility bus, on which it is alone."""

import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 20  # seconds until a test gives up


def children(element):
    return [element.get_child_at_index(i) for i in range(element.get_child_count())]


def descendants(element):
    for child in children(element):
        yield child
        yield from descendants(child)


def wait_for(what, condition):
    """What the condition answers once that is something; elements that go away meanwhile are no error."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            answer = condition()
            if answer:
                return answer
        except GLib.Error:
            pass
        time.sleep(0.05)
    raise AssertionError(f"{what}: did not happen in {PATIENCE} s")


def window_with_content():
    for application in children(Atspi.get_desktop(0)):
        for window in children(application):
            if window.get_child_count() > 0:
                return window
    return None


class Program:
    """Runs a program while a `with` block uses its window."""

    def __init__(self, *arguments):
        self.arguments = [str(argument) for argument in arguments]

    def __enter__(self):
        self.process = subprocess.Popen(self.arguments, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            self.window = wait_for("a window on the accessibility bus", window_with_content)
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(PATIENCE)

    def find(self, role, name):
        for element in descendants(self.window):
            if element.get_role_name() == role and element.get_name() == name:
                return element
        raise AssertionError(f"no {role} is named {name}: {self.tree()}")

    def tree(self):
        return [(element.get_role_name(), element.get_name()) for element in descendants(self.window)]
