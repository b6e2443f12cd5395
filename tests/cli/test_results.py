"""ketra run --json: the numbers are there, in full precision, and fit together."""

import json
import math

from host import CHAMBER, GOOD, MIXTURE, RESOURCES, HostCase, changed

R = 8.314472  # J/(mol K)
ROUNDING = 1e-12
SOLVER = 1e-6  # relative; the equilibrium is converged to 1e-7


class Results(HostCase):
    def near(self, a, b, tolerance=ROUNDING):
        self.assertLessEqual(abs(a - b), tolerance * max(abs(a), abs(b)), (a, b))

    def check_consistency(self, station, units):
        state, composition = station["state"], station["composition"]
        self.near(sum(c["moleFraction"] for c in composition), 1)
        self.near(sum(c["massFraction"] for c in composition), 1)
        MW = sum(c["moleFraction"] * c["M"] for c in composition)
        self.near(state["MW"], MW, SOLVER)
        for c in composition:
            self.near(c["massFraction"], c["moleFraction"] * c["M"] / MW, SOLVER)
            self.assertEqual(c["condensed"], c["phase"] != "gas")
        gas = [c for c in composition if not c["condensed"]]
        moles = sum(c["moleFraction"] for c in gas)
        self.near(state["rhoGas"],
                  state["p"] / (R * state["T"]) * sum(c["moleFraction"] * c["M"] for c in gas)
                  / moles, SOLVER)
        self.near(state["z"], sum(c["massFraction"] for c in composition if c["condensed"]), SOLVER)
        self.near(state["rhoGas"], state["rho"] * (1 - state["z"]), SOLVER)
        for mole, mass in (("H", "h"), ("S", "s"), ("U", "u"), ("G", "g"), ("Cp", "cp"),
                           ("Cv", "cv")):
            self.near(state[mole] / state["MW"], state[mass], SOLVER)
        self.near(state["G"], state["H"] - state["T"] * state["S"], SOLVER)
        self.near(state["gamma"], state["Cp"] / state["Cv"])
        self.near(state["k"], -state["gamma"] / state["dlnV_dlnp"])
        self.near(state["a"] ** 2, state["k"] * state["R"] * state["T"], SOLVER)
        self.near(state["R"], R / state["M"])
        self.near(state["alpha_p"], state["dlnV_dlnT"] / state["T"])
        self.near(state["beta_T"], -state["dlnV_dlnp"] / state["p"])
        self.assertEqual(set(state), set(units["state"]))

    def test_results_of_a_gas_fit_together(self):
        results = self.results(CHAMBER)
        state = results["stations"]["chamber"]["state"]
        self.check_consistency(results["stations"]["chamber"], results["units"])
        self.assertEqual(state["p"], 10e6)
        self.assertEqual(state["z"], 0)
        # An ideal gas: rho = p M / (R T), U = H - R T.
        self.near(state["rho"], state["p"] * state["MW"] / (R * state["T"]), SOLVER)
        self.near(state["U"], state["H"] - R * state["T"], SOLVER)
        # Burnt without loss: J/kg of what went in is J/kg of what came out.
        self.near(state["h"], results["input"]["H"] / results["input"]["MW"], SOLVER)
        self.assertEqual(results["input"]["O/F"], 6.0)
        self.near(results["input"]["alpha"], 6.0 / results["input"]["O/F stoichiometric"])
        sides = {r["name"]: r for r in results["input"]["reactants"]}
        self.assertEqual(sides["O2(L)"]["T"], 90.17)
        self.near(sides["O2(L)"]["massFractionOfAll"], 6 / 7)
        self.assertEqual(results["name"], "test")

    def test_results_with_condensed_phases_fit_together(self):
        text = MIXTURE % ('{ name = "NH4CLO4(I)"; massFraction = 0.7; },'
                          '{ name = "HTPB"; massFraction = 0.12; },'
                          '{ name = "AL(cr)"; massFraction = 0.18; }')
        results = self.results(text, resources=RESOURCES)
        chamber = results["stations"]["chamber"]
        self.check_consistency(chamber, results["units"])
        self.assertGreater(chamber["state"]["z"], 0.3)
        self.assertEqual([c["phase"] for c in chamber["composition"] if c["name"] == "AL2O3(L)"],
                         ["liquid"])
        self.assertEqual({r["side"] for r in results["input"]["reactants"]}, {"mixture"})

    def test_numbers_have_full_precision(self):
        # Sixteen or seventeen figures: five would do for a report and not for a difference.
        done = self.expect(GOOD, "run", self.write(CHAMBER), "--resources", self.small, "--json",
                           "-")
        numbers = []
        json.loads(done.stdout, parse_float=lambda text: numbers.append(text) or float(text))
        figures = [len(t.split("e")[0].replace(".", "").lstrip("-0")) for t in numbers]
        self.assertGreaterEqual(max(figures), 16)
        self.assertTrue(all(math.isfinite(float(t)) for t in numbers))

    def test_the_unit_of_the_document_does_not_matter(self):
        def state(text):
            return self.results(text)["stations"]["chamber"]["state"]

        mpa = state(CHAMBER)
        for pressure, unit in ((100.0, "bar"), (1e7, "Pa"), (1450.3773773020923, "psi")):
            other = state(changed(CHAMBER, 'value = 10.0; unit = "MPa"',
                                  f'value = {pressure!r}; unit = "{unit}"'))
            for key, value in mpa.items():
                with self.subTest(unit=unit, key=key):
                    self.near(other[key], value, 1e-9)

    def test_json_goes_to_a_file_beside_the_report_on_standard_output(self):
        path = self.write(CHAMBER)
        out = self.folder / "results.json"
        plain = self.expect(GOOD, "run", path, "--resources", self.small)
        done = self.expect(GOOD, "run", path, "--resources", self.small, "--json", out)
        self.assertEqual(done.stdout, plain.stdout)
        self.assertEqual(json.loads(out.read_text()), self.results(CHAMBER))
        self.assertEqual(sorted(p.name for p in self.folder.iterdir()),
                         ["case.cfg", "results.json"])

    def test_the_report_shows_the_same_numbers(self):
        state = self.results(CHAMBER)["stations"]["chamber"]["state"]
        report = self.expect(GOOD, "run", self.write(CHAMBER), "--resources", self.small)
        self.assertIn("%10.5f" % state["T"], report.stdout.decode())
        self.assertIn("%10.7f" % state["k"], report.stdout.decode())

    def test_a_name_that_is_no_utf8_does_not_cost_the_results(self):
        path = self.write(CHAMBER.encode().replace(b'"test"', b'"\xff\xfe"'))
        done = self.expect(GOOD, "run", path, "--resources", self.small, "--json", "-")
        self.assertEqual(json.loads(done.stdout)["name"], "\ufffd\ufffd")
