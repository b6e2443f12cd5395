"""ketra new: documents to start from, which are whole and good."""

import re

from host import GOOD, RESOURCES, SOURCE, USAGE, HostCase


class New(HostCase):
    def new(self, *arguments):
        return self.expect(GOOD, "new", *arguments).stdout.decode()

    def test_the_document_goes_to_standard_output_or_to_a_file(self):
        for full in ((), ("--full",)):
            with self.subTest(full=full):
                text = self.new(*full)
                self.assertEqual(self.new(*full, "-"), text)
                path = self.folder / f"engine{len(full)}.cfg"
                self.assertEqual(self.new(*full, path), "")
                self.assertEqual(path.read_text(), text)

    def test_it_has_no_faults_and_not_even_warnings(self):
        for full in ((), ("--full",)):
            with self.subTest(full=full):
                path = self.write(self.new(*full))
                done = self.expect(GOOD, "check", path, "--strict", "--resources", RESOURCES)
                self.assertEqual(done.stderr, b"")

    def test_it_runs(self):
        small = self.results(self.new(), "--strict")
        self.assertEqual(small["input"]["O/F"], 6)
        self.assertEqual(small["stations"]["exit"]["flow"]["areaRatio"], 15)
        self.assertEqual([a["separated"] for a in small["engine"]["ambient"]], [False])
        full = self.results(self.new("--full"))
        self.assertAlmostEqual(full["engine"]["contraction"], 3, places=3)
        self.assertEqual(full["engine"]["corrections"]["reaction"], 0.98)

    def test_the_full_document_names_every_key_that_the_format_has(self):
        known = set(re.findall(r'\b([A-Za-z][A-Za-z0-9_]*)\s*[=:]',
                               re.sub(r'"[^"]*"', '""',
                                      (SOURCE / "tests/cli/every-key.cfg").read_text())))
        known |= {"pressure", "pressureRatio", "contractionAreaRatio", "flowrate", "mixture",
                  "species", "ribsMaterial", "gasPressurizedFeedSystem", "type"}
        text = re.sub(r'"[^"]*"', '""', self.new("--full"))
        stated = set(re.findall(r'\b([A-Za-z][A-Za-z0-9_]*)\s*[=:]', text))
        self.assertEqual(known - stated, set())
        self.assertGreater(len(known), 100)

    def test_an_alternative_stated_in_place_of_the_one_above_it_is_good_too(self):
        text = self.new("--full")
        for old, new in (("contractionAreaRatio = 3.0;", "massFlux: { value = 1000.0; unit = "
                          '"kg/(m2-s)"; };'),
                         ("supersonic = true;  # which", "# which"),
                         ('pressure: { value = 1.0; unit = "atm"; };\n        # min',
                          'minPressure: { value = 0.0; unit = "atm"; };\n        maxPressure: '
                          '{ value = 1.0; unit = "atm"; };\n        # min')):
            with self.subTest(new=new):
                self.assertEqual(text.count(old), 1)
                self.check(GOOD, text.replace(old, new), "--strict")

    def test_a_file_that_is_there_stays_unless_told(self):
        path = self.write("mine")
        done = self.expect(USAGE, "new", path)
        self.assertIn(b"the file is there already", done.stderr)
        self.assertEqual(path.read_text(), "mine")
        self.expect(USAGE, "new", self.folder)
        self.new(path, "--force")
        self.assertIn("combustionChamberConditions", path.read_text())

    def test_nothing_but_a_file_and_flags_is_understood(self):
        self.expect(USAGE, "new", "a.cfg", "b.cfg")
        self.expect(USAGE, "new", "--half")
        self.assertIn(b"--full", self.expect(GOOD, "new", "--help").stdout)
        self.assertEqual(list(self.folder.iterdir()), [])
