"""ketra run: the report, its options, and the exit codes of each kind of failure."""

from host import (CHAMBER, DATA, DOCUMENT, GOOD, MIXTURE, NOT_CONVERGED, HostCase, changed)


class Run(HostCase):
    def run_case(self, code, text, *arguments):
        return self.expect(code, "run", self.write(text), "--resources", self.small, *arguments)

    def test_report_goes_to_standard_output_and_nothing_to_standard_error(self):
        done = self.run_case(GOOD, CHAMBER)
        self.assertEqual(done.stderr, b"")
        report = done.stdout.decode()
        for line in ("Case name:", "Initial data", "Propellant:", "(p=const, H=const)",
                     "Combustion composition:", "Combustion parameters:", "Temperature",
                     "Enthalpy", "Cp (eq)", "rho"):
            self.assertIn(line, report)
        self.assertIn("MPa", report)
        self.assertNotIn("psi", report)

    def test_line_ends_are_lf_unless_crlf_is_asked_for(self):
        lf = self.run_case(GOOD, CHAMBER).stdout
        self.assertNotIn(b"\r", lf)
        crlf = self.run_case(GOOD, CHAMBER, "--crlf").stdout
        self.assertEqual(crlf, lf.replace(b"\n", b"\r\n"))

    def test_english_units(self):
        report = self.run_case(GOOD, CHAMBER, "--english").stdout.decode()
        for unit in ("psi", "Btu/lbm", "lbm/ft^3", "ft/s"):
            self.assertIn(unit, report)
        self.assertNotIn("MPa", report)

    def test_transport_is_accepted(self):
        plain = self.run_case(GOOD, CHAMBER).stdout.decode()
        report = self.run_case(GOOD, CHAMBER, "--transport").stdout.decode()
        for line in plain.splitlines():
            self.assertIn(line, report)

    def test_log_file_gets_the_report_and_the_messages(self):
        text = changed(CHAMBER, "massFraction = 1.0; } );\n        fuel",
                       "massFraction = 1.0; },\n { name = \"O2\"; massFraction = 0.0; } );\n"
                       "        fuel")
        log = self.folder / "run.log"
        done = self.run_case(GOOD, text, "--log", log)
        written = log.read_bytes()
        self.assertNotIn(b"\r", written)
        self.assertIn(done.stdout, written)
        self.assertIn(b"warning: THERMO: Skipping O2 with mass fraction r=0\n", written)
        self.assertIn(b"ketra: warning: Skipping O2 with mass fraction r=0\n", done.stderr)

    def test_informations_are_printed_only_with_verbose(self):
        # A record that stands twice is an information of the loader.
        species = self.small / "thermo.inp"
        twice = self.folder / "twice"
        twice.mkdir()
        lines = species.read_text().splitlines()
        record = lines[2:4 + 3 * int(lines[3][:2])]
        (twice / "thermo.inp").write_text("\n".join(lines[:2] + record + lines[2:]) + "\n")
        (twice / "properties.inp").write_bytes((self.small / "properties.inp").read_bytes())
        path = self.write(CHAMBER)
        quiet = self.expect(GOOD, "run", path, "--resources", twice)
        verbose = self.expect(GOOD, "run", path, "--resources", twice, "--verbose")
        self.assertNotIn(b"info", quiet.stderr)
        self.assertIn(b"ketra: info: Replacing existing species H", verbose.stderr)
        self.assertEqual(quiet.stdout, verbose.stdout)

    def test_a_document_with_errors_is_not_run(self):
        done = self.run_case(DOCUMENT, changed(CHAMBER, "value = 6.0", "value = 6"))
        self.assertEqual(done.stdout, b"")
        self.assertIn(b"case.cfg:11: error: propellant.components.ratio.value: 6 is a whole",
                      done.stderr)
        self.assertIn(b"is not run", done.stderr)

    def test_a_warning_does_not_keep_a_document_from_running_unless_strict(self):
        text = changed(CHAMBER, "ions = false;", "ions = false; multiphse = true;")
        done = self.run_case(GOOD, text)
        self.assertIn(b"warning: generalOptions.multiphse: unknown key", done.stderr)
        self.assertIn(b"Temperature", done.stdout)
        done = self.run_case(DOCUMENT, text, "--strict")
        self.assertEqual(done.stdout, b"")

    def test_an_unknown_species_is_missing_data(self):
        done = self.run_case(DATA, changed(CHAMBER, "O2(L)", "F2(L)"))
        self.assertEqual(done.stdout, b"")
        self.assertIn(b"case.cfg:12: error: propellant.components.oxidizer[0].name: \"F2(L)\" is "
                      b"no species", done.stderr)

    def test_a_problem_without_solution_is_not_converged(self):
        # Liquid hydrogen alone: no product exists at a temperature as low as its enthalpy asks for.
        done = self.run_case(NOT_CONVERGED, MIXTURE % (
            '{ name = "H2(L)"; massFraction = 1.0; T = { value = 20.27; unit = "K"; }; }'))
        self.assertEqual(done.stdout, b"")
        self.assertIn(b"did not converge", done.stderr)

    def test_no_results_are_written_for_a_failed_calculation(self):
        json = self.write("old", "results.json")
        self.run_case(NOT_CONVERGED, MIXTURE % (
            '{ name = "H2(L)"; massFraction = 1.0; T = { value = 20.27; unit = "K"; }; }'),
            "--json", json)
        self.assertEqual(json.read_text(), "old")

    def test_the_library_has_the_last_word_on_a_document(self):
        done = self.run_case(DOCUMENT, changed(CHAMBER, "calculateNozzleFlow = false;", ""))
        self.assertIn(b"Neither freezing conditions, nozzle inlet conditions nor nozzle exit "
                      b"conditions is defined within NozzleFlowOptions", done.stderr)
