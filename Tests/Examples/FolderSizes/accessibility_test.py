"""Reads the program's window as a screen reader does."""

import pathlib
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parents[1]))
from accessible_program import Atspi, Program, children  # noqa: E402

with tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name, "Sample")
    folder.mkdir()
    (folder / "letters.txt").write_bytes(b"x" * 12)
    with Program(sys.argv[1], folder) as program:
        role = program.window.get_role_name()
        texts = [element.get_name() for element in children(program.window)]
        roles = {element.get_role_name() for element in children(program.window)}
        places = [element.get_extents(Atspi.CoordType.WINDOW) for element in children(program.window)]

assert role == "frame", role
assert "Sample" in texts, texts
assert "letters.txt" in texts, texts
row = texts.index("letters.txt")
assert texts[row : row + 4] == ["letters.txt", "File", "12 bytes", "100 %"], texts
assert "" not in texts, texts
assert roles == {"label"}, roles
assert all(place.width > 0 and place.height > 0 for place in places), [str(place) for place in places]
print(f"{len(texts)} texts read: {texts}")
