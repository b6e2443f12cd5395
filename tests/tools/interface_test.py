#!/usr/bin/env python3
"""Tests of tools/interface.py on small made-up trees."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(__file__).resolve().parents[2] / "tools" / "interface.py"

SPECIES = """#pragma once

namespace thermo {
class Database; // known elsewhere
class KETRA_API Atom;

/// One substance. Its polynomials
/// are read-only.
class KETRA_API Species final : public util::Object
{
public:
    class Inner
    {
    };
    /// Molar mass.
    KETRA_API static double getMm() { return 1.0; }

private:
    std::vector<int> numbers{1, 2};
};

/// An owned \\p T, or
/// none.
template <class T, class U> class Holder
{
};

/// A row of a table, not exported.
struct Row {
    int number;
};

extern template class KETRA_API Holder<int, int>;
} // namespace thermo
"""

FLAT = """#pragma once

/// Runs \\p path. Long.
KETRA_API void run(const char* path);
/// Runs it
/// often.
KETRA_API thermo::Species* run(thermo::Species* species,
                               int times);
namespace {
inline int hidden() { return 0; }
} // namespace
"""

ROWS = [
    "| `thermo::Species` | [`ketra/thermo/Species.h`](../src/ketra/thermo/Species.h) | One substance. |",
    "| `thermo::Holder` | [`ketra/thermo/Species.h`](../src/ketra/thermo/Species.h) | An owned `T`, or none. |",
    "| `run(const char* path)` | [`ketra/api/ketra.h`](../src/ketra/api/ketra.h) | Runs `path`. |",
    "| `run(thermo::Species* species, int times)` | [`ketra/api/ketra.h`](../src/ketra/api/ketra.h) "
    "| Runs it often. |",
]


class InterfaceTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.root = pathlib.Path(self.folder.name)
        self.page = self.root / "docs" / "interface.md"
        self.page.parent.mkdir()
        self.write("thermo/Species.h", SPECIES)
        self.write("api/ketra.h", FLAT)
        self.write("thermo/detail/Secret.h", "/// Secret.\nclass KETRA_API Secret {};\n")
        self.write("report/Table.h", "/// Table.\nclass Table {};\n")
        self.write("ketra.h", "#include <ketra/thermo/Species.h>\n")

    def write(self, name, text):
        path = self.root / "src" / "ketra" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def run_tool(self, *options):
        result = subprocess.run([sys.executable, TOOL, "--root", self.root, *options],
                                capture_output=True, text=True, check=False)
        return result.returncode, result.stdout.splitlines()

    def edit_page(self, old, new):
        text = self.page.read_text(encoding="utf-8")
        self.assertIn(old, text)
        self.page.write_text(text.replace(old, new), encoding="utf-8")

    def assert_finds(self, *lines):
        status, found = self.run_tool()
        self.assertEqual(found, [*lines, f"interface: {len(lines)} faults"])
        self.assertEqual(status, 1)

    def test_a_written_page_has_a_row_for_each_class_and_function(self):
        self.assertEqual(self.run_tool("--write"), (0, []))
        self.assertEqual(self.run_tool(), (0, []))
        rows = [line for line in self.page.read_text(encoding="utf-8").splitlines() if line.startswith("| `")]
        self.assertEqual(rows, ROWS)

    def test_sections_follow_the_layers(self):
        self.write("runtime/Exception.h", "/// Root.\nclass KETRA_API Exception\n{\n};\n")
        self.write("zzz/New.h", "/// New.\nclass KETRA_API New\n{\n};\n")
        self.run_tool("--write")
        sections = [line for line in self.page.read_text(encoding="utf-8").splitlines() if line.startswith("## ")]
        self.assertEqual(sections, ["## `runtime/`", "## `thermo/`", "## `api/`", "## `zzz/`"])

    def test_a_missing_class_is_found(self):
        self.run_tool("--write")
        self.write("thermo/Atom.h", "namespace thermo {\n/// An atom.\nclass KETRA_API Atom\n{\n};\n}\n")
        self.assert_finds("docs/interface.md: lacks thermo::Atom of ketra/thermo/Atom.h")

    def test_a_missing_function_is_found(self):
        self.run_tool("--write")
        self.write("api/ketra.h", FLAT + "/// Stops.\nKETRA_API void stop();\n")
        self.assert_finds("docs/interface.md: lacks stop() of ketra/api/ketra.h")

    def test_a_missing_overload_is_found(self):
        self.run_tool("--write")
        self.edit_page(ROWS[3] + "\n", "")
        self.assert_finds(
            "docs/interface.md: lacks run(thermo::Species* species, int times) of ketra/api/ketra.h")

    def test_a_name_that_no_header_has_is_found(self):
        self.run_tool("--write")
        self.edit_page(ROWS[0], ROWS[0] + "\n" + ROWS[0].replace("thermo::Species`", "thermo::Phantom`"))
        self.assert_finds("docs/interface.md: names thermo::Phantom, which ketra/thermo/Species.h does not have")

    def test_a_class_in_another_header_is_found(self):
        self.run_tool("--write")
        self.edit_page(ROWS[1], ROWS[1].replace("[`ketra/thermo/Species.h`]", "[`ketra/thermo/Holder.h`]"))
        self.assert_finds("docs/interface.md: lacks thermo::Holder of ketra/thermo/Species.h",
                          "docs/interface.md: names thermo::Holder, which ketra/thermo/Holder.h does not have")

    def test_a_missing_page_lacks_everything(self):
        status, lines = self.run_tool()
        self.assertEqual(status, 1)
        self.assertEqual(len(lines), len(ROWS) + 1)

    def test_a_missing_comment_is_found(self):
        self.write("thermo/Atom.h", "/// Of something else.\n\nclass KETRA_API Atom\n{\n};\n")
        self.run_tool("--write")
        self.assert_finds("src/ketra/thermo/Atom.h: Atom has no comment")

    def test_another_purpose_is_found(self):
        self.run_tool("--write")
        self.edit_page("| One substance. |", "| One phase. |")
        self.assert_finds(
            "docs/interface.md: differs from the headers; write it anew with tools/interface.py --write")

    def test_an_export_that_is_not_understood_stops_it(self):
        self.write("api/ketra.h", FLAT + "/// A number.\nextern KETRA_API int number;\n")
        self.assertEqual(self.run_tool()[0], 1)
        self.assertEqual(self.run_tool()[1], [])  # a trace of the exception, and no list

    def test_every_function_is_in_the_program_of_addresses(self):
        status, lines = self.run_tool("--addresses")
        self.assertEqual(status, 0)
        text = "\n".join(lines)
        self.assertIn("static_cast<void (*)(const char* path)>(&run)", text)
        self.assertIn("static_cast<thermo::Species* (*)(thermo::Species* species, int times)>(&run)", text)
        self.assertIn("addresses[2]", text)


if __name__ == "__main__":
    unittest.main()
