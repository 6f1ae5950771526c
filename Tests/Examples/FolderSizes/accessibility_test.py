"""Reads the program's window as a screen reader does, and opens a folder in it."""

import pathlib
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parents[1]))
from accessible_program import Atspi, Program, children, descendants, wait_for  # noqa: E402


def rows(program):
    """Those of the list once it is uncovered, by their names."""
    wait_for("the list", lambda: ("label", "Total") in program.tree())
    return {row.get_name(): row for row in descendants(program.window) if row.get_role_name() == "push button"}


def press(element):
    names = [Atspi.Action.get_action_name(element, i) for i in range(Atspi.Action.get_n_actions(element))]
    assert Atspi.Action.do_action(element, names.index("Press")), names


with tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name, "Sample")
    (folder / "Music").mkdir(parents=True)
    (folder / "letters.txt").write_bytes(b"x" * 12)
    (folder / "Music" / "song").write_bytes(b"x" * 36)
    with Program(sys.argv[1], folder) as program:
        list_rows = rows(program)
        role = program.window.get_role_name()
        tree = program.tree()
        places = [element.get_extents(Atspi.CoordType.WINDOW) for element in descendants(program.window)]
        assert {"Music", "letters.txt"} <= set(list_rows), tree
        texts = [text.get_name() for text in children(list_rows["letters.txt"])]
        has_focus = list_rows["Music"].get_state_set().contains(Atspi.StateType.FOCUSED)
        press(list_rows["Music"])
        wait_for("the other folder", lambda: ("label", "song") in program.tree())
        press(rows(program)["Enclosing Folder"])
        wait_for("the first folder", lambda: ("label", "letters.txt") in program.tree())

assert role == "frame", role
assert ("label", "Sample") in tree, tree
assert texts == ["letters.txt", "File", "12 bytes", "25 %"], texts
assert has_focus, "the keyboard is in the list"
assert {role for role, _ in tree} == {"label", "push button", "tool bar"}, tree
assert "" not in [name for role, name in tree if role != "tool bar"], tree
assert all(place.width > 0 and place.height > 0 for place in places), [str(place) for place in places]
print(f"{len(tree)} elements read: {tree}")
