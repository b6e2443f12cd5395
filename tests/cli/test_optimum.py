"""The search for the best mixture ratio, and the line that shows its progress."""

import os
import pty
import re
import subprocess

from host import (DOCUMENT, GOOD, NOT_CONVERGED, PROGRAM, HostCase, changed, engine)

OPTIMUM = engine(ratio='unit = "optimal";')

# A fuel that holds more oxygen than the best ratio asks for: more of it only makes it worse.
BEYOND = changed(OPTIMUM, 'fuel = ( { name = "H2(L)"; massFraction = 1.0; } );',
                 'fuel = ( { name = "H2(L)"; massFraction = 0.143; },\n'
                 '         { name = "O2(L)"; massFraction = 0.857; } );')


class Optimum(HostCase):
    def effective_impulse(self, results):
        return results["engine"]["delivered"]["vacuum"]["Is"]

    def test_the_ratio_found_is_better_than_those_beside_it(self):
        results = self.results(OPTIMUM)
        self.assertTrue(results["optimized"])
        alpha, best = results["input"]["alpha"], self.effective_impulse(results)
        for distance in (-0.03, -0.01, 0.01, 0.03):
            other = self.results(engine(ratio=f'value = {alpha + distance!r}; unit = "alpha";'))
            self.assertFalse(other["optimized"])
            self.assertLess(self.effective_impulse(other), best)

    def test_the_report_and_its_options_are_those_of_a_stated_ratio(self):
        alpha = self.results(OPTIMUM)["input"]["alpha"]
        stated = engine(ratio=f'value = {alpha!r}; unit = "alpha";')
        for arguments in ((), ("--english",), ("--transport", "--corrections")):
            reports = [self.expect(GOOD, "run", self.write(text), "--resources", self.small,
                                   *arguments).stdout for text in (OPTIMUM, stated)]
            self.assertEqual(*reports)

    def test_the_result_is_the_same_each_time(self):
        first, second = self.results(OPTIMUM), self.results(OPTIMUM)
        self.assertEqual(first, second)

    def test_an_optimum_outside_the_range_is_not_converged(self):
        done = self.expect(NOT_CONVERGED, "run", self.write(BEYOND), "--resources", self.small)
        self.assertEqual(done.stdout, b"")
        self.assertIn(b"there is no best mixture ratio from alpha = 0.2 to 1.8", done.stderr)
        self.assertIn(b"State a ratio with", done.stderr)
        self.assertEqual(done.stderr.count(b"\n"), 1)

    def test_without_a_nozzle_there_is_no_optimum(self):
        chamber = changed(engine(exit="", ratio='unit = "optimal";'), "nozzleFlow = {  }",
                          "nozzleFlow = { calculateNozzleFlow = false; }")
        throat = engine("nozzleInletConditions = { contractionAreaRatio = 2.0; };", exit="",
                        ratio='unit = "optimal";')
        for text in (chamber, throat):
            for command in ("run", "check"):
                done = self.expect(DOCUMENT, command, self.write(text), "--resources", self.small)
                self.assertIn(b"without a nozzle there is none", done.stderr)

    def test_no_progress_is_shown_unless_on_a_terminal(self):
        done = self.expect(GOOD, "run", self.write(OPTIMUM), "--resources", self.small)
        self.assertEqual(done.stderr, b"")

    def test_progress_is_shown_on_a_terminal_and_wiped(self):
        ours, theirs = pty.openpty()
        with subprocess.Popen([PROGRAM, "run", self.write(OPTIMUM), "--resources", self.small],
                              stdout=subprocess.PIPE, stderr=theirs) as running:
            os.close(theirs)
            running.stdout.read()
            shown = b""
            try:
                while part := os.read(ours, 4096):
                    shown += part
            except OSError: # the other side is gone
                pass
            self.assertEqual(running.wait(timeout=300), GOOD)
        os.close(ours)
        self.assertRegex(shown, rb"^\rsearching for the best mixture ratio, 0 s")
        # The last thing written are blanks over the whole line, and the cursor is back.
        line = re.split(rb"\r", shown)
        self.assertEqual(line[-1], b"")
        self.assertRegex(line[-2], rb"^ +$")
        self.assertGreaterEqual(len(line[-2]), len(line[-3]))
