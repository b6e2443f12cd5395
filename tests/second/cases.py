"""Random cases with a fixed seed: charges of propellants and of elements, states from cold to hot,
all types of problem."""

import math
import random

from equilibrium import GAS_CONSTANT, Charge
from states import Solver

TYPES = ("PT", "PT", "PH", "PH", "PH", "PS", "PS", "VT", "VU", "VS")
# Fuel, oxidizer, and their ratio by mole near the highest impulse.
PAIRS = (
    ("H2(L)", "O2(L)", 0.38), ("RP-1", "O2(L)", 1.05), ("CH4(L)", "O2(L)", 1.7),
    ("NH3(L)", "O2(L)", 0.75), ("C2H5OH(L)", "O2(L)", 2.4), ("CH6N2(L)", "N2O4(L)", 1.0),
    ("N2H4(L)", "N2O4(L)", 0.45), ("C2H8N2(L),UDMH", "N2O4(L)", 1.7), ("RP-1", "H2O2(L)", 2.9),
    ("H2(L)", "F2(L)", 0.42), ("N2H4(L)", "CLF3(L)", 0.85), ("B5H9(L)", "N2H4(L)", 5.0),
    ("B2H6(L)", "F2O(L)", 1.6), ("Jet-A(L)", "HNO3(L)", 10.0), ("CH4(L)", "Air", 9.5))
METALS = ("AL(cr)", "Mg(cr)", "B(b)", "Li(cr)", "Be(a)", "Ti(a)", "Zr(a)", "Si(cr)")
SALTS = ("NH4CLO4(I)", "NH4NO3(IV)", "ADN(cr)", "KCLO4(cr)", "LiCLO4(cr)", "HNF(cr)")
BINDERS = ("(CH2)x(cr)", "HTPB", "CH3NO2(L)")
GASES = ("H2", "O2", "N2", "F2", "CL2", "Ar", "He")
ELEMENTS = GASES + ("C(gr)", "AL(cr)", "B(b)", "Li(cr)", "Mg(cr)", "Si(cr)", "S(a)", "Na(cr)",
                    "K(cr)", "Fe(a)", "Be(a)", "Ti(a)")


class Case:
    """A problem: `first` is the pressure in Pa or the volume in m3, `second` the temperature in K
    or the energy in J or entropy in J/K, all for one mole of charge."""

    def __init__(self, number, kind, first, second, phases, ions, charge):
        self.number, self.kind, self.first, self.second = number, kind, first, second
        self.phases, self.ions, self.charge = phases, ions, charge

    def line(self):
        parts = [str(self.number), self.kind, repr(self.first), repr(self.second),
                 str(int(self.phases)), str(int(self.ions))]
        for name, fraction in self.charge.items():
            parts += [name, repr(fraction)]
        return " ".join(parts)

    def given(self):
        """The pressure or the volume."""
        return {"p" if self.kind[0] == "P" else "V": self.first}


def elements_of(charge, species):
    """Moles of each element in one mole of charge."""
    b = {}
    for name, fraction in charge.items():
        for element, number in species[name].atoms.items():
            b[element] = b.get(element, 0.0) + fraction * number
    return b


class Generator:
    def __init__(self, seed, species, products, first=0):
        self.random = random.Random(seed)
        self.species, self.products = species, products
        self.number = first

    def between(self, low, high):
        return low + (high - low) * self.random.random()

    def scattered(self, low, high):
        """Uniform in the logarithm."""
        return low * math.exp(math.log(high / low) * self.random.random())

    def pick(self, names):
        return names[int(self.random.random() * len(names))]

    def charge(self):
        parts = {}
        kind = self.random.random()
        if kind < 0.35:
            fuel, oxidizer, ratio = self.pick(PAIRS)
            parts[fuel], parts[oxidizer] = 1.0, ratio * self.scattered(0.2, 5.0)
        elif kind < 0.6:
            parts[self.pick(SALTS)] = self.between(0.4, 0.8)
            parts[self.pick(BINDERS)] = self.between(0.02, 0.3)
            parts[self.pick(METALS)] = self.between(0.05, 0.6)
        else:
            parts[self.pick(GASES)] = self.scattered(0.1, 1.0)
            while len(parts) < 2 or len(parts) < 5 and self.random.random() < 0.5:
                parts[self.pick(ELEMENTS)] = self.scattered(0.03, 1.0)
            if self.random.random() < 0.1:  # hardly more than an impurity
                parts[self.pick(ELEMENTS)] = self.scattered(1e-9, 1e-3)
        whole = sum(parts.values())
        return {name: part / whole for name, part in parts.items()}

    def temperature(self):
        if self.random.random() < 0.5:
            return self.between(250.0, 5500.0)
        return self.scattered(250.0, 5500.0)

    def draw(self):
        """The next case. Energies and entropies are those of the charge in equilibrium at a random
        temperature, or between those of two temperatures, as often as not in the middle of a change
        of phase."""
        self.number += 1
        kind, charge = self.pick(TYPES), self.charge()
        phases, ions = self.random.random() < 0.85, self.random.random() < 0.25
        p, T = self.scattered(1e3, 1e8), self.temperature()
        other, share, between = self.temperature(), self.random.random(), self.random.random()
        case = Case(self.number, kind, p, T, phases, ions, charge)
        solver = self.solver(case)
        case.second = T = max(T, solver.lowest)
        if kind == "PT":
            return case
        state = solver.at(T, p=p)
        if kind[0] == "V":
            case.first = max(float(state.V), 1e-3 * GAS_CONSTANT * T / p)  # room for gas at least
        if kind[1] != "T":
            case.second = float(getattr(state, kind[1]))
            if between < 0.3:
                far = solver.at(max(other, solver.lowest), **case.given())
                case.second += share * (float(getattr(far, kind[1])) - case.second)
        return case

    def solver(self, case):
        b = elements_of(case.charge, self.species)
        return Solver(Charge(b, self.species, self.products, case.phases, case.ions))
