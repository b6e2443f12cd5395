"""ketra check: each fault of a document is named with its place and its mend."""

import os

from host import (CHAMBER, DATA, DOCUMENT, FROZEN, GOOD, MIXTURE, RESOURCES, SOURCE, HostCase,
                  changed, engine)


class Check(HostCase):
    def fault(self, text, line, *words, code=DOCUMENT, severity="error"):
        """One finding must name the line and hold all the words."""
        messages = self.check(code, text)
        place = "case.cfg:" + (f"{line}: " if line else " ") + severity + ": "
        found = [m for m in messages.splitlines() if place in m and all(w in m for w in words)]
        self.assertEqual(len(found), 1, messages)

    def test_a_good_document_has_no_findings(self):
        done = self.expect(GOOD, "check", self.write(CHAMBER), "--resources", self.small)
        self.assertEqual(done.stderr, b"")
        self.assertTrue(done.stdout.endswith(b"case.cfg: no faults found\n"))

    # Text and syntax

    def test_a_syntax_error_is_named_and_the_file_stays_as_it_is(self):
        text = changed(CHAMBER, "ions = false; };", "ions = = false; };")
        self.fault(text, 4, "syntax error", "semicolon")
        self.assertEqual((self.folder / "case.cfg").read_text(), text)

    def test_a_file_that_is_no_document_is_never_rewritten(self):
        for content in (b"just some words\n", b"\x7fELF\x02\x01\x00\x00", b"", b" \n \n",
                        b"x = {\n" * 20000, bytes(range(1, 256))):
            with self.subTest(content=content[:12]):
                for command in ("check", "run"):
                    path = self.write(content)
                    self.expect(DOCUMENT, command, path, "--resources", self.small)
                    self.assertEqual(path.read_bytes(), content)
        self.assertEqual([p.name for p in self.folder.iterdir()], ["case.cfg"])

    def test_a_file_that_cannot_be_read(self):
        os.symlink("nowhere", self.folder / "dangling.cfg")
        for path, why in (("missing.cfg", b"No such file"), (self.folder, b"not a file"),
                          ("/dev/zero", b"not a file"), ("dangling.cfg", b"No such file")):
            for command in ("check", "run"):
                with self.subTest(path=path, command=command):
                    done = self.expect(DOCUMENT, command, path, "--resources", self.small)
                    self.assertIn(why, done.stderr)
                    self.assertIn(str(path).encode(), done.stderr)

    def test_an_oversized_file_is_refused_unread(self):
        path = self.write(CHAMBER)
        os.truncate(path, 17 * 1024 * 1024)
        done = self.expect(DOCUMENT, "check", path, "--resources", self.small)
        self.assertIn(b"larger than 16 MiB", done.stderr)

    def test_cr_alone_at_line_ends_is_said(self):
        text = ("# comment\n" + CHAMBER).replace("\n", "\r")
        self.assertIn("end in CR alone", self.check(DOCUMENT, text))

    def test_cr_lf_is_good(self):
        self.assertEqual(self.check(GOOD, CHAMBER.replace("\n", "\r\n")), "")

    # Numbers

    def test_numbers_that_do_not_fit_are_named(self):
        for old, new, line, word in (
                ("value = 10.0", "value = 1e400", 6, "1e400"),
                ("value = 10.0", "value = -1.5e999", 6, "-1.5e999"),
                ("value = 10.0", "value = 1e-400", 6, "1e-400"),
                ("value = 10.0", "value = 2147483648", 6, "2147483648 is outside the range"),
                ("value = 10.0", "value = 99999999999999999999", 6, "99999999999999999999"),
                ("value = 10.0", "value = 0x1FFFFFFFF", 6, "0x1FFFFFFFF"),
                ("value = 10.0", "value = -2147483649", 6, "-2147483649")):
            with self.subTest(new=new):
                self.fault(changed(CHAMBER, old, new), line, word, "outside the range")

    def test_numbers_in_comments_and_strings_are_not_numbers(self):
        text = changed(CHAMBER, 'info = "LOX/LH2";',
                       'info = "1e400 \\" 2147483648"; # 1e400\n// 1e400\n/* 1e400\n */')
        self.assertEqual(self.check(GOOD, text), "")

    def test_a_whole_number_at_a_real_key_is_an_error_with_its_mend(self):
        self.fault(changed(CHAMBER, "value = 10.0", "value = 10"), 6,
                   "combustionChamberConditions.pressure.value", "10 is a whole number",
                   "Write 10.0")
        self.fault(changed(CHAMBER, "version = 1.2", "version = 1"), 1, "Write 1.0")

    # Keys, kinds, words

    def test_an_unknown_key_is_a_warning_with_the_nearest_known_one(self):
        self.fault(changed(CHAMBER, "multiphase", "multiPhases"), 4, "generalOptions.multiPhases",
                   'Did you mean "multiphase"', code=GOOD, severity="warning")
        self.fault(CHAMBER + "propellantFeedSystem = { estimateDryMass = true; };\n", 16,
                   'Did you mean "propelantFeedSystem"', code=GOOD, severity="warning")
        self.fault(CHAMBER + "massFraction = 1.0;\n", 16,
                   "propellant.components.oxidizer.massFraction", code=GOOD, severity="warning")
        self.fault(changed(CHAMBER, "ions = false;", "ions = false; colour = 1;"), 4,
                   'Known here: "multiphase", "ions" or "flowSeparation"', code=GOOD,
                   severity="warning")

    def test_strict_makes_a_warning_an_error(self):
        self.check(DOCUMENT, changed(CHAMBER, "multiphase", "multiPhases"), "--strict")
        self.check(GOOD, CHAMBER, "--strict")

    def test_values_of_a_wrong_kind(self):
        for old, new, line, words in (
                ("multiphase = true", "multiphase = 1", 4, ("multiphase", "true or false")),
                ('info = "LOX/LH2"', "info = 5", 3, ("info", "double quotes")),
                ('massFraction = 1.0; } );\n    };', 'massFraction = "1"; } );\n    };', 13,
                 ("massFraction", "real number")),
                ('{ value = 10.0; unit = "MPa"; }', "10.0", 6,
                 ("Write pressure = { value = 10.0; unit =",)),
                ('{ value = 10.0; unit = "MPa"; }', "10", 6, ("value = 10.0;",)),
                ("{ multiphase = true; ions = false; }", "true", 4,
                 ("generalOptions", "group")),
                ('( { name = "H2(L)"; massFraction = 1.0; } )',
                 '{ name = "H2(L)"; massFraction = 1.0; }', 13,
                 ("propellant.components.fuel", "list of groups", "fuel = (")),
                ('( { name = "H2(L)"; massFraction = 1.0; } )', '( "H2(L)" )', 13,
                 ("propellant.components.fuel[0]", "group"))):
            with self.subTest(new=new):
                self.fault(changed(CHAMBER, old, new), line, *words)

    def test_an_unknown_unit_is_named_with_those_that_exist(self):
        self.fault(changed(CHAMBER, '"MPa"', '"mpa"'), 6, '"mpa" is no unit of pressure',
                   'Did you mean "MPa"')
        self.fault(changed(CHAMBER, '"MPa"', '"furlong"'), 6,
                   '"MPa", "atm", "bar", "psi", "Pa" or "kg/cm2"')
        self.fault(changed(CHAMBER, '"O/F"', '"Ratio"'), 11, "kind of component ratio")

    def test_alternatives_that_exclude_each_other(self):
        text = changed(CHAMBER, "calculateNozzleFlow = false;",
                       "calculateNozzleFlow = false; nozzleExitConditions = { areaRatio = 5.0; "
                       "pressureRatio = 3.0; };")
        self.fault(text, 8, "nozzleFlow.nozzleExitConditions.pressureRatio", "is not read",
                   '"areaRatio"', code=GOOD, severity="warning")

    def test_a_missing_group(self):
        for group, rest in (("combustionChamberConditions", "pressure = { value"),
                            ("nozzleFlow", "calculateNozzleFlow = false"), ("propellant", "oxidizer = (")):
            with self.subTest(group=group):
                self.fault(changed(CHAMBER, f"\n{group} =", "\nengineSize ="), 0,
                           f"{group}: the group is missing", rest)

    def test_the_chamber_pressure(self):
        self.fault(changed(CHAMBER, "value = 10.0", "value = 0.0"), 6, "above 0")
        self.fault(changed(CHAMBER, "value = 10.0", "value = -1.0"), 6, "above 0")
        self.fault(changed(CHAMBER, 'pressure = { value = 10.0; unit = "MPa"; };', ""), 5,
                   "no chamber pressure")
        self.fault(changed(CHAMBER, ' unit = "MPa";', ""), 6, "10.0 Pa", code=GOOD,
                   severity="warning")

    def test_a_newer_version_of_the_format(self):
        self.fault(changed(CHAMBER, "version = 1.2", "version = 1.3"), 1, "1.3", "1.2")

    # Nozzle flow

    def test_a_good_engine_has_no_findings(self):
        self.assertEqual(self.check(GOOD, engine(
            FROZEN, "nozzleInletConditions = { contractionAreaRatio = 2.0; };",
            "ambientConditions = { pressure = { value = 0.0; }; };",
            "efficiencies = { cycle = 0.99; reaction = 1.0; nozzle = 0.98; nozzleLength = 80.0; "
            "nozzleHalfAngle = 15.0; };")), "")

    def test_sections_that_no_flow_passes(self):
        for exit, words in (("areaRatio = 0.9;", ("areaRatio", "1 or more")),
                            ("areaRatio = -5.0;", ("areaRatio", "1 or more")),
                            ("pressureRatio = 1.0;", ("pressureRatio", "above 1")),
                            ("pressure = { value = 0.0; };", ("pressure", "above 0")),
                            ("pressure = { value = -1.0; };", ("pressure", "above 0"))):
            with self.subTest(exit=exit):
                self.fault(engine(exit=exit), 8, "nozzleFlow.nozzleExitConditions", *words)
        self.fault(engine(exit="areaRatio = 5.0; supersonic = false;"), 8, "not heeded",
                   code=GOOD, severity="warning")

    def test_conditions_of_the_chamber_that_cannot_be(self):
        for inlet, words in (("contractionAreaRatio = 1.0;", ("above 1", "wider")),
                             ("contractionAreaRatio = 0.5;", ("above 1", "wider")),
                             ("massFlux = { value = 0.0; };", ("above 0", "gas flows"))):
            with self.subTest(inlet=inlet):
                self.fault(engine(f"nozzleInletConditions = {{ {inlet} }};"), 8,
                           "nozzleInletConditions", *words)

    def test_freezing_conditions_that_cannot_be(self):
        for freezing, words in (("", ("where the composition freezes",)),
                                ("expansionRatio = 0.0;", ("above 0",)),
                                ("pressure = { value = 0.0; };", ("above 0",)),
                                ("pressureRatio = 1.0;", ("above 1",))):
            with self.subTest(freezing=freezing):
                self.fault(engine(f"freezingConditions = {{ calculate = true; {freezing} }};"), 8,
                           "freezingConditions", *words)
        self.fault(engine("freezingConditions = { expansionRatio = 2.0; };"), 8, "no effect",
                   code=GOOD, severity="warning")
        self.fault(engine("freezingConditions = { calculate = true; expansionRatio = 1.05; };"), 8,
                   "1.1 is taken", code=GOOD, severity="warning")

    def test_a_freezing_pressure_ratio_is_good(self):
        self.assertEqual(self.check(GOOD, engine(
            "freezingConditions = { calculate = true; pressureRatio = 5.0; };")), "")

    def test_losses_and_pressures_that_cannot_be(self):
        for group, words in (("efficiencies = { reaction = 98.0; };", ("98", "at most 1")),
                             ("efficiencies = { nozzle = 0.0; };", ("above 0",)),
                             ("efficiencies = { cycle = -0.1; };", ("above 0",)),
                             ("efficiencies = { nozzleHalfAngle = 90.0; };", ("below 90",)),
                             ("ambientConditions = { pressure = { value = -1.0; }; };",
                              ("not be below 0",))):
            with self.subTest(group=group):
                self.fault(engine(group), 8, *words)
        self.fault(engine("efficiencies = { nozzleLength = 0.8; };"), 8, "0.8 %", "60 to 100",
                   code=GOOD, severity="warning")

    def test_an_optimum_needs_a_nozzle(self):
        self.fault(changed(CHAMBER, 'value = 6.0; unit = "O/F"', 'unit = "optimal"'), 0,
                   "without a nozzle there is none")
        self.fault(changed(CHAMBER, 'ratio = { value = 6.0; unit = "O/F"; };', ""), 0,
                   "without a nozzle there is none")

    def test_what_is_not_calculated_is_not_checked(self):
        self.assertEqual(self.check(GOOD, changed(
            CHAMBER, "calculateNozzleFlow = false;",
            "calculateNozzleFlow = false; nozzleExitConditions = { areaRatio = 0.5; };")), "")

    # Propellant

    def test_mass_fractions_that_do_not_add_up(self):
        text = changed(CHAMBER, '( { name = "H2(L)"; massFraction = 1.0; } )',
                       '( { name = "H2(L)"; massFraction = 0.6; },\n'
                       '   { name = "H2O(L)"; massFraction = 0.2; } )')
        self.fault(text, 13, "propellant.components.fuel", "add up to 0.8",
                   "H2(L) 0.75 H2O(L) 0.25")
        self.fault(changed(CHAMBER, 'fuel = ( { name = "H2(L)"; massFraction = 1.0; }',
                           'fuel = ( { name = "H2(L)"; massFraction = -1.0; }'), 13,
                   "fuel[0].massFraction", "from 0 to 1")

    def test_a_sum_within_the_tolerance_of_a_mixture_is_good(self):
        text = changed(CHAMBER, 'fuel = ( { name = "H2(L)"; massFraction = 1.0; }',
                       'fuel = ( { name = "H2(L)"; massFraction = 0.999991; }')
        self.assertEqual(self.check(GOOD, text), "")

    def test_a_propellant_without_components(self):
        self.fault(changed(CHAMBER, 'fuel = ( { name = "H2(L)"; massFraction = 1.0; } );',
                           "fuel = ( );"), 13, "no component is stated")
        self.fault(changed(CHAMBER, 'fuel = ( { name = "H2(L)"; massFraction = 1.0; } );', ""), 10,
                   "propellant.components.fuel", "no component is stated")
        self.fault(changed(CHAMBER, "components =", "kind ="), 9, "neither", "mixture")
        self.fault(changed(CHAMBER, "value = 6.0", "value = 0.0"), 11, "ratio is 0")
        self.fault(changed(CHAMBER, 'name = "H2(L)"; ', ""), 13, "has no name")

    def test_a_component_that_is_left_out_is_said(self):
        text = changed(CHAMBER, '( { name = "H2(L)"; massFraction = 1.0; } )',
                       '( { name = "H2(L)"; massFraction = 1.0; }, { name = "H2O(L)"; } )')
        self.fault(text, 13, "fuel[1]", "left out", code=GOOD, severity="warning")

    def test_unknown_species_with_what_may_have_been_meant(self):
        for name, meant in (("LOX", "O2(L)"), ("o2(l)", "O2(L)"), ("O2(cr)", "O2(L)"),
                            ("H2O2L", "H2O2")):
            with self.subTest(name=name):
                self.fault(changed(CHAMBER, "O2(L)", name), 12,
                           f'"{name}" is no species of the database', f'"{meant}"', code=DATA)

    def test_trivial_names_lead_to_the_shipped_species(self):
        for name, meant in (("MMH", "CH6N2(L)"), ("UDMH", "C2H8N2(L),UDMH"), ("NTO", "N2O4(L)"),
                            ("Al(s)", "AL(cr)"), ("RP1", "RP-1"), ("AP", "NH4CLO4(I)")):
            with self.subTest(name=name):
                path = self.write(changed(CHAMBER, "O2(L)", name))
                done = self.expect(DATA, "check", path, "--resources", RESOURCES)
                self.assertIn(f'"{meant}"'.encode(), done.stderr)

    def test_a_crystal_form_that_falls_back_to_the_generic_crystal_is_no_error(self):
        text = changed(CHAMBER, '( { name = "O2(L)"; massFraction = 1.0; } )',
                       '( { name = "O2(L)"; massFraction = 0.5; }, '
                       '{ name = "H2O(a)"; massFraction = 0.5; T = { value = 250.0; }; } )')
        self.assertIn('Unknown species "H2O(a)". Replacing with "H2O(cr)".',
                      self.check(GOOD, text))

    def test_a_premixed_component_without_data_at_its_temperature(self):
        self.fault(MIXTURE % '{ name = "O2(L)"; massFraction = 1.0; }', 5, "O2(L) has no data at "
                   "298.15 K", "not stated", 'T = { value = 90.17; unit = "K"; };')
        self.fault(MIXTURE % '{ name = "H2"; massFraction = 1.0; T = { value = 3.0; }; }', 5,
                   "H2 has no data at 3 K", "from 200 to")

    def test_a_component_falls_back_to_a_temperature_of_its_own_unless_it_has_none(self):
        # Liquid oxygen falls back to its boiling point; ice has no data at 298.15 K, its own one.
        self.check(GOOD, changed(CHAMBER, 'name = "O2(L)";',
                                 'name = "O2(L)"; T = { value = 400.0; unit = "K"; };'))
        self.fault(changed(CHAMBER, "O2(L)", "H2O(cr)"), 12, "H2O(cr) has no data at 298.15 K",
                   "from 200 to 273.15 K", 'value = 273.15')

    def test_all_faults_of_a_document_are_said_at_once(self):
        text = changed(changed(CHAMBER, "value = 6.0", "value = 6"), '"MPa"', '"mpa"')
        messages = self.check(DOCUMENT, text)
        self.assertEqual(messages.count(": error: "), 2)

    def test_warnings_are_said_also_if_the_library_refuses_the_document(self):
        text = changed(changed(CHAMBER, "calculateNozzleFlow = false;", ""), "multiphase", "phases")
        messages = self.check(DOCUMENT, text)
        self.assertIn("generalOptions.phases: unknown key with the value ", messages)
        self.assertIn("Neither freezing conditions", messages)

    # Included files

    def test_include_is_refused_unless_allowed(self):
        self.write('generalOptions = { ions = false; };\n', "options.cfg")
        text = changed(CHAMBER, "generalOptions = { multiphase = true; ions = false; };",
                       '@include "options.cfg"')
        self.fault(text, 4, '@include "options.cfg"', "--allow-include")
        self.assertEqual(self.check(GOOD, text, "--allow-include"), "")

    def test_numbers_of_an_included_file_are_checked_and_named_there(self):
        self.write("\ngeneralOptions = { ions = false; x = 1e999; };\n", "options.cfg")
        text = changed(CHAMBER, "generalOptions = { multiphase = true; ions = false; };",
                       '@include "options.cfg"')
        self.assertIn("options.cfg:2: error: 1e999", self.check(DOCUMENT, text, "--allow-include"))

    def test_a_circle_of_includes_ends(self):
        self.write('@include "case.cfg"\n', "options.cfg")
        text = changed(CHAMBER, "generalOptions = { multiphase = true; ions = false; };",
                       '@include "options.cfg"')
        self.assertIn("more than 10 deep", self.check(DOCUMENT, text, "--allow-include"))

    def test_include_in_a_comment_is_none(self):
        self.assertEqual(self.check(GOOD, '# @include "a"\n/* @include "b" */\n' + CHAMBER), "")

    # The whole format

    def test_every_key_of_the_format_is_known(self):
        text = (SOURCE / "tests/cli/every-key.cfg").read_text()
        self.assertEqual(self.check(GOOD, text), "")

    # All at once

    def test_all_faults_of_a_document_are_listed_at_once(self):
        text = changed(CHAMBER, "multiphase = true", "multiphase = 1")
        text = changed(text, "value = 10.0", "value = 10")
        text = changed(text, "calculateNozzleFlow = false;",
                       "nozzleExitConditions = { areaRatio = 0.5; };")
        text = changed(text, '"H2(L)"; massFraction = 1.0;', '"LH3"; massFraction = 0.9;')
        text += ('engineSize = { thrust = { value = 1.0; unit = "pound"; }; chamberNo = 1; };\n'
                 "chamberCooling = { heatTransfer = { relationsType = \"bart\"; }; };\n"
                 "propelantFeedSystem = { turbopumpFeedSystem = { cycle = \"GGG\"; }; };\n")
        messages = self.check(DOCUMENT, text)
        for line, words in ((4, ("generalOptions.multiphase", "1 stands where true or false")),
                            (6, ("pressure.value", "10 is a whole number")),
                            (8, ("nozzleFlow.nozzleExitConditions.areaRatio", "0.5", "1 or more")),
                            (13, ("propellant.components.fuel:", "add up to 0.9")),
                            (13, ("propellant.components.fuel[0].name", '"LH3"')),
                            (16, ("engineSize.thrust.unit", '"pound"', "unit of force")),
                            (16, ("engineSize.chamberNo", 'Did you mean "chambersNo"')),
                            (17, ("relationsType", '"bart"', '"Bartz"')),
                            (18, ("cycle", '"GGG"', "engine cycle"))):
            with self.subTest(words=words):
                found = [m for m in messages.splitlines()
                         if f"case.cfg:{line}: " in m and all(w in m for w in words)]
                self.assertEqual(len(found), 1, messages)
        self.assertEqual(len(messages.splitlines()), 9, messages)

    def test_a_group_with_a_fault_of_the_format_does_not_hide_those_of_the_others(self):
        text = changed(CHAMBER, 'name = "H2(L)"', "name = 5")
        text = changed(text, "value = 10.0", "value = 10")
        messages = self.check(DOCUMENT, text)
        self.assertIn("propellant.components.fuel[0].name: 5 stands where", messages)
        self.assertIn("10 is a whole number", messages)
        self.assertEqual(len(messages.splitlines()), 2, messages)

    def test_faults_are_listed_without_species_data_too(self):
        text = changed(CHAMBER, "multiphase = true", "multiphase = 1")
        done = self.expect(DOCUMENT, "check", self.write(text), "--resources", self.folder)
        self.assertIn(b"1 stands where true or false", done.stderr)
        self.expect(DATA, "check", self.write(CHAMBER), "--resources", self.folder)
