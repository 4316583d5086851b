"""The list of equivalent mutants."""
import pathlib
import tempfile
import unittest

import build
import equivalents
import operators

ENTRY = """[[equivalent]]
file = "a.cpp"
function = "f"
source = "if (a < b)"
becomes = "if (a <= b)"
reason = "they are never the same"
"""


def read(text):
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "list.toml"
        path.write_text(text)
        return equivalents.read(path)


class Entries(unittest.TestCase):
    def test_an_entry_is_known_by_its_function_and_its_lines(self):
        self.assertEqual(read(ENTRY), {
            ("a.cpp", "f", "if (a < b)", "if (a <= b)", 1): "they are never the same"})

    def test_an_entry_without_a_reason_is_refused(self):
        with self.assertRaises(SystemExit):
            read(ENTRY.replace("they are never the same", " "))

    def test_an_entry_that_stands_twice_is_refused(self):
        with self.assertRaises(SystemExit):
            read(ENTRY + ENTRY)

    def test_an_entry_without_its_mutant_is_stale(self):
        mutant = operators.Mutant("a.cpp", "comparison", "f", [], source="if (a < b)",
                                  becomes="if (a <= b)")
        self.assertEqual(equivalents.stale(read(ENTRY), [mutant]), [])
        self.assertEqual(len(equivalents.stale(read(ENTRY), [])), 1)

    def test_the_line_of_every_entry_stands_in_its_source(self):
        for file, _, source, _, _ in equivalents.read():
            text = operators.one_line((build.ROOT / file).read_text("latin-1"))
            self.assertIn(source, text, file)
