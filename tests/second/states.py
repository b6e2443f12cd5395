"""States of a charge: equilibrium at given temperature, and the temperature that gives a charge the
enthalpy, entropy or internal energy asked for, enclosed from both sides."""

import numpy
import scipy.optimize

from equilibrium import GAS_CONSTANT, REFERENCE_PRESSURE, NotFound, Problem
from species_file import Table, bands_of

LOWEST, HIGHEST = 200.0, 6000.0  # K, of the data of the gases
HAIRS = (1e-12, 1e-11, 1e-10, 1e-9)  # of T: how far apart the two sides of an answer lie


class State:
    """Temperature, moles by species, and the quantities that a problem can ask for, for one mole
    of charge: H and U in J, S in J/K, p in Pa, V in m3."""

    def __init__(self, T, p, V, moles, H, S, U, compositions):
        self.T, self.p, self.V, self.moles = T, p, V, moles
        self.H, self.S, self.U = H, S, U
        self.compositions = compositions

    @property
    def total(self):
        return sum(self.moles.values())


class Solver:
    """Finds states of one charge."""

    def __init__(self, charge):
        self.charge = charge
        self.bands = bands_of(charge.phases)
        self.gases, self.phases = Table(charge.gases), Table(charge.phases)
        self.A, self.C = charge.matrix(charge.gases), charge.matrix(charge.phases)
        self.last = None
        # Below this an element has no product with data.
        self.lowest = max([LOWEST] + [min(one.lowest for one in charge.gases + charge.phases
                                          if e in one.atoms) for e in charge.elements if e != "E"])
        ends = {(tuple(one.atoms.items()), one.highest) for one in charge.phases}
        self.begins = sorted({one.lowest for one in charge.phases if one.lowest > self.lowest and
                              (tuple(one.atoms.items()), one.lowest) not in ends}, reverse=True)

    def problem(self, T, p=None, V=None):
        """The problem, which gases and phases take part in it, and their H/(R T) and S/R."""
        gases, gas_h, gas_s = self.gases.at(T)
        phases, phase_h, phase_s = (self.phases.at(T) if self.charge.phases else
                                    (numpy.zeros(0, int), numpy.zeros(0), numpy.zeros(0)))
        log_p = numpy.log((p or GAS_CONSTANT * T / V) / REFERENCE_PRESSURE)
        A, b = self.A[:, gases], self.charge.b
        rows = numpy.abs(A).sum(axis=1) > 0.0  # without ions the charge is no element
        rows |= b > 0.0
        problem = Problem(A[rows], gas_h - gas_s + log_p, self.C[rows][:, phases],
                          phase_h - phase_s, b[rows], free=V is not None)
        return problem, gases, phases, (gas_h, gas_s, phase_h, phase_s), log_p

    def at(self, T, p=None, V=None):
        """Equilibrium at the temperature and the pressure or volume."""
        problem, gases, phases, functions, log_p = self.problem(T, p, V)
        answer = self.near(problem, phases, T)
        if answer is None:
            answer = problem.solve()
        self.last = (answer, [int(k) for k in phases], T)
        gas_h, gas_s, phase_h, phase_s = functions
        n, m = answer.gases, answer.phases
        with numpy.errstate(divide="ignore", invalid="ignore"):
            share = n if V is not None else n / max(n.sum(), 1e-300)
            mixing = numpy.where(share > 0.0, n * (numpy.log(share) + log_p), 0.0).sum()
        RT = GAS_CONSTANT * T
        H = RT * (n @ gas_h + m @ phase_h)
        S = GAS_CONSTANT * (n @ gas_s + m @ phase_s - mixing)
        moles = {self.charge.gases[j].name: n[i] for i, j in enumerate(gases)}
        moles.update({self.charge.phases[k].name: m[i] for i, k in enumerate(phases) if m[i] > 0.0})
        gas = n.sum()
        return State(T, p or gas * RT / V, V or gas * RT / p, moles, H, S, H - RT * gas, [answer])

    def near(self, problem, phases, T):
        """The answer from the potentials of the state before, if they lead there at once."""
        if self.last is None or numpy.isinf(self.last[0].log_n):
            return None
        before, numbers, at = self.last
        if len(before.potentials) != problem.elements:
            return None
        moles = {numbers[i]: before.phases[i] for i in numpy.flatnonzero(before.phases > 0.0)}
        present = [i for i, k in enumerate(phases) if int(k) in moles]
        amounts = numpy.array([moles[int(phases[i])] for i in present])
        try:
            with numpy.errstate(all="raise", under="ignore"):
                return problem.settle(before.potentials * (at / T), before.log_n, present,
                                      amounts, most=20)
        except (NotFound, FloatingPointError, numpy.linalg.LinAlgError):
            return None

    def having(self, quantity, target, p=None, V=None):
        """The state in which `quantity` (H, S or U) is `target`; null if the data do not reach
        so far. Quantities jump where phases change into each other: there both sides are present
        by the rule of the lever."""

        def excess(T):
            return (getattr(self.at(T, p, V), quantity) - target) / scale

        # Where the data of a phase begin, energies fall: below, other products stand for it. The
        # answer with all products counts, if there is one.
        scale, low, high = 1.0, self.lowest, HIGHEST
        for begin in self.begins:
            if excess(begin) <= 0.0:
                low = begin
                break
            high = begin * (1.0 - 1e-9)
        least, most = excess(low), excess(high)
        if least > 0.0 or most < 0.0:
            return None
        scale = max(most - least, 1e-300)
        T = scipy.optimize.brentq(excess, low, high, xtol=1e-10, rtol=1e-14)
        for width in HAIRS:
            sides = [self.at(T * (1.0 + sign * width), p, V) for sign in (-1.0, 1.0)]
            values = [getattr(side, quantity) for side in sides]
            if values[0] <= target <= values[1]:
                break
        else:
            raise NotFound("the temperature is not enclosed")
        share = (target - values[0]) / (values[1] - values[0]) if values[1] > values[0] else 0.5
        return mixed(T * (1.0 + width * (2.0 * share - 1.0)), sides, share)


def mixed(T, sides, share):
    """So much of the second state, and the rest of the first."""
    low, high = sides

    def weigh(a, b):
        return (1.0 - share) * a + share * b

    moles = {name: weigh(low.moles.get(name, 0.0), high.moles.get(name, 0.0))
             for name in {**low.moles, **high.moles}}
    return State(T, weigh(low.p, high.p), weigh(low.V, high.V), moles, weigh(low.H, high.H),
                 weigh(low.S, high.S), weigh(low.U, high.U),
                 low.compositions + high.compositions)
