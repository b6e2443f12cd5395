"""ketra compare: the report of the first document, and the key figures of all."""

import json

from host import (CHAMBER, COLD, FROZEN, GOOD, NOT_CONVERGED, SEA_LEVEL, USAGE, HostCase, engine)


class Compare(HostCase):
    def compare(self, code, *texts, arguments=()):
        paths = [self.write(text, f"{name}.cfg") for name, text in zip("abc", texts)]
        return self.expect(code, "compare", *paths, "--resources", self.small, *arguments)

    def figures(self, done):
        """The rows of the table by name, each with its cells behind the unit."""
        table = done.stdout.decode().rsplit("\n\n", 1)[1]
        rows = {}
        for line in table.splitlines()[1:]:
            cells = [c for c in line.split("  ") if c.strip()]
            rows[cells[0].strip()] = [c.strip() for c in cells[1:]]
        return rows

    def test_the_report_of_the_first_stands_in_front(self):
        report = self.expect(GOOD, "run", self.write(engine(SEA_LEVEL)), "--resources",
                             self.small).stdout
        done = self.compare(GOOD, engine(SEA_LEVEL), engine(FROZEN, SEA_LEVEL))
        self.assertTrue(done.stdout.startswith(report))
        self.assertEqual(done.stderr, b"")

    def test_two_documents_stand_beside_each_other_with_their_difference(self):
        done = self.compare(GOOD, engine(), engine(FROZEN))
        header = done.stdout.decode().rsplit("\n\n", 1)[1].splitlines()[0].split()
        self.assertEqual(header, ["a", "b", "difference"])
        unit, a, b, difference = self.figures(done)["specific impulse, vacuum"]
        shifting = self.results(engine())["stations"]["exit"]["performance"]["vacuum"]["Is"]
        frozen = self.results(engine(FROZEN))["stations"]["exit"]["performance"]["vacuum"]["Is"]
        self.assertEqual((unit, a, b), ("m/s", "%.2f" % shifting, "%.2f" % frozen))
        self.assertEqual(difference, "%+.3f %%" % (100 * (frozen / shifting - 1)))

    def test_figures_that_a_document_does_not_have_are_left_open(self):
        done = self.compare(GOOD, CHAMBER, engine(), engine(FROZEN))
        figures = self.figures(done)
        self.assertEqual(figures["exit area ratio"], ["-", "40.000", "40.000"])
        self.assertEqual(figures["mixture ratio O/F"], ["6.0000"] * 3)

    def test_english_units(self):
        done = self.compare(GOOD, engine(), engine(FROZEN), arguments=("--english",))
        si = self.figures(self.compare(GOOD, engine(), engine(FROZEN)))
        english = self.figures(done)
        self.assertEqual(english["characteristic velocity"][0], "ft/s")
        self.assertAlmostEqual(float(english["characteristic velocity"][1]) * 0.3048,
                               float(si["characteristic velocity"][1]), delta=0.01)

    def test_json_holds_the_results_of_all(self):
        done = self.compare(GOOD, engine(), engine(FROZEN), arguments=("--json", "-"))
        cases = json.loads(done.stdout)["cases"]
        self.assertEqual([c["stations"]["exit"]["frozen"] for c in cases], [False, True])
        self.assertEqual(cases[0]["engine"], self.results(engine())["engine"])

    def test_line_ends(self):
        lf = self.compare(GOOD, engine(), engine(FROZEN)).stdout
        crlf = self.compare(GOOD, engine(), engine(FROZEN), arguments=("--crlf",)).stdout
        self.assertNotIn(b"\r", lf)
        self.assertEqual(crlf, lf.replace(b"\n", b"\r\n"))

    def test_one_failure_is_the_failure_of_all(self):
        for texts in ((engine(), COLD), (COLD, engine())):
            done = self.compare(NOT_CONVERGED, *texts)
            self.assertEqual(done.stdout, b"")

    def test_one_document_is_too_few(self):
        self.compare(USAGE, engine())
