"""Reads the form as a screen reader does, changes it, and presses Save."""

import json
import pathlib
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parents[1]))
from accessible_program import Atspi, Program, wait_for  # noqa: E402

SAMPLE = {
    "contacts": [
        {"name": "Ada", "email": "ada@example.org", "favourite": True},
        {"name": "Difference & Sons", "kind": "company"},
    ]
}


def text_of(element):
    return Atspi.Text.get_text(element, 0, -1)


def has(element, state):
    return element.get_state_set().contains(state)


def press(element):
    names = [Atspi.Action.get_action_name(element, i) for i in range(Atspi.Action.get_n_actions(element))]
    (name,) = {"Press", "Toggle"} & set(names)  # of check boxes, the latter
    assert Atspi.Action.do_action(element, names.index(name)), names


with tempfile.TemporaryDirectory() as folder:
    file = pathlib.Path(folder, "people.json")
    file.write_text(json.dumps(SAMPLE))
    with Program(sys.argv[1], file) as program:
        # Fields are named by the labels before them; what they hold and how they stand can be read.
        assert text_of(program.find("text", "Name")) == "Ada"
        assert text_of(program.find("text", "E-mail")) == "ada@example.org"
        assert text_of(program.find("text", "Phone")) == ""
        assert has(program.find("text", "Name"), Atspi.StateType.EDITABLE)
        assert has(program.find("check box", "Favourite"), Atspi.StateType.CHECKED)
        assert has(program.find("radio button", "Person"), Atspi.StateType.CHECKED)
        assert not has(program.find("radio button", "Company"), Atspi.StateType.CHECKED)
        assert has(program.find("radio button", "Ada"), Atspi.StateType.CHECKED)
        assert "tool bar" in [role for role, _ in program.tree()], program.tree()
        # What is hidden cannot be reached: the question before closing, and the list's unused rows.
        names = [name for _, name in program.tree()]
        assert "Discard" not in names, names
        assert "Next Page" not in names, names

        # A user who cannot see it changes it.
        assert Atspi.EditableText.set_text_contents(program.find("text", "Name"), "Ada Lovelace")
        press(program.find("check box", "Favourite"))
        wait_for("the change of state", lambda: not has(program.find("check box", "Favourite"), Atspi.StateType.CHECKED))
        wait_for("the change in the list", lambda: program.find("radio button", "Ada Lovelace"))
        press(program.find("push button", "Save"))
        wait_for("the file", lambda: "Ada Lovelace" in file.read_text())
    first = json.loads(file.read_text())["contacts"][0]
    assert first["name"] == "Ada Lovelace" and not first["favourite"], first
print("read, changed and saved")
