"""ketra bomb: a charge in a closed vessel that keeps its energy."""

import json
import math

from host import (CHAMBER, DATA, DOCUMENT, GOOD, MIXTURE, NOT_CONVERGED, RESOURCES, SOURCE,
                  USAGE, HostCase, changed, species_records)

R = 8.314472  # J/(mol K)
SAME_T = 1e-6 # relative; both roads converge to about 1e-8

ALUMINISED = "RDX(cr)=0.8,AL(cr)=0.2"


def energies(names, T):
    """Internal energy over R T of species at T, from the coefficients of the species file: at the
    end of the range where T lies beyond it, as one of two phases in the band of their change."""
    values = {}
    for name, lines, _ in species_records((RESOURCES / "thermo.inp").read_text()):
        if name not in names or name in values:
            continue
        condensed = int(lines[1][51:52]) != 0
        intervals = [lines[i:i + 3] for i in range(2, len(lines), 3)]
        low, high = float(lines[2][:11]), float(intervals[-1][0][11:22])
        t = min(max(T, low), high)
        for bounds, first, second in intervals:
            if t <= float(bounds[11:22]):
                break
        a = [float(first[16 * i:16 * i + 16].replace("D", "E")) for i in range(5)]
        a += [float(second[16 * i:16 * i + 16].replace("D", "E")) for i in range(2)]
        b = float(second[48:64].replace("D", "E"))
        h = (-a[0] / t ** 2 + (a[1] * math.log(t) + b) / t + a[2] + a[3] * t / 2 + a[4] * t ** 2 / 3
             + a[5] * t ** 3 / 4 + a[6] * t ** 4 / 5)
        values[name] = h * t / T if condensed else h - 1.0
    return values


class Bomb(HostCase):
    def bomb(self, code, *arguments):
        return self.expect(code, "bomb", *arguments, "--resources", RESOURCES)

    def result(self, *arguments):
        return json.loads(self.bomb(GOOD, *arguments, "--json", "-").stdout)

    def of(self, mixture, density, *arguments):
        return self.result("--mixture", mixture, "--density", density, *arguments)

    # What it computes

    def test_the_pressure_is_that_of_the_moles_of_gas_in_the_volume(self):
        for density in (1, 10, 100):
            results = self.of(ALUMINISED, density)
            vessel = results["vessel"]
            moles = sum(c["massFraction"] / c["M"] for c in vessel["composition"]
                        if not c["condensed"])
            with self.subTest(density=density):
                self.assertAlmostEqual(
                    vessel["state"]["p"] / (moles * density * R * vessel["state"]["T"]), 1.0,
                    delta=1e-6)
                self.assertAlmostEqual(results["force"] * density / vessel["state"]["p"], 1.0,
                                       delta=1e-12)

    def test_the_products_hold_the_energy_of_the_charge(self):
        # Liquid alumina; and a cooler charge whose alumina is solid.
        for mixture, phase in ((ALUMINISED, "AL2O3(L)"),
                               ("NH4CLO4(I)=0.25,AL(cr)=0.04,N2=0.71", "AL2O3(a)")):
            results = self.of(mixture, 10)
            T = results["vessel"]["state"]["T"]
            composition = results["vessel"]["composition"]
            self.assertIn(phase, [c["name"] for c in composition])
            u = energies({c["name"] for c in composition}, T)
            held = sum(c["massFraction"] / c["M"] * u[c["name"]] for c in composition) * R * T
            with self.subTest(phase=phase):
                # The temperature would have to change by that part of itself.
                self.assertLess(abs(held - results["energy"]) / (1500 * T), 2e-6)
                self.assertEqual(results["certificate"]["grade"], "A")
                self.assertAlmostEqual(results["vessel"]["state"]["u"] / results["energy"], 1.0,
                                       delta=1e-6)

    def test_the_energy_is_that_of_the_components(self):
        species = {s["name"]: s for s in json.loads(
            self.expect(GOOD, "species", "--json", "--resources", RESOURCES).stdout)["species"]}
        energy = sum(y / species[name]["M"] * species[name]["dHf"]
                     for name, y in (("RDX(cr)", 0.8), ("AL(cr)", 0.2)))
        # The molar masses of records are rounded.
        self.assertAlmostEqual(self.of(ALUMINISED, 10)["energy"] / energy, 1.0, delta=1e-4)

    def test_alumina_between_solid_and_liquid_is_a_blend_with_the_energy_of_both(self):
        results = self.of("NH4CLO4(I)=0.3,AL(cr)=0.05,N2=0.65", 10)
        T = results["vessel"]["state"]["T"]
        self.assertTrue(2227 < T < 2427, T)
        composition = results["vessel"]["composition"]
        u = energies({c["name"] for c in composition}, T)
        held = sum(c["massFraction"] / c["M"] * u[c["name"]] for c in composition) * R * T
        self.assertLess(abs(held - results["energy"]) / (1500 * T), 2e-6)
        self.assertEqual(results["certificate"]["grade"], "B")

    def test_posed_at_once_a_charge_with_alumina_is_no_solution(self):
        done = self.bomb(NOT_CONVERGED, "--mixture", ALUMINISED, "--density", 10, "--literal")
        self.assertEqual(done.stdout, b"")
        self.assertIn(b"the target is missed", done.stderr)

    def test_gases_alone_have_the_temperature_of_the_problem_posed_at_once(self):
        for mixture, density in (("RDX(cr)", 1), ("RDX(cr)", 100), ("NG(L)", 20),
                                 ("H2=0.2,O2=0.8", 5)):
            found, posed = (self.of(mixture, density, *words)["vessel"]
                            for words in ((), ("--literal",)))
            with self.subTest(mixture=mixture, density=density):
                self.assertFalse([c["name"] for c in found["composition"] if c["condensed"]])
                self.assertAlmostEqual(found["state"]["T"] / posed["state"]["T"], 1.0,
                                       delta=SAME_T)

    def test_a_denser_charge_makes_more_pressure_and_less_radicals(self):
        thin, dense = (self.of("RDX(cr)", density)["vessel"] for density in (1, 100))
        self.assertGreater(dense["state"]["p"], 100 * thin["state"]["p"])
        x = [{c["name"]: c["moleFraction"] for c in v["composition"]} for v in (thin, dense)]
        self.assertLess(x[1]["OH"], x[0]["OH"])
        self.assertGreater(dense["state"]["T"], thin["state"]["T"])

    def test_a_document_is_a_charge(self):
        results = self.result(self.write(CHAMBER), "--density", 10)
        self.assertTrue(results["document"].endswith("case.cfg"))
        self.assertEqual(results["info"], "LOX/LH2")
        self.assertFalse(results["input"]["ions"])
        self.assertEqual({r["name"] for r in results["input"]["reactants"]}, {"O2(L)", "H2(L)"})

    def test_products_can_be_chosen(self):
        results = self.of("H2=0.1,O2=0.9", 10, "--include", "H2O", "O2", "H2")
        self.assertEqual({c["name"] for c in results["vessel"]["composition"]}, {"H2O", "O2", "H2"})
        complete = results["vessel"]["state"]["T"]
        # Radicals would take of the heat.
        self.assertGreater(complete, self.of("H2=0.1,O2=0.9", 10)["vessel"]["state"]["T"])
        results = self.of("H2=0.1,O2=0.9", 10, "--omit", "OH")
        self.assertNotIn("OH", {c["name"] for c in results["vessel"]["composition"]})

    # Output

    def test_table(self):
        done = self.bomb(GOOD, "--mixture", ALUMINISED, "--density", 10)
        self.assertEqual(done.stderr, b"")
        lines = done.stdout.decode().splitlines()
        results = self.of(ALUMINISED, 10)
        state = results["vessel"]["state"]
        self.assertEqual(lines[0].split(), ["Loading", "density", "10.000000", "kg/m^3"])
        self.assertEqual(lines[2].split(), ["Temperature", f"{state['T']:.2f}", "K"])
        self.assertEqual(lines[3].split(), ["Pressure", f"{state['p'] / 1e6:.6f}", "MPa"])
        self.assertEqual(lines[4].split(),
                         ["Force", "n", "R", "T", f"{results['force'] / 1000:.3f}", "kJ/kg"])
        self.assertEqual(lines[9].split()[:2], ["product", "phase"])
        english = self.bomb(GOOD, "--mixture", ALUMINISED, "--density", 10, "--english").stdout
        self.assertIn(f"{state['p'] / 6894.757293:.1f}"[:-1].encode(), english)
        self.assertIn(b"Btu/lbm", english)
        crlf = self.bomb(GOOD, "--mixture", ALUMINISED, "--density", 10, "--crlf").stdout
        self.assertEqual(crlf, done.stdout.replace(b"\n", b"\r\n"))

    def test_json_beside_the_table(self):
        path = self.folder / "out.json"
        self.assertIn(b"Temperature", self.bomb(GOOD, "--mixture", "RDX(cr)", "--density", 10,
                                                "--json", path).stdout)
        results = json.loads(path.read_text())
        self.assertEqual(results, self.of("RDX(cr)", 10))
        self.assertEqual(list(results),
                         ["program", "version", "document", "name", "info", "input", "density",
                          "energy", "force", "included", "omitted", "vessel", "certificate",
                          "units"])

    # Faults

    def test_charges_and_densities_that_cannot_be(self):
        self.assertIn(b"bomb: which one?", self.bomb(USAGE, "--density", 1).stderr)
        for value in ("0", "-1", "nan", "inf"):
            self.bomb(USAGE, "--mixture", "RDX(cr)", "--density", value)
        self.bomb(DATA, "--mixture", "RDX", "--density", 1)
        self.bomb(DATA, "--mixture", "RDX(cr)", "--density", 1, "--omit", "CO3x")
        self.bomb(DOCUMENT, self.folder / "absent.cfg", "--density", 1)
        text = changed(CHAMBER, 'value = 6.0; unit = "O/F";', 'unit = "optimal";')
        text = changed(text, "calculateNozzleFlow = false;",
                       "nozzleExitConditions = { areaRatio = 40.0; };")
        self.bomb(DOCUMENT, self.write(text), "--density", 1)

    def test_a_charge_without_heat(self):
        out = self.folder / "out.json"
        charge = self.write(MIXTURE % ('{ name = "O2(L)"; massFraction = 1.0; '
                                       'T = { value = 90.17; unit = "K"; }; }'))
        done = self.bomb(NOT_CONVERGED, charge, "--density", 10, "--json", out)
        self.assertEqual(done.stdout, b"")
        self.assertFalse(out.exists())
        self.assertEqual(done.stderr.count(b"\n"), 1, done.stderr)
        self.assertIn(b"200 K, where the species data end", done.stderr)

    def test_a_temperature_within_the_melting_of_a_substance_without_a_band(self):
        # Beryllia: its solids and its liquid are two phases without anything between them.
        done = self.bomb(NOT_CONVERGED, "--mixture", "Be(a)=0.0162,O2=0.0288,Ar=0.955", "--density", 10)
        self.assertIn(b"jumps over that of the charge", done.stderr)

    def test_the_page_of_the_example_states_what_comes_out(self):
        page = (SOURCE / "docs/examples/21-composition-b.md").read_text(encoding="utf-8")
        for name, density in (("21-composition-b.cfg", 10), ("19-solid-motor.cfg", 20)):
            results = self.result(SOURCE / "examples" / name, "--density", density)
            state = results["vessel"]["state"]
            self.assertIn(f"{state['T']:,.0f} K", page)
            self.assertIn(f"{state['p'] / 1e6:.1f} MPa", page)
            self.assertIn(f"with {100 * state['z']:.0f} %" if state["z"] else
                          f"{results['force'] / 1000:,.0f} kJ/kg", page)
