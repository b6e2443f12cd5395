"""The second solution against closed forms and against what every equilibrium fulfils, and the
comparison on answers that are known to be right or wrong."""

import math
import pathlib
import random
import unittest

import numpy

from cases import Case, Generator
from compare import judge
from equilibrium import GAS_CONSTANT, REFERENCE_PRESSURE, Charge
from species_file import Table, bands_of, read_species
from states import Solver

FILE = pathlib.Path(__file__).resolve().parents[2] / "resources/thermo.inp"
SPECIES, PRODUCTS = read_species(FILE)


def solver_of(b, condensed=True, ions=False, only=PRODUCTS):
    return Solver(Charge(b, SPECIES, only, condensed, ions))


def function_of(name, T):
    """H/(R T) and S/R of a species."""
    _, h, s = Table([SPECIES[name]]).at(T)
    return h[0], s[0]


def constant_of(T, **reaction):
    """The equilibrium constant of a reaction, of stoichiometric numbers by names."""
    return math.exp(-sum(number * (h - s) for name, number in reaction.items()
                         for h, s in [function_of(name, T)]))


class Reading(unittest.TestCase):
    def test_values_of_the_tables(self):
        # [McBride2002]: heats of formation, and entropies at 298.15 K. The polynomials were made
        # with R = 8.314510 J/(mol K), 4.6e-6 more than the one used here.
        RT = GAS_CONSTANT * 298.15
        for name, heat, entropy in (("H2O", -241826.0, 188.829), ("N2", 0.0, 191.610),
                                    ("CO2", -393510.0, 213.787), ("AL2O3(a)", -1675700.0, 50.920)):
            h, s = function_of(name, 298.15)
            self.assertAlmostEqual(h * RT, heat, delta=0.5 + 6e-6 * abs(heat), msg=name)
            self.assertAlmostEqual(s * GAS_CONSTANT, entropy, delta=0.01, msg=name)

    def test_names_are_told_apart(self):
        self.assertEqual(len(PRODUCTS), len(set(PRODUCTS)))
        self.assertIn("Air", SPECIES)
        self.assertNotIn("Air", PRODUCTS)

    def test_lower_interval_at_a_shared_bound(self):
        table = Table([SPECIES["N2"]])
        below = table.at(math.nextafter(1000.0, 0.0))[1][0]
        above = table.at(math.nextafter(1000.0, 2000.0))[1][0]
        self.assertNotEqual(below, above)
        self.assertAlmostEqual(table.at(1000.0)[1][0], below, delta=1e-12)

    def test_bands(self):
        water = bands_of([SPECIES["H2O(cr)"], SPECIES["H2O(L)"]])
        self.assertEqual([round(b.lowest, 9) for b in water], [253.15])
        self.assertEqual([round(b.highest, 9) for b in water], [293.15])
        # Of three phases the first two make a pair, and the melting point has no band.
        beryllia = bands_of([SPECIES[name] for name in ("BeO(a)", "BeO(b)", "BeO(L)")])
        self.assertEqual([(b.lowest, b.highest) for b in beryllia], [(2338.0, 2408.0)])


class ClosedForms(unittest.TestCase):
    def test_dissociation_of_oxygen(self):
        for p in (1e3, 1e5, 1e8):
            solver = solver_of({"O": 2.0}, only=("O", "O2"))
            state = solver.at(3000.0, p=p)
            x = state.moles["O"] / state.total
            K = constant_of(3000.0, O=2, O2=-1)
            self.assertAlmostEqual(x * x / (1.0 - x) * p / REFERENCE_PRESSURE / K, 1.0, delta=1e-11)

    def test_ionisation_of_argon(self):
        solver = solver_of({"AR": 1.0}, ions=True)
        for T in (3000.0, 6000.0, 12000.0):
            state = solver.at(T, p=1e4)
            n = state.moles
            K = constant_of(T, **{"Ar+": 1, "e-": 1, "Ar": -1})
            found = n["Ar+"] * n["e-"] / n["Ar"] / state.total * 0.1
            self.assertAlmostEqual(found / K, 1.0, delta=1e-10)
            self.assertAlmostEqual(n["Ar+"] / n["e-"], 1.0, delta=1e-12)

    def test_vapour_over_water(self):
        state = solver_of({"H": 2.0, "O": 1.0, "N": 2.0}).at(320.0, V=0.05)
        self.assertGreater(state.moles["H2O(L)"], 0.5)
        pressure = state.moles["H2O"] * GAS_CONSTANT * 320.0 / 0.05
        K = constant_of(320.0, **{"H2O": 1, "H2O(L)": -1})
        self.assertAlmostEqual(pressure / (K * REFERENCE_PRESSURE), 1.0, delta=1e-11)

    def test_boudouard(self):
        state = solver_of({"C": 1.0, "O": 0.7}, only=("C(gr)", "CO", "CO2")).at(950.0, p=2e5)
        n = state.moles
        gas = n["CO"] + n["CO2"]
        K = constant_of(950.0, **{"CO": 2, "C(gr)": -1, "CO2": -1})
        self.assertAlmostEqual(n["CO"]**2 / (n["CO2"] * gas) * 2.0 / K, 1.0, delta=1e-11)
        self.assertAlmostEqual(gas + n["C(gr)"], 1.0, delta=1e-12)

    def test_boiling_at_half_the_heat(self):
        solver = solver_of({"H": 2.0, "O": 1.0}, only=("H2O", "H2O(L)", "H2O(cr)"))
        low, high = solver.at(300.0, p=1e5), solver.at(450.0, p=1e5)
        self.assertIn("H2O(L)", low.moles)
        self.assertNotIn("H2O(L)", high.moles)
        state = solver.having("H", 0.5 * (low.H + high.H), p=1e5)
        T = state.T
        self.assertAlmostEqual(constant_of(T, **{"H2O": 1, "H2O(L)": -1}), 1.0, delta=1e-9)
        h = [function_of(name, T)[0] * GAS_CONSTANT * T for name in ("H2O", "H2O(L)")]
        vapour = state.moles["H2O"]
        self.assertAlmostEqual(vapour + state.moles["H2O(L)"], 1.0, delta=1e-9)
        self.assertAlmostEqual(vapour * h[0] + (1 - vapour) * h[1], 0.5 * (low.H + high.H),
                               delta=1e-2)


class Laws(unittest.TestCase):
    def test_energy_and_entropy_lead_back_to_the_temperature(self):
        b = {"H": 3.0, "O": 2.0, "C": 1.0, "N": 1.0, "AL": 0.4, "CL": 0.5}
        solver = solver_of(b, ions=True)
        for T in (450.0, 1700.0, 3900.0):
            for given in ({"p": 3e6}, {"V": 0.02}):
                state = solver.at(T, **given)
                for quantity in "HS" if "p" in given else "US":
                    found = solver.having(quantity, getattr(state, quantity), **given)
                    self.assertAlmostEqual(found.T / T, 1.0, delta=1e-10)

    def test_no_change_lowers_the_energy(self):
        numbers = random.Random(5)
        for T, given in ((600.0, {"p": 1e6}), (2400.0, {"p": 1e4}), (3000.0, {"V": 0.3})):
            solver = solver_of({"H": 2.0, "O": 2.5, "C": 1.0, "SI": 0.3, "N": 1.0})
            state = solver.at(T, **given)
            problem, gases, phases, _, _ = solver.problem(T, **given)
            n = numpy.array([state.moles[solver.charge.gases[j].name] for j in gases])
            m = numpy.array([state.moles.get(solver.charge.phases[k].name, 0.0) for k in phases])

            def energy(n, m):
                share = n if problem.free else n / n.sum()
                gain = n.sum() if problem.free else 0.0
                potentials = problem.g + numpy.log(numpy.maximum(share, 1e-300))
                return n @ potentials + m @ problem.c - gain

            least, every = energy(n, m), numpy.hstack([problem.A, problem.C])
            for _ in range(20):
                change = numpy.concatenate([n, m]) * [numbers.uniform(-1, 1) for _ in every.T]
                weight = numpy.concatenate([n, m])
                lam = numpy.linalg.lstsq((every * weight) @ every.T, every @ change, rcond=1e-12)[0]
                change = 1e-3 * (change - weight * (lam @ every))
                new = numpy.concatenate([n, m]) + change
                if new.min() >= 0.0:
                    self.assertGreaterEqual(energy(new[:len(n)], new[len(n):]), least - 1e-12)

    def test_elements_at_all_temperatures(self):
        generator = Generator(11, SPECIES, PRODUCTS)
        for _ in range(10):
            case = generator.draw()
            solver = generator.solver(case)
            state = solver.at(generator.temperature(), **case.given())
            for element, moles in zip(solver.charge.elements, solver.charge.b):
                found = sum(n * SPECIES[name].atoms.get(element, 0.0)
                            for name, n in state.moles.items())
                self.assertAlmostEqual(found, moles, delta=1e-11, msg=case.line())


class Comparing(unittest.TestCase):
    """An answer that is right, and the same one changed."""

    def setUp(self):
        self.generator = Generator(1, SPECIES, PRODUCTS)
        self.case = Case(1, "PT", 1e6, 2600.0, True, False, {"H2(L)": 0.6, "O2(L)": 0.4})
        solver = self.generator.solver(self.case)
        self.answer = {"number": 1, "elements": {"H": 1.2, "O": 0.8}, "T": 2600.0, "grade": "A",
                       "blends": [], "moles": dict(solver.at(2600.0, p=1e6).moles)}

    def kind(self):
        return judge((self.generator, self.case, self.answer)).kind

    def test_right(self):
        self.assertEqual(self.kind(), "agree")

    def test_another_amount(self):
        self.answer["moles"]["OH"] += 3e-6
        self.assertEqual(self.kind(), "differ")

    def test_a_missing_species(self):
        self.answer["moles"].pop("HO2")
        self.assertEqual(self.kind(), "differ")

    def test_another_temperature(self):
        self.answer["T"] *= 1.0 + 3e-6
        self.assertEqual(self.kind(), "differ")

    def test_another_charge(self):
        self.answer["elements"]["H"] = 1.2 * (1.0 + 1e-9)
        self.assertEqual(self.kind(), "lost")

    def test_a_failure(self):
        self.answer["failure"] = "code 8"
        self.assertEqual(self.kind(), "refused")

    def test_in_a_band(self):
        self.case = Case(1, "PT", 1e6, 270.0, True, False, {"H2(L)": 0.6, "O2(L)": 0.4})
        self.assertEqual(self.kind(), "excused")


if __name__ == "__main__":
    unittest.main()
