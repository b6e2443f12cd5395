"""What the program solves beyond the default method of the library, and --literal, which it is
solved by alone."""

import json

from host import (CHAMBER, GOOD, NOT_CONVERGED, RESOURCES, SOURCE, HostCase, changed, engine)

REPORTS = SOURCE / "tests/reports"
APPROVED = SOURCE / "tests/cli/reports"

# Nitrogen tetroxide and hydrazine, complete combustion: the exit is at some 1,350 K, a start from
# where the default method loses all gases.
STORABLE = changed(changed(engine(exit="areaRatio = 29.0;", ratio='value = 1.0; unit = "O/F";'),
                           '"O2(L)"', '"N2O4(L)"'), '"H2(L)"', '"N2H4(L)"')
STORABLE = changed(STORABLE, "value = 10.0;", "value = 6.9;")
STORABLE = changed(STORABLE, 'value = 1.0; unit = "O/F";', 'value = 1.0; unit = "alpha";')


class Literal(HostCase):
    def report(self, path, *arguments):
        done = self.expect(GOOD, "run", path, "--resources", RESOURCES, *arguments)
        return done.stdout.decode()

    def result(self, path, *arguments):
        done = self.expect(GOOD, "run", path, "--resources", RESOURCES, "--json", "-", *arguments)
        return json.loads(done.stdout)

    def test_the_default_method_alone_prints_the_report_of_the_library(self):
        for folder in sorted(REPORTS.iterdir()):
            if not folder.is_dir():
                continue
            with self.subTest(case=folder.name):
                for words, name in (((), "report.si.txt"),
                                    (("--english", "--transport"), "report.english.transport.txt")):
                    approved = (folder / name).read_bytes().decode().replace("\r\n", "\n")
                    report = self.report(folder / "case.cfg", "--literal", *words)
                    self.assertEqual(report[:len(approved)], approved)

    def test_the_method_of_the_program_prints_the_approved_report(self):
        for approved in sorted(APPROVED.glob("*.txt")):
            with self.subTest(case=approved.stem):
                report = self.report(REPORTS / approved.stem / "case.cfg").splitlines()
                # The last line has the residuals, which are rounding.
                self.assertEqual(report[:-1], approved.read_text().splitlines())
                self.assertTrue(report[-1].startswith("Certificate: "), report[-1])

    def test_both_find_the_same_states(self):
        for folder in sorted(REPORTS.iterdir()):
            if not folder.is_dir():
                continue
            found, literal = (self.result(folder / "case.cfg", *words)
                              for words in ((), ("--literal",)))
            for name in ("chamber", "chamberEnd", "throat", "exit", "overExpansion"):
                here, there = found["stations"][name], literal["stations"][name]
                with self.subTest(case=folder.name, station=name):
                    self.assertEqual(here is None, there is None)
                    if here is None:
                        continue
                    # Chamber ends, throats and area ratios are searched to some 1e-3 in pressure,
                    # and T follows p with an exponent of 0.2 at most.
                    limit = 1e-6 if name == "chamber" else 1e-3
                    self.assertAlmostEqual(here["state"]["T"] / there["state"]["T"], 1.0,
                                           delta=limit)
                    self.assertAlmostEqual(here["state"]["h"] + here["flow"]["W"] ** 2 / 2,
                                           there["state"]["h"] + there["flow"]["W"] ** 2 / 2,
                                           delta=10.0)

    def test_a_storable_engine_that_the_default_method_loses(self):
        path = self.write(STORABLE)
        done = self.expect(NOT_CONVERGED, "run", path, "--resources", RESOURCES, "--literal")
        self.assertEqual(done.stdout, b"")
        results = self.result(path)
        self.assertEqual(results["certificate"]["grade"], "A")
        exit = results["stations"]["exit"]
        self.assertAlmostEqual(exit["state"]["T"], 1365.0, delta=15.0)
        self.assertAlmostEqual(exit["flow"]["areaRatio"], 29.0, delta=29.0 * 5e-4)

    def test_further_attempts_are_told_with_verbose_only(self):
        # So much oxidizer that the exit is near 200 K.
        text = changed(changed(STORABLE, "areaRatio = 29.0;", "areaRatio = 100.0;"),
                       'value = 1.0; unit = "alpha";', 'value = 8.0; unit = "alpha";')
        path = self.write(text)
        quiet = self.expect(GOOD, "run", path, "--resources", RESOURCES)
        self.assertEqual(quiet.stderr, b"")
        verbose = self.expect(GOOD, "run", path, "--resources", RESOURCES, "--verbose")
        self.assertIn(b"ketra: info: Equilibrium, attempt 2, ", verbose.stderr)
        self.assertEqual(verbose.stdout, quiet.stdout)

    def test_attempts_are_in_the_results(self):
        results = self.result(self.write(STORABLE))
        for name in ("chamber", "throat", "exit"):
            attempts = results["stations"][name]["certificate"]["attempts"]
            self.assertTrue(attempts, name)
            self.assertEqual(set(attempts[0]), {"start", "finished", "grade", "T"})
            self.assertTrue(attempts[-1]["finished"])
        results = self.result(self.write(CHAMBER), "--literal")
        self.assertEqual(results["stations"]["chamber"]["certificate"]["attempts"], [])
