"""Equilibrium at given temperature from the element potentials, by an interior-point method.

The Gibbs energy of a mixture of gases and pure condensed phases has a dual [Smith1982]: of all
element potentials lambda (in R T per mole of atoms) by which no phase gains,

    ln sum_j exp(a_j lambda - g_j) <= ln N        over the gases j,
    a_c lambda <= g_c                             for each condensed phase c,

those are sought that value the charge most, b lambda. There g_c = G0/(R T), and for a gas
g_j = G0/(R T) + ln(p/p0) with N = 1 at given pressure, or g_j = G0/(R T) + ln(R T/(V p0)) at given
volume, where the moles N of gas are free and the Helmholtz energy gains N. The problem is convex,
has one answer, and its multipliers are the amounts. A logarithmic barrier [Boyd2004] leads to the
phases that are present; Newton's method on the conditions of equilibrium of these phases ends it.
The answer is accepted only if it fulfils all conditions, for present and for absent phases.
"""

import numpy

REFERENCE_PRESSURE = 1e5  # Pa
GAS_CONSTANT = 8.314472  # J/(mol K), that of the library
CLOSED = 1e-12  # of an element: what its balance may miss
TOUCHING = 1e-11  # R T per mole of formula: what an absent phase may gain by rounding


class NotFound(Exception):
    """The conditions of equilibrium are not fulfilled to the required accuracy."""


class Charge:
    """The elements of a charge, their moles b, and the products that can form from them."""

    def __init__(self, b, species, products, condensed, ions):
        self.elements = [e for e in b if e != "E"] + (["E"] if ions else [])
        self.b = numpy.array([b.get(e, 0.0) for e in self.elements])
        chosen = [species[name] for name in products
                  if species[name].atoms and set(species[name].atoms) <= set(self.elements)]
        self.gases = [one for one in chosen if not one.condensed]
        self.phases = [one for one in chosen if one.condensed and condensed]

    def matrix(self, species):
        """Row i holds the atoms of element i in each of the species."""
        rows = [[one.atoms.get(e, 0.0) for one in species] for e in self.elements]
        return numpy.array(rows, float).reshape(len(self.elements), len(species))


class Composition:
    """An answer: potentials, the logarithm of the moles of gas (minus infinity without gas), and
    the moles of gases and of condensed phases."""

    def __init__(self, potentials, log_n, gases, phases):
        self.potentials, self.log_n = potentials, log_n
        self.gases, self.phases = gases, phases


class Problem:
    """The potentials of one charge at one temperature and pressure or volume.

    A (elements x gases) and C (elements x phases) hold the atoms, g and c the functions above.
    """

    def __init__(self, A, g, C, c, b, free):
        self.A, self.g, self.C, self.c, self.b = A, g, C, c, b
        self.free = free  # the moles of gas are: a problem of given volume
        self.elements, self.count = A.shape[0], C.shape[1]

    # The barrier. The unknowns are lambda and, at given volume, y = ln N.

    def start(self):
        """Potentials so low that no phase is worth to be present."""
        fall = numpy.where(self.b > 0.0, 1.0, 0.1)  # atoms of an ion outweigh its charge
        allowance = numpy.log(self.A.shape[1]) + 1.0
        t = numpy.max((allowance - self.g) / (fall @ self.A))
        if self.count:
            t = max(t, numpy.max((1.0 - self.c) / (fall @ self.C)))
        return numpy.append(-t * fall, 0.0 if not self.free else numpy.log(self.b.sum()))

    def barrier(self, x, t):
        """Value, gradient and curvature of t (N - b lambda) - the logarithms of all margins. The
        value is without b lambda, in which small changes would drown. The curvature comes as H,
        slopes L and margins s: it is H + L diag(1/s^2) L^T."""
        n = self.elements
        potentials, y = x[:n], x[n]
        z = potentials @ self.A - self.g
        top = z.max()
        shares = numpy.exp(z - top)
        total = shares.sum()
        margins = numpy.append(y - top - numpy.log(total), self.c - potentials @ self.C)
        if numpy.any(margins <= 0.0):
            return numpy.inf, None, None, None, None
        shares /= total
        mean = self.A @ shares
        value = -numpy.log(margins).sum()
        L = numpy.zeros((n + 1, 1 + self.count))
        L[:n, 0], L[n, 0] = mean, -1.0
        L[:n, 1:] = self.C
        gradient, H = L @ (1.0 / margins), numpy.zeros((n + 1, n + 1))
        gradient[:n] -= t * self.b
        H[:n, :n] = ((self.A * shares) @ self.A.T - numpy.outer(mean, mean)) / margins[0]
        if self.free:
            N = numpy.exp(y)
            value += t * N
            gradient[n] += t * N
            H[n, n] = t * N
        return value, gradient, H, L, margins

    def centre(self, x, t):
        """Newton's method to the minimum of the barrier function, with steps held short where the
        function is no parabola: as long as one gas outweighs all, it is nearly a plane."""
        size = self.elements + (1 if self.free else 0)
        value, gradient, H, L, margins = self.barrier(x, t)
        damping = t
        whole = size + len(margins)
        system, right = numpy.zeros((whole, whole)), numpy.zeros(whole)
        for _ in range(400):
            # The margins as unknowns of their own: squared, those of the phases that are present
            # would drown all other directions.
            system[:size, :size] = H[:size, :size]
            system[range(size), range(size)] += damping
            system[:size, size:], system[size:, :size] = L[:size], L[:size].T
            system[range(size, whole), range(size, whole)] = -margins**2
            right[:size] = -gradient[:size]
            try:
                step = numpy.linalg.solve(system, right)[:size]
            except numpy.linalg.LinAlgError:  # the products leave a combination of elements open
                damping *= 1e3
                continue
            gain = right[:size] @ step
            if gain < 1e-6:
                if damping < 1e-9 * t:
                    break
                damping *= 0.01
                continue
            step = numpy.append(step, numpy.zeros(self.elements + 1 - size))
            tried = self.barrier(x + step, t)
            if tried[0] - value - t * (self.b @ step[:-1]) > -0.2 * gain:
                damping *= 8.0
                if damping > 1e12 * t:
                    break
                continue
            damping *= 0.15
            x = x + step
            value, gradient, H, L, margins = tried
        return x

    def follow(self):
        """The phases that are present, and potentials close to the answer."""
        x = self.start()
        t = 1.0 / self.b.sum()
        while t < 1e8 / self.b.sum():
            t *= 20.0
            x = self.centre(x, t)
        margins = self.c - x[:-1] @ self.C
        amounts = 1.0 / (t * margins)
        held = (numpy.abs(self.C) * amounts / numpy.maximum(self.b, 1e-300)[:, None])
        present = [k for k in range(self.count)
                   if margins[k] * numpy.sqrt(t) < 1.0 or held[self.b > 0.0, k].max() > 0.1]
        z = x[:-1] @ self.A - self.g
        margin = x[-1] - z.max() - numpy.log(numpy.exp(z - z.max()).sum())
        log_n = x[-1] if self.free else -numpy.log(t * margin)
        if not self.free and margin * numpy.sqrt(t) > 1.0 and \
                self.without_gas(present) is not None:
            log_n = -numpy.inf
        return x[:-1], log_n, present, amounts[present]

    def without_gas(self, present):
        """Moles of the phases that hold all of the elements; null if they cannot."""
        C = self.C[:, present]
        if not present:
            return None
        amounts = numpy.linalg.lstsq(C, self.b, rcond=None)[0]
        closes = numpy.abs(C @ amounts - self.b).max() < CLOSED * self.b.sum()
        return amounts if closes and amounts.min() >= 0.0 else None

    def solve(self):
        """The answer. Where a phase or the gas is about to leave, the barrier cannot tell whether
        it is present: what it leads to is tried without each of them too."""
        potentials, log_n, present, amounts = self.follow()
        tries = [(log_n, list(range(len(present))))]
        tries += [(log_n, [i for i in tries[0][1] if i != k]) for k in tries[0][1]]
        if not self.free and self.without_gas(present) is not None:
            tries.append((-numpy.inf, tries[0][1]))
        reasons = []
        for log_n, kept in tries:
            try:
                return self.settle(potentials, log_n, [present[i] for i in kept], amounts[kept])
            except NotFound as e:
                reasons.append(e)
        raise reasons[0]

    # The end: all conditions of equilibrium of the phases that are present.

    def settle(self, potentials, log_n, present, amounts, most=60):
        """Newton's method on element balances, gas and phases; phases leave when their amount is
        negative and enter when they gain."""
        if numpy.isinf(log_n):
            phases = numpy.zeros(self.count)
            phases[present] = self.without_gas(present)
            return Composition(potentials, log_n, numpy.zeros(self.A.shape[1]), phases)
        potentials = self.neutral(potentials)
        for _ in range(3 * self.elements + 10):
            potentials, log_n, amounts = self.newton(potentials, log_n, present, amounts,
                                                     most)
            if len(amounts) and amounts.min() < -1e-12 * self.b.sum():
                gone = int(amounts.argmin())
                present = present[:gone] + present[gone + 1:]
                amounts = numpy.delete(amounts, gone)
                continue
            gains = potentials @ self.C - self.c
            gains[present] = -1.0
            if self.count and gains.max() > TOUCHING:
                present = present + [int(gains.argmax())]
                amounts = numpy.append(amounts, 0.0)
                continue
            return self.checked(potentials, log_n, present, amounts)
        raise NotFound("the phases that are present do not settle")

    def charges(self, potentials):
        """The logarithms of negative and positive charge, with their slopes; null without ions."""
        if numpy.all(self.b > 0.0):
            return None
        electrons = self.A[self.b == 0.0][0]
        z = potentials @ self.A - self.g
        found = []
        for sign in (1.0, -1.0):
            ions = numpy.flatnonzero(sign * electrons > 0.0)
            if not len(ions):
                return None
            parts = z[ions] + numpy.log(sign * electrons[ions])
            top = parts.max()
            shares = numpy.exp(parts - top)
            found.append((top + numpy.log(shares.sum()), self.A[:, ions] @ shares / shares.sum()))
        return found

    def neutral(self, potentials):
        """The potentials with that of the electron changed so that charges balance."""
        electron = numpy.flatnonzero(self.b == 0.0)
        if not len(electron):
            return potentials
        for _ in range(100):
            found = self.charges(potentials)
            if found is None:
                break
            (negative, slope), (positive, fall) = found
            excess = negative - positive
            potentials = potentials.copy()
            potentials[electron] -= excess / (slope - fall)[electron]
            if abs(excess) < 1e-12:
                break
        return potentials

    def gas(self, potentials, log_n):
        """The moles of the gases."""
        z = potentials @ self.A - self.g
        return numpy.exp(numpy.minimum(z if self.free else z + log_n, 50.0))

    def residuals(self, potentials, log_n, present, amounts):
        n = self.gas(potentials, log_n)
        C = self.C[:, present]
        missing = self.b - self.A @ n - C @ amounts
        size = numpy.abs(self.A) @ n + numpy.abs(C) @ numpy.abs(amounts)
        excess = self.c[present] - potentials @ C
        closing = numpy.log(max(n.sum(), 1e-300)) - log_n
        return n, C, missing, size, excess, closing

    def newton(self, potentials, log_n, present, amounts, most):
        m, k = self.elements, len(present)
        before = numpy.inf
        for _ in range(most):
            n, C, missing, size, excess, closing = self.residuals(potentials, log_n, present,
                                                                  amounts)
            weight = 1.0 / numpy.maximum(size, 1e-300)
            J = numpy.zeros((m + 1 + k, m + 1 + k))
            J[:m, :m] = (self.A * n) @ self.A.T
            J[:m, m + 1:] = C
            J[m, :m] = self.A @ n / max(n.sum(), 1e-300)
            if self.free:
                J[m, m] = -1.0
            else:
                J[:m, m] = self.A @ n
            J[m + 1:, :m] = C.T
            right = numpy.concatenate([missing, [-closing], excess])
            J[:m] *= weight[:, None]
            right[:m] *= weight
            charges = self.charges(potentials)
            if charges is not None:  # linear in the potential, however few ions there are
                electron = int(numpy.flatnonzero(self.b == 0.0)[0])
                (negative, slope), (positive, fall) = charges
                J[electron] = 0.0
                J[electron, :m] = slope - fall
                right[electron] = positive - negative
            columns = numpy.maximum(numpy.abs(J).max(axis=0), 1e-300)
            step = numpy.linalg.lstsq(J / columns, right, rcond=1e-15)[0] / columns
            error = numpy.abs(right).max()
            if error < 1e-15 or (error < 1e-10 and error >= before):
                break
            before = error
            length = self.held_short(step, n / self.b.sum())
            potentials = potentials + length * step[:m]
            log_n += length * step[m]
            if self.free:
                log_n = numpy.log(max(self.gas(potentials, log_n).sum(), 1e-300))
            amounts = amounts + length * step[m + 1:]
        return potentials, log_n, amounts

    def held_short(self, step, shares):
        """The part of a step by which no gas of weight changes more than by a factor e^2 and no
        trace becomes one of weight."""
        moves = step[:self.elements] @ self.A
        traces = shares < 1e-10
        change = max(numpy.abs(moves[~traces]).max(initial=1e-300),
                     0.0 if self.free else abs(step[self.elements]))
        length = min(1.0, 2.0 / change)
        rising = traces & (moves > 0.0)
        room = numpy.log(1e-8) - numpy.log(numpy.maximum(shares[rising], 1e-300))
        return min(length, (room / moves[rising]).min(initial=1.0))

    def checked(self, potentials, log_n, present, amounts):
        n, _, missing, size, excess, closing = self.residuals(potentials, log_n, present, amounts)
        worst = max(numpy.abs(missing / numpy.maximum(size, 1e-300)).max(), abs(closing))
        if not worst < CLOSED or (len(excess) and numpy.abs(excess).max() > TOUCHING):
            raise NotFound(f"the conditions of equilibrium are missed by {worst:.1e}")
        phases = numpy.zeros(self.count)
        phases[present] = numpy.maximum(amounts, 0.0)
        return Composition(potentials, log_n, n, phases)
