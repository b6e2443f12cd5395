#!/usr/bin/env python3
"""Tests of tools/check-layers.py and tools/check-text.py on small made-up trees."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOLS = pathlib.Path(__file__).resolve().parents[2] / "tools"
ATTRIBUTES = "resources/*.inp -text\ntests/reports/** -text\ntests/documents/**/*.cfg -text\n"


class CheckerTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.root = pathlib.Path(self.folder.name)
        self.write(".gitattributes", ATTRIBUTES)

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(text.encode("utf-8"))

    def check(self, tool):
        """Status and lines of a checker over the made-up tree."""
        result = subprocess.run([sys.executable, TOOLS / tool, "--root", self.root],
                                capture_output=True, text=True, check=False)
        return result.returncode, result.stdout.splitlines()

    def assert_finds(self, tool, line):
        status, lines = self.check(tool)
        self.assertIn(line, lines)
        self.assertEqual(status, 1)

    def assert_clean(self, tool):
        self.assertEqual(self.check(tool), (0, []))


class LayersTest(CheckerTest):
    def write_source(self, name, include, listed=True):
        """A file of the library with one include, listed where files are listed."""
        self.write("src/ketra/" + name, f"#include {include}\n")
        folder, _, base = name.rpartition("/")
        if listed:
            self.write(f"src/ketra/{folder}/CMakeLists.txt", f"target_sources(ketra PRIVATE {base})\n")
            self.write("src/ketra/CMakeLists.txt", "target_sources(ketra PRIVATE ketra.h)\n")
            self.write("src/ketra/ketra.h", f"#include <ketra/{name}>\n")

    def finds(self, name, include, why, listed=True):
        self.write_source(name, include, listed)
        self.assert_finds("check-layers.py", f"src/ketra/{name}:1: {why}")

    def test_a_lower_layer_may_be_seen(self):
        self.write_source("reaction/Product.h", "<ketra/thermo/Species.h>")
        self.assert_clean("check-layers.py")

    def test_a_higher_layer_may_not_be_seen(self):
        self.finds("thermo/Species.cpp", "<ketra/reaction/Product.h>",
                   "ketra/reaction/Product.h: thermo does not see reaction")

    def test_the_input_model_sees_the_support_layer_only(self):
        self.finds("thermo/input/Length.cpp", "<ketra/thermo/Species.h>",
                   "ketra/thermo/Species.h: thermo/input does not see thermo")

    def test_the_input_model_is_not_seen_from_below(self):
        self.finds("thermo/Species.cpp", "<ketra/thermo/input/Length.h>",
                   "ketra/thermo/input/Length.h: thermo does not see thermo/input")

    def test_detail_is_its_subsystems_own(self):
        self.finds("performance/Combustor.cpp", "<ketra/reaction/detail/Iteration.h>",
                   "ketra/reaction/detail/Iteration.h: detail of reaction is its own")

    def test_a_public_header_includes_no_internal_one(self):
        self.finds("reaction/Product.h", "<ketra/reaction/detail/Iteration.h>",
                   "ketra/reaction/detail/Iteration.h: a public header includes an internal one")

    def test_a_public_header_includes_no_third_party(self):
        self.finds("thermo/input/Length.h", "<libconfig.h++>",
                   "libconfig.h++: a public header includes the standard library only")

    def test_a_third_party_library_stays_behind_its_folder(self):
        self.finds("reaction/Product.cpp", "<Eigen/Dense>", "Eigen/Dense: only math includes it")

    def test_includes_in_quotes_are_found(self):
        self.finds("thermo/Species.cpp", '"Species.h"',
                   "Species.h: includes of our own are written <ketra/...>")

    def test_a_file_that_no_list_names_is_found(self):
        self.finds("thermo/Species.cpp", "<vector>", "stands in no CMakeLists.txt", listed=False)

    def test_a_public_header_missing_from_the_umbrella_is_found(self):
        self.finds("thermo/Species.h", "<vector>", "public, but not in ketra.h", listed=False)

    def test_a_folder_without_a_layer_is_found(self):
        self.finds("misc/Odd.cpp", "<vector>", "folder misc has no layer")

    def test_programs_include_public_headers_only(self):
        self.write("apps/ketra/main.cpp", "#include <ketra/report/Table.h>\n")
        self.assert_finds("check-layers.py", "apps/ketra/main.cpp:1: ketra/report/Table.h: "
                                             "programs include public headers only")


class TextTest(CheckerTest):
    def finds(self, name, text, line, fault):
        self.write(name, text)
        self.assert_finds("check-text.py", f"{name}:{line}: {fault}")

    def test_a_clean_tree_passes(self):
        self.write("src/a.cpp", "int a;\n")
        self.write("Makefile", "all:\n\ttrue\n")
        self.write("tests/reports/case/report.si.txt", "one\r\n\r\n")
        self.write("resources/thermo.inp", "\ttab and blanks  \r\n")
        self.assert_clean("check-text.py")

    def test_a_carriage_return_is_found(self):
        self.finds("src/a.cpp", "int a;\nint b;\r\n", 2, "carriage return")

    def test_a_tab_is_found(self):
        self.finds("src/a.cpp", "\tint a;\n", 1, "tab")

    def test_a_blank_at_the_end_is_found(self):
        self.finds("README.md", "text \n", 1, "blanks at the end of the line")

    def test_a_missing_last_line_feed_is_found(self):
        self.finds("src/a.h", "int a;\nint b;", 2, "no line feed at the end of the file")

    def test_a_long_line_is_found(self):
        self.finds("src/a.h", "//" + "x" * 99 + "\n", 1, "longer than 100 characters")

    def test_a_table_kept_from_the_formatter_may_be_wide(self):
        wide = "//" + "x" * 99 + "\n"
        self.write("src/a.h", "// clang-format off\n" + wide + "// clang-format on\n")
        self.assert_clean("check-text.py")
        self.finds("src/b.h", "// clang-format off\n// clang-format on\n" + wide, 3,
                   "longer than 100 characters")

    def test_a_report_with_bare_line_feeds_is_found(self):
        self.finds("tests/reports/case/report.si.txt", "one\r\ntwo\n", 2,
                   "a report's line ends in CR LF")

    def test_missing_attributes_are_found(self):
        self.write(".gitattributes", "* text=auto\n")
        self.assert_finds("check-text.py", ".gitattributes:1: lacks 'resources/*.inp -text'")


if __name__ == "__main__":
    unittest.main()
