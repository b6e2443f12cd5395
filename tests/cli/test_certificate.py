"""The certificate of a result: the last line of a report, grades in tables, --strict, and results
that are none."""

import csv
import json

from host import (CHAMBER, COLD, FROZEN, GOOD, NOT_CONVERGED, RESOURCES, SOURCE, HostCase,
                  changed, engine)

# With a nozzle that ends at 2,320 K the exit lies in the melting band of alumina: the blend of two
# phases that stands for it is a convention, and no minimum of the Gibbs energy.
MELTING = changed((SOURCE / "examples/19-solid-motor.cfg").read_text(), "areaRatio = 8.0;",
                  "areaRatio = 5.0;")


class Certificates(HostCase):
    def ketra_case(self, code, command, text, *arguments, resources=None):
        return self.expect(code, command, self.write(text), "--resources",
                           resources or self.small, *arguments)

    def last_line(self, text, *arguments, resources=None):
        done = self.ketra_case(GOOD, "run", text, *arguments, resources=resources)
        self.assertTrue(done.stdout.endswith(b"\n"))
        return done.stdout.decode().splitlines()[-1]

    def test_the_last_line_of_a_report_is_its_grade(self):
        for text in (CHAMBER, engine(), engine(FROZEN)):
            line = self.last_line(text)
            self.assertRegex(line, r"^Certificate: A  \(elements \de-\d\d, optimum \de[-+]\d\d, .*\)$")
        self.assertEqual(self.last_line(CHAMBER, "--literal")[:14], "Certificate: A")
        crlf = self.ketra_case(GOOD, "run", CHAMBER, "--crlf").stdout
        self.assertRegex(crlf, rb"\r\nCertificate: A  \([^\r\n]*\)\r\n$")

    def test_it_goes_to_the_log_file_too(self):
        log = self.folder / "run.log"
        done = self.ketra_case(GOOD, "run", CHAMBER, "--log", log)
        self.assertIn(done.stdout.splitlines()[-1], log.read_bytes())

    def test_results_hold_the_numbers(self):
        done = self.ketra_case(GOOD, "run", engine(), "--json", "-")
        results = json.loads(done.stdout)
        whole = results["certificate"]
        self.assertEqual(whole["grade"], "A")
        self.assertIsNone(whole["reason"])
        for key in ("entropy", "enthalpy", "mach", "throatFlux", "massFlux"):
            self.assertLess(abs(whole[key]), 1e-3, key)
        for name in ("chamber", "throat", "exit"):
            station = results["stations"][name]["certificate"]
            with self.subTest(station=name):
                self.assertEqual(station["grade"], "A")
                self.assertLess(station["elements"], 1e-8)
                self.assertLess(station["optimality"], 1e-6)
                self.assertLess(abs(station["target"]), 1e-6)
                self.assertTrue(station["amountsValid"] and station["temperatureInRange"])
                self.assertFalse(station["blended"])
        frozen = self.results(engine(FROZEN))["stations"]["exit"]
        self.assertIsNone(frozen["certificate"])
        self.assertEqual(self.results(engine(FROZEN))["certificate"]["grade"], "A")

    # Grade B

    def test_a_blend_of_two_phases_is_no_more_than_b(self):
        line = self.last_line(MELTING, resources=RESOURCES)
        self.assertTrue(line.startswith("Certificate: B  ("), line)
        self.assertIn("a blend stands for a phase change", line)
        done = self.ketra_case(GOOD, "run", MELTING, "--json", "-", resources=RESOURCES)
        results = json.loads(done.stdout)
        self.assertEqual(results["certificate"]["grade"], "B")
        exit = results["stations"]["exit"]["certificate"]
        self.assertEqual((exit["grade"], exit["blended"]), ("B", True))
        self.assertEqual(results["stations"]["chamber"]["certificate"]["grade"], "A")

    def test_strict_takes_a_only(self):
        out = self.folder / "out.json"
        done = self.ketra_case(NOT_CONVERGED, "run", MELTING, "--strict", "--json", out,
                               resources=RESOURCES)
        self.assertEqual(done.stdout, b"")
        self.assertFalse(out.exists())
        self.assertIn(b"certified B only, which --strict refuses", done.stderr)
        self.assertIn(b"a blend stands for a phase change", done.stderr)
        self.ketra_case(GOOD, "run", engine(), "--strict")

    def test_comparisons_have_a_grade_a_case(self):
        melting = self.write(MELTING, "melting.cfg")
        solid = SOURCE / "examples/19-solid-motor.cfg"
        done = self.expect(GOOD, "compare", solid, melting, "--resources", RESOURCES)
        self.assertEqual(done.stdout.decode().splitlines()[-1].split(),
                         ["certificate", "A", "B", "-"])
        done = self.expect(NOT_CONVERGED, "compare", solid, melting, "--strict", "--resources",
                           RESOURCES)
        self.assertIn(b"melting.cfg: the result is certified B only", done.stderr)

    def test_nozzles_have_a_grade_a_station(self):
        text = (SOURCE / "examples/19-solid-motor.cfg").read_text()
        done = self.ketra_case(GOOD, "nozzle", text, "--stations", 20, "--csv", resources=RESOURCES)
        rows = list(csv.DictReader(done.stdout.decode().splitlines()))
        # Temperatures of the band around 2327 K.
        for row in rows:
            self.assertEqual(row["grade"], "B" if 2227 < float(row["T [K]"]) < 2427 else "A",
                             row)
        self.assertIn("B", [row["grade"] for row in rows])
        done = self.ketra_case(NOT_CONVERGED, "nozzle", text, "--stations", 20, "--csv", "--strict",
                               resources=RESOURCES)
        refused = [row for row in csv.DictReader(done.stdout.decode().splitlines())
                   if not row["T [K]"]]
        self.assertEqual(len(refused), sum(row["grade"] == "B" for row in rows))
        self.assertEqual({row["grade"] for row in refused}, {"B"})
        self.ketra_case(GOOD, "nozzle", text, "--stations", 20, "--strict", "--allow-failures",
                        resources=RESOURCES)

    def test_throttled_engines_have_a_grade_a_ratio(self):
        path = self.write(engine())
        done = self.expect(GOOD, "throttle", path, "--ratio", "1,0.5", "--resources", self.small)
        self.assertEqual([line.split()[-1] for line in done.stdout.decode().splitlines()[2:]],
                         ["A", "A"])
        done = self.expect(GOOD, "throttle", path, "--ratio", "1,0.5", "--resources", self.small,
                           "--json", "-")
        self.assertEqual([c["certificate"]["grade"] for c in json.loads(done.stdout)["cases"]],
                         ["A", "A"])

    def test_a_ratio_of_grade_b_is_refused_by_strict(self):
        # At a lower pressure the gas gives off the more heat while it recombines: alumina still
        # melts at the exit.
        solid = changed((SOURCE / "examples/19-solid-motor.cfg").read_text(), "areaRatio = 8.0;",
                        "areaRatio = 7.7;")
        words = ("throttle", self.write(solid), "--ratio", "1,0.1", "--resources", RESOURCES)
        done = self.expect(GOOD, *words)
        self.assertEqual([line.split()[-1] for line in done.stdout.decode().splitlines()[2:]],
                         ["A", "B"])
        done = self.expect(NOT_CONVERGED, *words, "--strict")
        rows = [line.split() for line in done.stdout.decode().splitlines()[2:]]
        self.assertEqual([row[-1] for row in rows], ["A", "B"])
        self.assertEqual(rows[1][1:-1], ["-"] * 7 + ["failed"])
        self.assertIn(b"ratio 0.1: the result is certified B only, which --strict refuses",
                      done.stderr)
        self.expect(GOOD, *words, "--strict", "--allow-failures")

    def test_vessels_have_a_grade(self):
        for command in ("bomb", "explosive"):
            words = (command, "--mixture", "RDX(cr)", "--density", 100, "--resources", RESOURCES)
            line = self.expect(GOOD, *words).stdout.decode().splitlines()[-1]
            self.assertTrue(line.startswith("Certificate: A  (elements "), line)
            results = json.loads(self.expect(GOOD, *words, "--json", "-").stdout)
            self.assertEqual(results["certificate"]["grade"], "A")

    # No solution

    def test_a_state_colder_than_the_data_is_refused_in_one_sentence(self):
        out = self.folder / "out.json"
        done = self.ketra_case(NOT_CONVERGED, "run", COLD, "--json", out)
        self.assertEqual(done.stdout, b"")
        self.assertFalse(out.exists())
        message = done.stderr.decode()
        self.assertEqual(message.count("\n"), 1, message)
        self.assertTrue(message.startswith("ketra: error: "), message)
        self.assertIn("where their data begin", message)
        self.assertIn("smaller area ratio", message)

    def test_droplets_frozen_below_their_melting_point_keep_their_heat_capacity(self):
        # Liquid alumina that cannot solidify, 500 K below the range of its data. The default method
        # lets its enthalpy go on in proportion to T, which is no flow of constant energy.
        text = changed((SOURCE / "examples/19-solid-motor.cfg").read_text(), "nozzleFlow:\n{",
                       "nozzleFlow:\n{\n    freezingConditions: { calculate = true; "
                       "expansionRatio = 1.5; };")
        out = self.folder / "out.json"
        done = self.ketra_case(NOT_CONVERGED, "run", text, "--json", out, "--literal",
                               resources=RESOURCES)
        self.assertEqual(done.stdout, b"")
        self.assertFalse(out.exists())
        self.assertIn(b"the result is no solution: frozen section: a condensed product outside the "
                      b"range of its data", done.stderr)
        done = self.ketra_case(GOOD, "run", text, resources=RESOURCES)
        self.assertIn(b"Certificate: B", done.stdout.splitlines()[-1])
