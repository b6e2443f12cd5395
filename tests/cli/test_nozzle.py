"""ketra nozzle: the states along the nozzle, as a table, as CSV and as JSON."""

import csv
import io
import json

from host import (CHAMBER, COLD, DOCUMENT, FINITE, FROZEN, GOOD, NOT_CONVERGED, RESOURCES, SOURCE,
                  USAGE, HostCase, changed, engine)

AREA = 1e-3   # relative; the exit is found to 0.0005 in its area ratio
HEADER = ["area ratio", "p [MPa]", "T [K]", "Mach", "w [m/s]", "rho [kg/m^3]", "M [g/mol]",
          "gamma", "k", "grade"]
NUMBERS = HEADER.index("grade") # columns before it hold numbers, as do those behind it


class Nozzle(HostCase):
    def nozzle(self, code, text, *arguments):
        return self.expect(code, "nozzle", self.write(text), "--resources", self.small,
                           *arguments)

    def csv(self, text, *arguments):
        """The rows under the header, numbers where there are some."""
        done = self.nozzle(GOOD, text, "--csv", *arguments)
        rows = list(csv.reader(io.StringIO(done.stdout.decode(), newline="")))
        return rows[0], [[cell if cell in ("A", "B", "F") else float(cell) if cell else None
                          for cell in row] for row in rows[1:]]

    def stations(self, text, *arguments):
        done = self.nozzle(GOOD, text, "--json", "-", *arguments)
        return json.loads(done.stdout)["stations"]

    def test_the_header_names_the_columns_and_their_units(self):
        header, rows = self.csv(engine(), "--stations", "5")
        self.assertEqual(header, HEADER)
        self.assertEqual(len(rows), 5)

    def test_the_gas_rests_in_a_chamber_of_infinite_area(self):
        header, rows = self.csv(engine())
        self.assertEqual(len(rows), 20)
        self.assertIsNone(rows[0][0])
        self.assertEqual(rows[0][1], 10)
        self.assertEqual(rows[0][4], 0)
        self.assertIsNone(self.stations(engine())[0]["flow"]["areaRatio"])

    def test_a_finite_area_begins_at_its_contraction(self):
        header, rows = self.csv(engine(FINITE))
        self.assertEqual(rows[0][0], 2)
        self.assertGreater(rows[0][4], 0)
        self.assertLess(rows[0][1], 10)

    def test_the_flow_expands_through_the_throat_to_the_exit(self):
        for groups in ((), (FINITE,), (FROZEN,)):
            with self.subTest(groups=groups):
                header, rows = self.csv(engine(*groups), "--stations", "41")
                self.assertEqual(len(rows), 41)
                areas = [row[0] for row in rows[1:]]
                throat = areas.index(1.0)
                self.assertEqual(throat, 38 // 3) # behind the chamber end, which is left out here
                self.assertEqual(areas[:throat], sorted(areas[:throat], reverse=True))
                self.assertEqual(areas[throat:], sorted(areas[throat:]))
                self.assertEqual(areas[-1], 40)
                for column, rising in ((1, False), (2, False), (3, True), (4, True), (5, False)):
                    values = [row[column] for row in rows]
                    self.assertEqual(values, sorted(values, reverse=not rising), header[column])
                for area, row in zip(areas[:throat], rows[1:]):
                    self.assertLess(row[3], 1)
                for area, row in zip(areas[throat + 1:], rows[throat + 2:]):
                    self.assertGreater(row[3], 1)

    def test_mass_flux_and_enthalpy_are_the_same_everywhere(self):
        stations = self.stations(engine(FROZEN), "--stations", "30")
        throat = next(s for s in stations if s["flow"]["areaRatio"] == 1)
        h = stations[0]["state"]["h"]
        for station in stations[1:]:
            flow = station["flow"]
            self.assertAlmostEqual(flow["massFlux"] * flow["areaRatio"]
                                   / throat["flow"]["massFlux"], 1, delta=AREA)
            self.assertAlmostEqual(station["state"]["h"] + flow["W"] ** 2 / 2, h,
                                   delta=1e-5 * abs(flow["W"] ** 2))

    def test_the_composition_freezes_where_the_document_says_so(self):
        stations = self.stations(engine(FROZEN), "--stations", "30")
        for station in stations[1:]:
            behind = station["flow"]["Mach"] > 1 and station["flow"]["areaRatio"] > 2.01
            self.assertEqual(station["frozen"], behind, station["flow"])
        shifting = self.stations(engine(), "--stations", "30")
        self.assertEqual({s["frozen"] for s in shifting}, {False})

    def test_the_ends_are_the_stations_of_the_report(self):
        run = self.results(engine(FINITE))["stations"]
        stations = self.stations(engine(FINITE), "--stations", "3")
        for name, station in zip(("chamberEnd", "throat", "exit"), stations):
            for group in ("state", "flow", "composition"):
                self.assertEqual(station[group], run[name][group])

    def test_numbers_of_csv_have_full_precision_and_a_point(self):
        header, rows = self.csv(engine(), "--stations", "3")
        state = self.results(engine())["stations"]["exit"]["state"]
        self.assertEqual(rows[-1][2], state["T"])
        lf = self.nozzle(GOOD, engine(), "--stations", "3", "--csv").stdout
        self.assertNotIn(b"\r", lf)
        self.assertNotIn(b";", lf)
        crlf = self.nozzle(GOOD, engine(), "--stations", "3", "--csv", "--crlf").stdout
        self.assertEqual(crlf, lf.replace(b"\n", b"\r\n"))

    def test_the_columns_are_the_values_of_json(self):
        # Frozen with droplets: the molar mass of the gas is not that of all products there.
        motor = changed((SOURCE / "examples/19-solid-motor.cfg").read_text(), "nozzleFlow:\n{",
                        "nozzleFlow:\n{\n    freezingConditions: { calculate = true; "
                        "expansionRatio = 1.5; };")
        done = self.expect(GOOD, "nozzle", self.write(motor), "--resources", RESOURCES,
                           "--stations", "6", "--csv", "--json", self.folder / "out.json")
        rows = list(csv.reader(io.StringIO(done.stdout.decode(), newline="")))[1:]
        stations = json.loads((self.folder / "out.json").read_text())["stations"]
        self.assertTrue(stations[-1]["frozen"])
        for row, s in zip(rows, stations, strict=True):
            state, flow = s["state"], s["flow"]
            expected = (flow["areaRatio"], state["p"] / 1e6, state["T"], flow["Mach"], flow["W"],
                        state["rho"], state["M"] * 1000, state["gamma"], state["k"])
            self.assertEqual(row[NUMBERS], s["grade"])
            for shown, value in zip(row[:NUMBERS], expected, strict=True):
                if value is None:
                    self.assertEqual(shown, "")
                else:
                    self.assertAlmostEqual(float(shown), value, delta=1e-12 * abs(value))

    def test_composition_adds_columns_of_mole_fractions(self):
        header, rows = self.csv(engine(), "--composition", "--stations", "10")
        self.assertEqual(header[:len(HEADER)], HEADER)
        species = header[len(HEADER):]
        self.assertIn("H2O", species)
        self.assertEqual(species, sorted(species))
        for row in rows:
            self.assertGreater(sum(row[len(HEADER):]), 0.999)
            self.assertLessEqual(sum(row[len(HEADER):]), 1 + 1e-12)
        for column in range(len(HEADER), len(header)):
            self.assertGreaterEqual(max(row[column] for row in rows), 1e-4)
        table = self.nozzle(GOOD, engine(), "--composition", "--stations", "10")
        self.assertIn(b"H2O", table.stdout.splitlines()[0])

    def test_the_table_shows_what_csv_holds(self):
        header, rows = self.csv(engine(), "--stations", "7")
        lines = self.nozzle(GOOD, engine(), "--stations", "7").stdout.decode().splitlines()
        self.assertEqual(len(lines), 2 + 7)
        self.assertEqual(lines[2].split()[0], "-")
        for line, row in zip(lines[3:], rows[1:]):
            self.assertEqual(line.split()[-1], row[-1])
            for shown, value in zip(line.split()[:NUMBERS], row):
                self.assertAlmostEqual(float(shown), value, delta=6e-3 if value > 100 else 6e-5)

    def test_english_units(self):
        header, si = self.csv(engine(), "--stations", "4")
        header, english = self.csv(engine(), "--stations", "4", "--english")
        self.assertEqual(header[:6], ["area ratio", "p [psi]", "T [R]", "Mach", "w [ft/s]",
                                      "rho [lbm/ft^3]"])
        for a, b in zip(si, english):
            self.assertAlmostEqual(a[2] * 1.8, b[2], places=9)
            self.assertAlmostEqual(a[4], b[4] * 0.3048, places=9)
            self.assertEqual(a[3], b[3])

    def test_json_stands_beside_the_table(self):
        path = self.folder / "out.json"
        done = self.nozzle(GOOD, engine(), "--stations", "4", "--json", path)
        self.assertEqual(len(done.stdout.splitlines()), 6)
        results = json.loads(path.read_text())
        self.assertEqual(len(results["stations"]), 4)
        self.assertEqual({s["failure"] for s in results["stations"]}, {None})
        self.assertIn("units", results)

    def test_numbers_of_stations_that_cannot_be(self):
        for count in ("2", "0", "10001", "-3", "x", "3.5"):
            with self.subTest(count=count):
                done = self.nozzle(USAGE, engine(), "--stations", count)
                self.assertEqual(done.stdout, b"")

    def test_a_document_without_a_nozzle(self):
        done = self.nozzle(DOCUMENT, CHAMBER)
        self.assertIn(b"does not say where the nozzle ends", done.stderr)
        done = self.nozzle(DOCUMENT, engine(FINITE, exit=""))
        self.assertIn(b"does not say where the nozzle ends", done.stderr)
        done = self.nozzle(DOCUMENT, engine(exit='pressure = { value = 8.0; unit = "MPa"; };'))
        self.assertIn(b"ends at the throat or before it", done.stderr)

    def test_an_engine_without_a_solution(self):
        done = self.nozzle(NOT_CONVERGED, COLD)
        self.assertEqual(done.stdout, b"")
        self.assertIn(b"did not converge", done.stderr)
