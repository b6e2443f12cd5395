"""ketra throttle: the same hardware at other flow rates."""

import json

from host import (CHAMBER, COLD, DOCUMENT, FINITE, FROZEN, GOOD, NOT_CONVERGED, SEA_LEVEL,
                  SOME_FAILED, USAGE, HostCase, engine)

RATIO = 1e-6      # relative; the mass flux at the chamber end is met to 1e-8
DEEP = "0.1"

# Frozen so hot and expanded so far that a low pressure, with its cooler chamber, leaves the data.
BRITTLE = engine("freezingConditions = { calculate = true; expansionRatio = 1.1; };",
                 ratio='value = 3.0; unit = "O/F";', exit="areaRatio = 460.0;")


class Throttle(HostCase):
    def throttle(self, code, text, *arguments):
        return self.expect(code, "throttle", self.write(text), "--resources", self.small,
                           *arguments)

    def cases(self, text, ratios):
        done = self.throttle(GOOD, text, "--ratio", ratios, "--json", "-")
        return json.loads(done.stdout)["cases"]

    def rows(self, done):
        return [line.split() for line in done.stdout.decode().splitlines()[2:]]

    def test_the_table_has_a_row_for_every_ratio_under_names_and_units(self):
        done = self.throttle(GOOD, engine(FINITE, SEA_LEVEL), "--ratio", "1,0.5,0.25")
        lines = done.stdout.decode().splitlines()
        for name in ("ratio", "pc", "throat flux", "c*", "Is vac", "Is amb", "pe", "PaCrit",
                     "flow"):
            self.assertIn(name, lines[0])
        self.assertIn("kg/(m^2 s)", lines[1])
        self.assertEqual([row[0] for row in self.rows(done)], ["1.000000", "0.500000", "0.250000"])
        self.assertEqual(done.stderr, b"")

    def test_ratios_can_be_given_one_by_one(self):
        together = self.throttle(GOOD, engine(), "--ratio", "1,0.5")
        apart = self.throttle(GOOD, engine(), "--ratio", "1", "--ratio", "0.5")
        self.assertEqual(together.stdout, apart.stdout)

    def test_a_ratio_of_one_is_the_design(self):
        design = self.results(engine(FINITE, SEA_LEVEL))
        case, = self.cases(engine(FINITE, SEA_LEVEL), "1")
        self.assertEqual(case["engine"], design["engine"])
        self.assertEqual(case["stations"], design["stations"])

    def test_the_mass_flow_has_the_ratio_and_the_hardware_stays(self):
        design, half, tenth = self.cases(engine(FINITE), "1,0.5,0.1")
        for case in (half, tenth):
            self.assertAlmostEqual(
                case["stations"]["chamberEnd"]["flow"]["massFlux"]
                / design["stations"]["chamberEnd"]["flow"]["massFlux"], case["ratio"],
                delta=RATIO)
            self.assertEqual(case["engine"]["contraction"], design["engine"]["contraction"])
            self.assertEqual(case["stations"]["exit"]["flow"]["areaRatio"], 40)
        # A lower pressure breaks up more of the gas.
        self.assertGreater(design["engine"]["cstar"], half["engine"]["cstar"])
        self.assertGreater(half["engine"]["cstar"], tenth["engine"]["cstar"])

    def test_without_a_finite_area_the_pressure_has_the_ratio(self):
        case, = self.cases(engine(), "0.3")
        self.assertEqual(case["stations"]["chamber"]["state"]["p"], 0.3 * 10e6)

    def test_a_nozzle_given_by_its_pressure_keeps_its_area(self):
        for exit in ('pressure = { value = 1.0; unit = "bar"; };', "pressureRatio = 100.0;"):
            for groups in ((), (FINITE,), (FROZEN,)):
                with self.subTest(exit=exit, groups=groups):
                    design, half = self.cases(engine(*groups, exit=exit), "1,0.5")
                    self.assertAlmostEqual(half["stations"]["exit"]["flow"]["areaRatio"],
                                           design["stations"]["exit"]["flow"]["areaRatio"],
                                           places=9)
                    self.assertLess(half["stations"]["exit"]["state"]["p"],
                                    0.6 * design["stations"]["exit"]["state"]["p"])

    def test_throttled_far_enough_the_flow_separates(self):
        done = self.throttle(GOOD, engine(SEA_LEVEL, exit="areaRatio = 30.0;"), "--ratio",
                             "1,0.2")
        self.assertEqual([row[-2] for row in self.rows(done)], ["attached", "separated"])

    def test_a_frozen_engine_is_throttled_frozen(self):
        case, = self.cases(engine(FROZEN), "0.5")
        self.assertTrue(case["stations"]["exit"]["frozen"])

    def test_a_composition_that_freezes_at_a_ratio_does_so_throttled(self):
        half, = self.cases(engine("freezingConditions = { calculate = true; pressureRatio = 8.0; };"),
                           "0.5")
        self.assertAlmostEqual(half["engine"]["freezing"]["p"], 0.5 * 10e6 / 8, places=6)

    def test_an_engine_without_an_exit_shows_its_chamber(self):
        done = self.throttle(GOOD, engine(FINITE, exit=""), "--ratio", "0.5")
        row, = self.rows(done)
        self.assertEqual(row[4:-1], ["-"] * 5)
        self.assertGreater(float(row[3]), 2000)

    def test_english_units(self):
        si = self.rows(self.throttle(GOOD, engine(), "--ratio", "0.5"))[0]
        done = self.throttle(GOOD, engine(), "--ratio", "0.5", "--english")
        english = self.rows(done)[0]
        self.assertIn(b"lbm/(ft^2 s)", done.stdout)
        self.assertIn(b"psi", done.stdout)
        self.assertAlmostEqual(float(english[3]) * 0.3048, float(si[3]), delta=0.01)
        self.assertAlmostEqual(float(english[1]) * 0.006894757, float(si[1]), delta=1e-5)

    def test_json_names_its_units_and_the_document(self):
        path = self.folder / "out.json"
        done = self.throttle(GOOD, engine(), "--ratio", "0.5", "--json", path)
        self.assertNotEqual(done.stdout, b"")
        results = json.loads(path.read_text())
        self.assertEqual(results["units"]["engine"]["cstar"], "m/s")
        self.assertEqual(results["input"]["O/F"], 6)
        self.assertEqual(list(results["cases"][0]),
                         ["ratio", "failure", "engine", "stations", "certificate"])

    # Failures

    def test_ratios_that_cannot_be(self):
        for ratio in ("0", "-0.5", "2.0001", "1e-7", "nan", "inf"):
            with self.subTest(ratio=ratio):
                done = self.throttle(USAGE, engine(), "--ratio", f"0.5,{ratio}")
                self.assertEqual(done.stdout, b"")
                self.assertIn(b"from 0.000001 to 2", done.stderr)
        for ratio in ("x", "0.5,x", ""):
            self.throttle(USAGE, engine(), "--ratio", ratio)
        self.throttle(USAGE, engine())
        self.throttle(GOOD, engine(), "--ratio", "2,0.000001")

    def test_a_case_without_a_solution_is_marked_and_the_others_stand(self):
        done = self.throttle(SOME_FAILED, BRITTLE, "--ratio", f"1,{DEEP},2", "--json",
                             self.folder / "out.json")
        first, failed, last = self.rows(done)
        self.assertEqual(failed[1:], ["-"] * 7 + ["failed", "-"])
        self.assertNotIn("-", first[1:5] + last[1:5])
        self.assertIn(f"ratio {DEEP}: the calculation did not converge".encode(), done.stderr)
        self.assertIn(b"where their data begin. The state is too cold", done.stderr)
        cases = json.loads((self.folder / "out.json").read_text())["cases"]
        self.assertIn("did not converge", cases[1]["failure"])
        self.assertIsNone(cases[1]["engine"])
        self.assertIsNone(cases[1]["stations"])
        self.assertIsNone(cases[0]["failure"])

    def test_allowed_failures_do_not_show_in_the_exit_status_unless_all_failed(self):
        self.throttle(GOOD, BRITTLE, "--ratio", f"1,{DEEP}", "--allow-failures")
        self.throttle(NOT_CONVERGED, BRITTLE, "--ratio", DEEP)
        self.throttle(NOT_CONVERGED, BRITTLE, "--ratio", DEEP, "--allow-failures")

    def test_a_design_without_a_solution(self):
        done = self.throttle(NOT_CONVERGED, COLD, "--ratio", "1,0.5")
        self.assertEqual(done.stdout, b"")

    def test_a_chamber_alone_cannot_be_throttled(self):
        done = self.throttle(DOCUMENT, CHAMBER, "--ratio", "0.5")
        self.assertIn(b"there is no flow to throttle", done.stderr)
