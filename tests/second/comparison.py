"""Compares one answer of libketra with the second solution, and finds who is right where they
differ."""

import numpy

from equilibrium import GAS_CONSTANT, NotFound
from states import HIGHEST

CLOSE_T = 1e-6  # relative
CLOSE_FRACTION = 1e-6  # of all moles
TRACE = 1e-8  # mole fractions up to here are not compared
PRESENT = 1e-12  # of all moles: a phase


def reference(case, solver):
    """The state that the second solution finds, null where the data end before."""
    if case.kind[1] == "T":
        return solver.at(case.second, **case.given())
    return solver.having(case.kind[1], case.second, **case.given())


def excuse(state, solver):
    """Why the answer of libketra need not be the one of the real phases, empty if it must be."""
    present = {phase.name for phase in solver.charge.phases
               if state.moles.get(phase.name, 0.0) > PRESENT * state.total}
    for band in solver.bands:
        if band.holds(state.T) and not present.isdisjoint(band.names):
            return "in the band of a blend"
    formulas = [sorted(phase.atoms.items()) for phase in solver.charge.phases
                if phase.name in present]
    if any(formulas.count(formula) > 1 for formula in formulas):
        return "at a phase change without a band"
    if len(state.compositions) == 2 and jumps(state, solver):
        return "where the data of a phase end"
    return ""


def jumps(state, solver):
    """The two sides of the temperature are no equilibrium with each other: a phase or a gas has
    left because its data end."""
    if any(numpy.isinf(side.log_n) for side in state.compositions):
        return False  # without gas the potentials are not determined
    sides = [side.potentials for side in state.compositions]
    return len(sides[0]) != len(sides[1]) or bool(numpy.abs(sides[0] - sides[1]).max() > 1e-4)


class Difference:
    """By how much an answer differs from the second solution: relative in T, in mole fractions."""

    def __init__(self, state, answer):
        self.T = abs(answer["T"] - state.T) / state.T
        total, whole = state.total, sum(answer["moles"].values())
        self.fraction, self.species = 0.0, ""
        for name in {**state.moles, **answer["moles"]}:
            x = state.moles.get(name, 0.0) / total
            y = answer["moles"].get(name, 0.0) / whole
            if max(x, y) > TRACE and abs(x - y) > self.fraction:
                self.fraction, self.species = abs(x - y), name

    def small(self):
        return self.T <= CLOSE_T and self.fraction <= CLOSE_FRACTION


def twofold(case, solver, answer):
    """The second solution finds the same state at the temperature of the answer, and it meets the
    target. Energy and entropy rise with the temperature, except where data end: products that have
    no data above or below a temperature are missing there."""
    quantity, T = case.kind[1], answer["T"]
    if quantity == "T" or not solver.lowest <= T <= HIGHEST:
        return False
    try:
        state = solver.at(T, **case.given())
    except NotFound:
        return False
    size = GAS_CONSTANT * state.total * (1.0 if quantity == "S" else T)
    return (Difference(state, answer).small() and
            abs(getattr(state, quantity) - case.second) < CLOSE_T * size)


def verdict(case, solver, answer):
    """Whether the composition of an answer has the lowest Gibbs energy (at given volume Helmholtz
    energy) at its own temperature, keeps the elements and meets the target: in R T, in moles of the
    least abundant element, and as a relative error of the temperature."""
    T, moles = answer["T"], answer["moles"]
    if not solver.lowest <= T <= HIGHEST:
        return "its temperature lies outside the data"
    try:
        least = solver.at(T, **case.given())
    except NotFound as e:
        return f"no second solution at its temperature: {e}"
    problem, gases, phases, functions, log_p = solver.problem(T, **case.given())
    n = numpy.array([moles.get(solver.charge.gases[j].name, 0.0) for j in gases])
    m = numpy.array([moles.get(solver.charge.phases[k].name, 0.0) for k in phases])
    known = sum(n) + sum(m)
    lost = 1.0 - known / sum(moles.values())
    gas_h, gas_s, phase_h, phase_s = functions
    kept = n > 1e-300
    mixing = numpy.zeros(len(n))
    share = n[kept] if problem.free else n[kept] / n.sum()
    mixing[kept] = numpy.log(share)
    energy = n @ (problem.g + mixing) + m @ problem.c - (n.sum() if problem.free else 0.0)
    best = least.compositions[0]
    lowest = problem.b @ best.potentials - (best.gases.sum() if problem.free else 0.0)
    missing = numpy.abs(problem.A @ n + problem.C @ m - problem.b)
    missing = (missing / numpy.maximum(problem.b, problem.b.max() * 1e-12)).max()
    text = f"its {'F' if problem.free else 'G'} lies {(energy - lowest) / known:.1e} R T above "
    text += f"the lowest at its T, elements miss {missing:.1e}"
    if lost > 1e-9:
        text += f", {lost:.1e} of its moles have no data there"
    if case.kind[1] != "T":
        RT = GAS_CONSTANT * T
        having = {"H": RT * (n @ gas_h + m @ phase_h),
                  "S": GAS_CONSTANT * (n @ (gas_s - mixing - log_p) + m @ phase_s)}
        having["U"] = having["H"] - RT * n.sum()
        scale = 1.0 if case.kind[1] == "S" else T
        miss = (having[case.kind[1]] - case.second) / (GAS_CONSTANT * scale * known)
        text += f", {case.kind[1]} misses its target by {miss:.1e} " + \
                ("R" if case.kind[1] == "S" else "R T")
    return text
