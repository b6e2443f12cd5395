"""ketra explosive: heat of explosion with the products."""

import json
from collections import Counter

from host import (CHAMBER, DATA, DOCUMENT, GOOD, MIXTURE, NOT_CONVERGED, RESOURCES, SOURCE, USAGE,
                  HostCase, changed)

COMPOSITION_B = "RDX(cr)=0.6,TNT(cr)=0.4"
COMPLETE = ("Ar", "CO2", "CO", "H2O", "N2", "O2", "NO", "OH")
INERT = ("--method", "inert-diluent")


class Explosive(HostCase):
    def explosive(self, code, *arguments):
        return self.expect(code, "explosive", *arguments, "--resources", RESOURCES)

    def result(self, *arguments):
        return json.loads(self.explosive(GOOD, *arguments, "--json", "-").stdout)

    def of(self, mixture, *arguments, density=100):
        return self.result("--mixture", mixture, "--density", density, *arguments)

    # What it computes

    def test_the_heat_of_a_well_known_explosive(self):
        done = self.explosive(GOOD, "--mixture", "RDX(cr)", "--density", 100)
        lines = done.stdout.decode().splitlines()
        self.assertEqual(lines[0].split(), ["Heat", "of", "explosion", "5756.635", "kJ/kg"])
        self.assertEqual(lines[1].split(), ["Loading", "density", "100.000", "kg/m^3"])
        self.assertEqual(lines[2].split()[-2:], ["1500.000", "K"])
        self.assertEqual(lines[5].split(), ["product", "final", "state", "amount", "mole",
                                            "fraction", "mass", "fraction"])
        self.assertEqual(lines[7].split()[:2], ["N2", "N2"])
        self.assertEqual(lines[8].split()[:2], ["H2O", "H2O(L)"])
        self.assertEqual(done.stderr, b"")

    def test_the_heat_is_the_energy_of_formation_that_the_products_have_lost(self):
        species = {s["name"]: s for s in json.loads(
            self.expect(GOOD, "species", "--json", "--resources", RESOURCES).stdout)["species"]}
        results = self.of("RDX(cr)=0.6,TNT(cr)=0.4", density=1000)
        energy = 0.0  # J/kg
        for reactant in results["input"]["reactants"]:
            s = species[reactant["name"]]
            energy += reactant["massFraction"] / s["M"] * s["dHf"]
        for product in results["products"]:
            s = species[product["finalState"]]
            gas = 0.0 if s["phase"] != "gas" else 8.314472 * 298.15
            energy -= product["amount"] * (s["dHf"] - gas)
        # The records' heats of formation are rounded, and so are their molar masses.
        self.assertAlmostEqual(results["heatOfExplosion"] / energy, 1.0, delta=1e-5)

    def test_the_products_hold_the_elements_of_the_sample(self):
        atoms = Counter()
        elements = {"N2": {"N": 2}, "H2O": {"H": 2, "O": 1}, "CO": {"C": 1, "O": 1},
                    "CO2": {"C": 1, "O": 2}, "H2": {"H": 2}}
        results = self.of("RDX(cr)", "--include", *elements)
        self.assertEqual({p["name"] for p in results["products"]}, set(elements))
        for p in results["products"]:
            for element, n in elements[p["name"]].items():
                atoms[element] += n * p["amount"] * 0.22211634
        for element, n in {"C": 3, "H": 6, "N": 6, "O": 6}.items():
            self.assertAlmostEqual(atoms[element], n, delta=1e-4)

    def test_a_document_is_the_same_sample(self):
        by_document = self.result(SOURCE / "examples/21-composition-b.cfg", "--density", 100)
        by_recipe = self.of(COMPOSITION_B)
        self.assertAlmostEqual(by_document["heatOfExplosion"] / by_recipe["heatOfExplosion"], 1.0,
                               delta=1e-9)
        self.assertEqual(by_document["name"], "Composition B")
        self.assertTrue(by_document["document"].endswith("21-composition-b.cfg"))
        self.assertIsNone(by_recipe["document"])
        self.assertFalse(by_document["input"]["ions"])
        self.assertTrue(by_recipe["input"]["ions"])

    def test_oxidizer_and_fuel_of_a_document_are_a_sample_too(self):
        results = self.result(self.write(CHAMBER), "--density", 100)
        names = {r["name"]: r["massFraction"] for r in results["input"]["reactants"]}
        self.assertAlmostEqual(names["O2(L)"], 6 / 7, places=12)
        self.assertAlmostEqual(names["H2(L)"], 1 / 7, places=12)
        self.assertGreater(results["heatOfExplosion"], 13e6)

    def test_the_page_of_the_example_states_what_comes_out(self):
        page = (SOURCE / "docs/examples/21-composition-b.md").read_text(encoding="utf-8")
        for density in (100, 1000):
            heat = self.of(COMPOSITION_B, density=density)["heatOfExplosion"]
            self.assertIn(f"{heat / 1000:,.0f} kJ/kg", page)
        heat = self.of(COMPOSITION_B, *INERT, density=100)["heatOfExplosion"]
        self.assertIn(f"{heat / 1000:,.0f} kJ/kg", page)

    def test_steam_in_place_of_water(self):
        liquid = self.of("RDX(cr)")
        gaseous = self.of("RDX(cr)", "--replace", "H2O=H2O")
        self.assertEqual(liquid["replacements"], {"H2O": "H2O(L)"})
        self.assertEqual(gaseous["replacements"], {"H2O": "H2O"})
        water, = (p["amount"] for p in liquid["products"] if p["name"] == "H2O")
        # 44.0 kJ/mol of evaporation less R T: the work against the vessel's walls is not done.
        self.assertAlmostEqual(
            (liquid["heatOfExplosion"] - gaseous["heatOfExplosion"]) / water / 1000,
            44.0 - 2.48, delta=0.05)

    def test_other_replacements_stand_beside_the_water(self):
        results = self.of("RDX(cr)", "--replace", "CO=CO2", "--replace", "NH3=N2")
        self.assertEqual(results["replacements"], {"CO": "CO2", "H2O": "H2O(L)", "NH3": "N2"})
        final = {p["name"]: p["finalState"] for p in results["products"]}
        self.assertEqual((final["CO"], final["H2O"], final["N2"]), ("CO2", "H2O(L)", "N2"))

    def test_a_replacement_of_what_does_not_form_is_warned_of(self):
        done = self.explosive(GOOD, "--mixture", "RDX(cr)", "--density", 100, "--replace",
                              "Xe=N2")
        self.assertIn(b"ketra: warning: HEX Exact Method: Could not replace Xe with N2!",
                      done.stderr)

    def test_the_temperature_of_the_products_can_be_chosen(self):
        cool, usual, hot = (self.of("TNT(cr)", "--temperature", T) for T in (1200, 1500, 1800))
        self.assertEqual(usual, self.of("TNT(cr)"))
        self.assertEqual(hot["temperature"], 1800)
        self.assertGreater(cool["heatOfExplosion"], usual["heatOfExplosion"])
        self.assertGreater(usual["heatOfExplosion"], hot["heatOfExplosion"])

    def test_omitted_products_do_not_form(self):
        results = self.of("RDX(cr)", "--omit", "CH4", "NH3", density=1000)
        names = {p["name"] for p in results["products"]}
        self.assertFalse({"CH4", "NH3"} & names)
        self.assertIn("CO2", names)
        self.assertEqual(results["omitted"], ["CH4", "NH3"])

    # The inert diluent

    def test_the_inert_diluent_method_reads_the_rise_of_the_argon(self):
        results = self.of("NG(L)", *INERT, "--include", *COMPLETE, density=1)
        self.assertEqual(results["method"], "inert-diluent")
        self.assertEqual(results["temperature"], 298.15)
        self.assertAlmostEqual(
            results["heatOfExplosion"] / (results["temperatureRise"] * results["cv"] * 1000), 1.0,
            delta=1e-12)
        self.assertEqual(results["replacements"], {})
        exact = self.of("NG(L)", "--replace", "H2O=H2O")
        self.assertAlmostEqual(results["heatOfExplosion"] / exact["heatOfExplosion"], 1.0,
                               delta=2e-3)
        amounts = {p["name"]: p["amount"] for p in results["products"]}
        self.assertAlmostEqual(amounts["N2"] * 0.2270865, 1.5, delta=1e-3)
        done = self.explosive(GOOD, "--mixture", "NG(L)", "--density", 1, *INERT, "--include",
                              *COMPLETE)
        self.assertIn(b"Temperature rise", done.stdout)
        self.assertNotIn(b"HEX", done.stderr)

    def test_argon_is_added_and_kept(self):
        without = self.of("NG(L)", *INERT, "--include", *COMPLETE[1:], density=1)
        self.assertEqual(without["heatOfExplosion"],
                         self.of("NG(L)", *INERT, "--include", *COMPLETE,
                                 density=1)["heatOfExplosion"])
        done = self.explosive(GOOD, "--mixture", "RDX(cr)", "--density", 1, *INERT, "--omit",
                              "Ar")
        self.assertIn(b"Argon cannot be omitted", done.stderr)

    def test_the_inert_diluent_needs_no_list_of_products(self):
        found = self.of("NG(L)", *INERT, density=1)
        named = self.of("NG(L)", *INERT, "--include", *COMPLETE, density=1)
        self.assertAlmostEqual(found["heatOfExplosion"] / named["heatOfExplosion"], 1.0,
                               delta=1e-3)
        self.assertEqual(found["certificate"]["grade"], "A")

    def test_the_inert_diluent_finds_what_the_default_method_finds(self):
        words = (*INERT, "--include", *COMPLETE)
        found, literal = (self.of("NG(L)", *words, *more, density=1) for more in
                          ((), ("--literal",)))
        self.assertAlmostEqual(found["temperatureRise"] / literal["temperatureRise"], 1.0,
                               delta=1e-4)

    def test_a_balance_that_closed_without_the_sample_is_no_result(self):
        out = self.folder / "out.json"
        done = self.explosive(NOT_CONVERGED, "--mixture", "NG(L)", "--density", 1, *INERT,
                              "--literal", "--json", out)
        self.assertEqual(done.stdout, b"")
        self.assertFalse(out.exists())
        self.assertRegex(done.stderr.decode(), r"error: the products hold [0-9.]+ % (more|less) "
                                               r"[CHNO] than the sample\. Name the likely ")

    # Output

    def test_json_beside_the_table_and_in_its_place(self):
        path = self.folder / "out.json"
        table = self.explosive(GOOD, "--mixture", "RDX(cr)", "--density", 100, "--json", path)
        self.assertIn(b"Heat of explosion", table.stdout)
        results = json.loads(path.read_text())
        self.assertEqual(results, self.of("RDX(cr)"))
        self.assertEqual(list(results),
                         ["program", "version", "document", "name", "info", "input", "method",
                          "heatOfExplosion", "density", "temperature", "replacements",
                          "included", "omitted", "temperatureRise", "cv", "products",
                          "certificate", "units"])
        self.assertIsNone(results["temperatureRise"])
        self.assertEqual(results["units"]["heatOfExplosion"], "J/kg")
        amounts = [p["moleFraction"] for p in results["products"]]
        self.assertEqual(amounts, sorted(amounts, reverse=True))

    def test_line_ends(self):
        done = self.explosive(GOOD, "--mixture", "RDX(cr)", "--density", 100, "--crlf")
        self.assertEqual(done.stdout.count(b"\n"), done.stdout.count(b"\r\n"))

    # Faults of the command line

    def test_one_sample_is_needed_and_not_two(self):
        self.assertIn(b"which one?", self.explosive(USAGE, "--density", 1).stderr)
        self.assertIn(b"one sample too many",
                      self.explosive(USAGE, self.write(CHAMBER), "--mixture", "RDX(cr)",
                                     "--density", 1).stderr)

    def test_recipes_that_cannot_be_read(self):
        for recipe, why in (("RDX(cr)=0.6", "add up to 0.6 and not to 1"),
                            ("RDX(cr)=0.6,TNT(cr)=0.5", "add up to 1.1 and not to 1"),
                            ("RDX(cr)=1,", "nothing stands behind the last comma"),
                            ("RDX(cr)=x", "the mass fraction of RDX(cr) is no number above 0"),
                            ("RDX(cr)=nan", "is no number above 0"),
                            ("RDX(cr)=-1,TNT(cr)=2", "is no number above 0"),
                            ("RDX(cr)=0,TNT(cr)=1", "is no number above 0"),
                            ("=1", '"=1" is not of the form NAME=FRACTION'),
                            ("RDX(cr)=0.5,TNT(cr)", '"TNT(cr)" is not of the form'),
                            ("RDX(cr)=0.5;TNT(cr)=0.5", '";TNT(cr)=0.5" stands where a comma')):
            with self.subTest(recipe=recipe):
                done = self.explosive(USAGE, "--mixture", recipe, "--density", 1)
                self.assertIn(why, done.stderr.decode())
                self.assertEqual(done.stdout, b"")

    def test_a_name_can_hold_a_comma(self):
        results = self.of("N2O4(L)=0.7,C2H8N2(L),UDMH=0.3")
        self.assertEqual([r["name"] for r in results["input"]["reactants"]],
                         ["N2O4(L)", "C2H8N2(L),UDMH"])

    def test_numbers_that_cannot_be(self):
        for option, values in (("--density", ("0", "-1", "nan", "inf")),
                               ("--temperature", ("0", "-300", "nan"))):
            for value in values:
                with self.subTest(option=option, value=value):
                    arguments = {"--density": "100", option: value}
                    done = self.explosive(USAGE, "--mixture", "RDX(cr)",
                                          *(word for pair in arguments.items() for word in pair))
                    self.assertIn(f"{option} {value}: a number of", done.stderr.decode())
        self.explosive(USAGE, "--mixture", "RDX(cr)")
        self.explosive(USAGE, "--mixture", "RDX(cr)", "--density", "dense")
        self.explosive(USAGE, "--mixture", "RDX(cr)", "--density", 1, "--method", "guess")

    def test_replacements_that_cannot_be_read(self):
        for words, why in ((("H2O",), "write PRODUCT=SPECIES"), (("=H2O",), "write PRODUCT"),
                           (("H2O=",), "write PRODUCT"),
                           (("H2O=H2O", "--replace", "H2O=H2O(L)"), "H2O is replaced already")):
            with self.subTest(words=words):
                done = self.explosive(USAGE, "--mixture", "RDX(cr)", "--density", 1, "--replace",
                                      *words)
                self.assertIn(why, done.stderr.decode())
        done = self.explosive(USAGE, "--mixture", "RDX(cr)", "--density", 1, *INERT, "--replace",
                              "H2O=H2O")
        self.assertIn(b"in the exact method only", done.stderr)

    def test_names_that_are_no_species(self):
        for arguments in (("--mixture", "RDX"), ("--mixture", "TNT(cr)=0.5,RDX=0.5")):
            done = self.explosive(DATA, *arguments, "--density", 1)
            self.assertIn(b'"RDX" is no species of the database. Did you mean "RDX(cr)"',
                          done.stderr)
        for words in (("--include", "N2", "CO3x"), ("--omit", "CO3x"), ("--replace", "CO3x=N2"),
                      ("--replace", "N2=CO3x")):
            with self.subTest(words=words):
                done = self.explosive(DATA, "--mixture", "RDX(cr)", "--density", 1, *words)
                self.assertIn(b'"CO3x" is no species', done.stderr)

    # Faults of the document

    def test_a_document_is_checked_as_for_a_run(self):
        done = self.explosive(DOCUMENT, self.write(changed(CHAMBER, "massFraction = 1.0; } );\n"
                                                           "        fuel",
                                                           "massFraction = 0.9; } );\n"
                                                           "        fuel")), "--density", 1)
        self.assertIn(b"add up to 0.9", done.stderr)
        self.explosive(DOCUMENT, self.folder / "absent.cfg", "--density", 1)
        self.explosive(DATA, self.write(MIXTURE % '{ name = "RDX"; massFraction = 1.0; }'),
                       "--density", 1)

    def test_a_mixture_ratio_left_open_is_no_sample(self):
        text = changed(CHAMBER, 'value = 6.0; unit = "O/F";', 'unit = "optimal";')
        text = changed(text, "calculateNozzleFlow = false;",
                       "nozzleExitConditions = { areaRatio = 40.0; };")
        done = self.explosive(DOCUMENT, self.write(text), "--density", 1)
        self.assertIn(b"a sample needs a mixture ratio", done.stderr)
