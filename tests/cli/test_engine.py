"""ketra run with nozzle flow: stations, performance and corrections, that they fit together, and
what is said of an engine that cannot be calculated."""

import json
import math

from host import (COLD, DOCUMENT, FINITE, FROZEN, GOOD, NOT_CONVERGED, RESOURCES, SEA_LEVEL,
                  SOURCE, HostCase, changed, engine)

R = 8.314472       # J/(mol K)
ROUNDING = 1e-12
SOLVER = 1e-5      # relative; enthalpy and entropy along the expansion
AREA = 1e-3        # relative; the search for an area ratio ends at 0.0005
LOSSES = "efficiencies = { reaction = 0.98; nozzleHalfAngle = 15.0; };"


class Engine(HostCase):
    def near(self, a, b, tolerance=ROUNDING):
        self.assertLessEqual(abs(a - b), tolerance * max(abs(a), abs(b)), (a, b))

    def run_case(self, code, text, *arguments):
        return self.expect(code, "run", self.write(text), "--resources", self.small, *arguments)

    def report(self, text, *arguments):
        return self.run_case(GOOD, text, *arguments).stdout.decode()

    # Stations

    def check_station(self, station, first):
        state, flow = station["state"], station["flow"]
        self.near(state["h"] + flow["W"] ** 2 / 2, first["h"], SOLVER)
        self.near(state["s"], first["s"], SOLVER)
        self.near(flow["massFlux"], state["rho"] * flow["W"])
        self.near(flow["pressureRatio"], first["p"] / state["p"])
        self.near(flow["Mach"], flow["W"] / state["a"])
        # Droplets take no room: the density of the whole is that of a gas as heavy as all of it.
        self.near(state["rho"], state["p"] * state["M"] / (R * state["T"]), SOLVER)
        if not station["frozen"]:
            self.near(state["a"] ** 2, state["k"] * state["R"] * state["T"], SOLVER)
        self.near(sum(c["moleFraction"] for c in station["composition"]), 1)
        for mole, mass in (("H", "h"), ("S", "s"), ("U", "u"), ("G", "g"), ("Cp", "cp"),
                           ("Cv", "cv")):
            self.near(state[mole] / state["MW"], state[mass], SOLVER)
        condensed = [c for c in station["composition"] if c["condensed"]]
        self.near(state["M"] * (1 - sum(c["moleFraction"] for c in condensed)), state["MW"],
                  SOLVER)
        self.near(state["R"], R / state["M"], SOLVER)
        self.near(1 - state["z"], 1 - sum(c["massFraction"] for c in condensed), SOLVER)
        self.near(state["rhoGas"], state["rho"] * (1 - state["z"]), SOLVER)

    def check_section(self, section, engine_results):
        state, flow, performance = section["state"], section["flow"], section["performance"]
        self.near(flow["areaRatio"] * flow["massFlux"], engine_results["throatMassFlux"], AREA)
        vacuum, optimum = performance["vacuum"], performance["optimum"]
        self.near(vacuum["Is"], flow["W"] + state["p"] / flow["massFlux"])
        self.near(optimum["Is"], flow["W"])
        for impulse in (vacuum, optimum, *performance["ambient"]):
            self.near(impulse["Cf"], impulse["Is"] / engine_results["cstar"])
        for at in performance["ambient"]:
            self.near(at["Is"], vacuum["Is"] - at["pressure"] / flow["massFlux"])

    def test_stations_of_a_shifting_engine_fit_together(self):
        results = self.results(engine(SEA_LEVEL))
        stations, whole = results["stations"], results["engine"]
        first = stations["chamber"]["state"]
        self.assertEqual(list(stations), ["chamber", "chamberEnd", "throat", "exit",
                                          "overExpansion"])
        for name in ("chamber", "chamberEnd", "throat", "exit"):
            with self.subTest(station=name):
                self.check_station(stations[name], first)
                self.assertFalse(stations[name]["frozen"])
        self.check_section(stations["exit"], whole)
        self.assertEqual(stations["chamberEnd"], stations["chamber"])
        self.assertEqual(stations["chamber"]["flow"]["W"], 0)
        self.assertIsNone(stations["chamber"]["flow"]["areaRatio"])
        self.assertEqual(stations["throat"]["flow"]["areaRatio"], 1)
        self.near(stations["throat"]["flow"]["Mach"], 1, 1e-5)
        self.assertEqual(stations["exit"]["flow"]["areaRatio"], 40)
        self.assertIsNone(whole["contraction"])
        self.assertIsNone(whole["freezing"])
        self.assertEqual(whole["stagnationPressure"], first["p"])
        self.near(whole["cstar"] * whole["throatMassFlux"], first["p"], SOLVER)

    def test_a_finite_area_moves_the_gas_and_costs_stagnation_pressure(self):
        results = self.results(engine(FINITE))
        stations, whole = results["stations"], results["engine"]
        end = stations["chamberEnd"]
        # Burning in a duct is no isentropic process: only behind the chamber end entropy is kept.
        for name in ("throat", "exit"):
            self.near(stations[name]["state"]["s"], end["state"]["s"], SOLVER)
        for name in ("chamberEnd", "throat", "exit"):
            self.near(stations[name]["state"]["h"] + stations[name]["flow"]["W"] ** 2 / 2,
                      stations["chamber"]["state"]["h"], SOLVER)
        self.assertEqual(whole["contraction"], 2)
        self.assertEqual(end["flow"]["areaRatio"], 2)
        self.near(end["flow"]["massFlux"] * 2, whole["throatMassFlux"], 0.02)
        self.near(whole["stagnationPressure"],
                  whole["stagnationPressureRatio"] * stations["chamber"]["state"]["p"])
        self.assertLess(whole["stagnationPressureRatio"], 0.96)
        self.assertGreater(whole["stagnationPressureRatio"], 0.90)
        self.check_section(stations["exit"], whole)

    def test_the_contraction_is_a_result_if_the_mass_flux_is_given(self):
        flux = self.results(engine(FINITE))["stations"]["chamberEnd"]["flow"]["massFlux"]
        results = self.results(engine(
            f"nozzleInletConditions = {{ massFlux = {{ value = {flux!r}; }}; }};"))
        # The search for a mass flux ends at 0.1 %, in a velocity that the momentum balance gives.
        self.near(results["engine"]["contraction"], 2, 0.02)

    def test_a_frozen_composition_stays_that_of_the_freezing_section(self):
        results = self.results(engine(FROZEN, exit="areaRatio = 100.0;"))
        stations, whole = results["stations"], results["engine"]
        exit = stations["exit"]
        self.assertTrue(exit["frozen"])
        self.assertEqual([s["frozen"] for n, s in stations.items() if s and n != "exit"],
                         [False] * 3)
        self.check_station(exit, stations["chamber"]["state"])
        self.check_section(exit, whole)
        self.assertEqual(whole["freezing"]["areaRatio"], 2)
        self.assertGreater(whole["freezing"]["T"], exit["state"]["T"])
        # With the freezing section as the exit, the composition is the same one.
        at = self.results(engine(exit="areaRatio = 2.0;"))["stations"]["exit"]
        frozen = {c["name"]: c["moleFraction"] for c in exit["composition"]}
        for c in at["composition"]:
            self.assertLess(abs(frozen[c["name"]] - c["moleFraction"]), 1e-9)
        self.near(whole["freezing"]["T"], at["state"]["T"], 1e-9)
        # What belongs to a shift of the equilibrium has no value there.
        self.assertIsNone(exit["state"]["dlnV_dlnT"])
        self.assertEqual(set(exit["state"]), set(results["units"]["state"]))

    def test_condensed_products_are_carried_along_shifting_and_frozen(self):
        text = (SOURCE / "examples/19-solid-motor.cfg").read_text()
        frozen = changed(text, "nozzleFlow:\n{", "nozzleFlow:\n{\n    freezingConditions: "
                         "{ calculate = true; expansionRatio = 1.5; };")
        for document in (text, frozen):
            results = self.results(document, resources=RESOURCES)
            stations = results["stations"]
            for name in ("chamber", "throat", "exit"):
                with self.subTest(frozen=document == frozen, station=name):
                    self.check_station(stations[name], stations["chamber"]["state"])
                    self.assertGreater(stations[name]["state"]["z"], 0.3)
            self.assertEqual(stations["exit"]["frozen"], document == frozen)
            self.check_section(stations["exit"], results["engine"])

    def test_frozen_flow_delivers_less_than_shifting_flow(self):
        shifting = self.results(engine())["stations"]["exit"]
        frozen = self.results(engine(FROZEN))["stations"]["exit"]
        self.assertLess(frozen["state"]["T"], shifting["state"]["T"])
        for kind in ("vacuum", "optimum"):
            self.assertLess(frozen["performance"][kind]["Is"],
                            shifting["performance"][kind]["Is"])

    def test_a_freezing_pressure_ratio_means_the_pressure(self):
        def flow(condition):
            return self.results(engine(
                f"freezingConditions = {{ calculate = true; {condition} }};"))["stations"]["exit"]

        self.assertEqual(flow("pressureRatio = 8.0;"),
                         flow('pressure = { value = 1.25; unit = "MPa"; };'))

    def test_the_exit_can_be_given_by_its_pressure_or_a_ratio(self):
        by_area = self.results(engine())["stations"]["exit"]
        p, ratio = by_area["state"]["p"], by_area["flow"]["pressureRatio"]
        by_pressure = self.results(engine(exit=f"pressure = {{ value = {p!r}; }};"))
        by_ratio = self.results(engine(exit=f"pressureRatio = {ratio!r};"))
        for other in (by_pressure, by_ratio):
            self.assertLess(abs(other["stations"]["exit"]["flow"]["areaRatio"] - 40), 40 * AREA)
            self.near(other["stations"]["exit"]["state"]["T"], by_area["state"]["T"], SOLVER)

    def test_the_unit_of_the_document_does_not_matter(self):
        mpa = self.results(engine())["stations"]["exit"]["performance"]["vacuum"]["Is"]
        bar = self.results(changed(engine(), 'value = 10.0; unit = "MPa"',
                                   'value = 100.0; unit = "bar"'))
        self.near(bar["stations"]["exit"]["performance"]["vacuum"]["Is"], mpa, 1e-9)

    # Ambient pressure

    def test_an_attached_flow_has_no_over_expansion_section(self):
        results = self.results(engine(SEA_LEVEL, exit="areaRatio = 20.0;"))
        at, = results["engine"]["ambient"]
        self.assertFalse(at["separated"])
        self.assertGreater(results["engine"]["PaCrit"], at["pressure"])
        self.assertIsNone(results["stations"]["overExpansion"])
        self.near(at["Is"], results["stations"]["exit"]["performance"]["ambient"][0]["Is"])

    def test_an_over_expanded_flow_separates_before_the_exit(self):
        results = self.results(engine(SEA_LEVEL, exit="areaRatio = 100.0;"))
        stations, whole = results["stations"], results["engine"]
        at, = whole["ambient"]
        self.assertEqual(at["pressure"], 101325)
        self.assertTrue(at["separated"])
        self.assertLess(whole["PaCrit"], at["pressure"])
        separation = stations["overExpansion"]
        self.assertLess(separation["flow"]["areaRatio"], 100)
        self.assertGreater(separation["state"]["p"], stations["exit"]["state"]["p"])
        self.check_station(separation, stations["chamber"]["state"])
        self.check_section(separation, whole)
        self.near(at["Is"], separation["performance"]["ambient"][0]["Is"])
        # Less nozzle is more thrust there.
        self.assertGreater(at["Is"], stations["exit"]["performance"]["ambient"][0]["Is"])
        # p_a / p_s = 1.6 (1.88 M - 1)^0.64 at the point of separation.
        M, p = separation["flow"]["Mach"], separation["state"]["p"]
        self.near(at["pressure"] / p, 1.6 * (1.88 * M - 1) ** 0.64, 2e-3)

    def test_without_flow_separation_the_nozzle_flows_full(self):
        text = changed(engine(SEA_LEVEL, exit="areaRatio = 100.0;"), "ions = false;",
                       "ions = false; flowSeparation = false;")
        results = self.results(text)
        at, = results["engine"]["ambient"]
        self.assertFalse(at["separated"])
        self.assertIsNone(results["stations"]["overExpansion"])
        self.near(at["Is"], results["stations"]["exit"]["performance"]["ambient"][0]["Is"])

    def test_a_range_of_ambient_pressures_gives_both_its_ends(self):
        fixed = self.results(engine(SEA_LEVEL, exit="areaRatio = 100.0;"))["engine"]["ambient"]
        both = self.results(engine(
            'ambientConditions = { minPressure = { value = 0.0; }; '
            'maxPressure = { value = 1.0; unit = "atm"; }; };',
            exit="areaRatio = 100.0;"))
        vacuum, sea = both["engine"]["ambient"]
        self.assertEqual(vacuum["Is"],
                         both["stations"]["exit"]["performance"]["vacuum"]["Is"])
        self.assertEqual(sea["pressure"], 101325)
        self.near(sea["Is"], fixed[0]["Is"], 1e-4)

    def test_nothing_flows_against_a_higher_pressure_than_the_chamber_s(self):
        results = self.results(engine(
            'ambientConditions = { pressure = { value = 11.0; unit = "MPa"; }; };'))
        at, = results["engine"]["ambient"]
        self.assertIsNone(at["Is"])
        self.assertTrue(at["separated"])
        full = self.results(changed(engine(
            'ambientConditions = { pressure = { value = 11.0; unit = "MPa"; }; };'),
            "ions = false;", "ions = false; flowSeparation = false;"))
        at, = full["engine"]["ambient"]
        self.assertIsNone(at["Is"])
        self.assertFalse(at["separated"])
        report = self.report(engine(
            'ambientConditions = { pressure = { value = 11.0; unit = "MPa"; }; };'))
        self.assertRegex(report, r"Specific impulse:\t +unknown\n")

    # Corrections

    def test_corrections_multiply_and_take_their_part_of_what_is_delivered(self):
        results = self.results(engine(SEA_LEVEL, LOSSES))
        whole = results["engine"]
        c, delivered = whole["corrections"], whole["delivered"]
        self.assertEqual(c["reaction"], 0.98)
        self.assertEqual(c["multiphase"], 1)
        self.near(c["divergence"], (math.cos(15 * 3.14 / 180) + 1) / 2)
        self.near(c["nozzle"], c["divergence"] * c["friction"] * c["multiphase"])
        self.near(c["overall"], c["reaction"] * c["nozzle"])
        ideal = results["stations"]["exit"]["performance"]
        self.near(delivered["cstar"], whole["cstar"] * c["reaction"])
        for kind in ("vacuum", "optimum"):
            self.near(delivered[kind]["Is"], ideal[kind]["Is"] * c["overall"])
            self.near(delivered[kind]["Cf"], ideal[kind]["Cf"] * c["nozzle"])
            self.near(delivered[kind]["Is"], delivered["cstar"] * delivered[kind]["Cf"])
        self.near(delivered["ambient"][0]["Is"], whole["ambient"][0]["Is"] * c["overall"])

    def test_a_stated_nozzle_efficiency_takes_the_place_of_its_parts(self):
        c = self.results(engine("efficiencies = { nozzle = 0.95; };"))["engine"]["corrections"]
        self.assertEqual((c["nozzle"], c["divergence"], c["friction"]), (0.95, 1, 1))
        self.assertLess(c["reaction"], 1)

    # What is not there

    def test_what_is_not_calculated_is_null(self):
        chamber = self.results(changed(engine(exit=""), "nozzleFlow = {  }",
                                       "nozzleFlow = { calculateNozzleFlow = false; }"))
        self.assertIsNone(chamber["engine"])
        self.assertEqual([n for n, s in chamber["stations"].items() if s], ["chamber"])
        throat = self.results(engine(FINITE, exit=""))
        self.assertEqual([n for n, s in throat["stations"].items() if s],
                         ["chamber", "chamberEnd", "throat"])
        for key in ("PaCrit", "ambient", "corrections", "delivered"):
            self.assertIsNone(throat["engine"][key])
        self.assertGreater(throat["engine"]["cstar"], 2000)

    def test_an_exit_before_the_throat_has_no_performance(self):
        results = self.results(engine(exit='pressure = { value = 8.0; unit = "MPa"; };'))
        self.assertIsNone(results["stations"]["exit"]["performance"])
        self.assertLess(results["stations"]["exit"]["flow"]["Mach"], 1)
        self.assertIsNone(results["engine"]["corrections"])

    def test_no_number_is_written_that_is_none(self):
        def refuse(constant):
            self.fail(constant)

        for text in (engine(SEA_LEVEL, LOSSES), engine(FROZEN, FINITE), engine(FINITE, exit="")):
            done = self.run_case(GOOD, text, "--json", "-", "--transport")
            json.loads(done.stdout, parse_constant=refuse)

    # Transport

    def test_transport_properties_stand_at_every_station_if_they_are_asked_for(self):
        path = self.write(engine(FROZEN))
        for arguments, there in (((), False), (("--transport",), True)):
            done = self.expect(GOOD, "run", path, "--resources", RESOURCES, "--json", "-",
                               *arguments)
            results = json.loads(done.stdout)
            for name, station in results["stations"].items():
                if station is None:
                    continue
                with self.subTest(station=name, arguments=arguments):
                    self.assertEqual("transport" in station, there)
                    if not there:
                        continue
                    t = station["transport"]
                    self.assertEqual(set(t), set(results["units"]["transport"]))
                    self.near(t["Pr"], t["viscosity"] * t["cp"] / t["conductivity"], 1e-9)
                    self.near(t["PrFrozen"],
                              t["viscosity"] * t["cpFrozen"] / t["conductivityFrozen"], 1e-9)
                    self.assertGreaterEqual(t["conductivity"], t["conductivityFrozen"])

    def test_missing_transport_data_are_said_only_if_they_are_asked_for(self):
        self.assertEqual(self.run_case(GOOD, engine()).stderr, b"")
        folder = self.folder / "bare"
        folder.mkdir()
        for name in ("thermo.inp", "properties.inp"):
            (folder / name).write_bytes((self.small / name).read_bytes())
        done = self.expect(GOOD, "run", self.write(engine()), "--resources", folder, "--transport")
        self.assertIn(b"ketra: warning: there is no file", done.stderr)
        self.assertIn(b"trans.inp", done.stderr)

    # The report

    def test_the_report_has_a_block_for_every_station(self):
        report = self.report(engine(FINITE, SEA_LEVEL, exit="areaRatio = 100.0;"))
        places = [report.index(title) for title in
                  ("Combustion chamber\n", "Combustion chamber end\n", "  Throat\n",
                   "Nozzle section e= 100.000 (equilibrium)", "Sea level performance",
                   "Performance at ambient pressure")]
        self.assertEqual(places, sorted(places))

    def test_the_report_shows_the_same_numbers_as_the_results(self):
        text = engine(SEA_LEVEL, LOSSES)
        results, report = self.results(text), self.report(text)
        whole = results["engine"]
        for value in (results["stations"]["exit"]["performance"]["vacuum"]["Is"],
                      results["stations"]["exit"]["flow"]["W"], whole["ambient"][0]["Is"],
                      whole["delivered"]["vacuum"]["Is"], whole["delivered"]["optimum"]["Is"],
                      whole["delivered"]["ambient"][0]["Is"], whole["delivered"]["cstar"],
                      whole["corrections"]["overall"]):
            self.assertIn("%10.5f" % value, report)

    def test_the_library_s_report_stands_unchanged_in_front(self):
        plain, _ = self.report(engine()).rsplit("\nCertificate: ", 1)
        self.assertTrue(self.report(engine(), "--corrections").startswith(plain))
        self.assertTrue(self.report(engine(LOSSES)).startswith(plain))
        self.assertNotIn("Delivered", plain)

    def test_delivered_values_are_printed_if_efficiencies_are_stated_or_corrections_asked_for(self):
        title = "Delivered performance"
        self.assertIn(title, self.report(engine(LOSSES)))
        self.assertIn(title, self.report(engine(), "--corrections"))
        unapplied = changed(engine(LOSSES), "reaction", "apply = false; reaction")
        self.assertNotIn(title, self.report(unapplied))

    def test_english_units_hold_for_all_of_the_report(self):
        text = engine(SEA_LEVEL, LOSSES)
        report = self.report(text, "--english")
        self.assertNotIn("m/s ", report.replace("ft/s", ""))
        self.assertNotIn("MPa", report)
        results = self.results(text)["engine"]
        self.assertIn("%10.5f" % (results["ambient"][0]["Is"] / 0.3048), report)
        self.assertIn("%10.5f" % (results["delivered"]["vacuum"]["Is"] / 0.3048), report)

    def test_all_of_the_report_goes_to_the_log_file_and_has_one_kind_of_line_end(self):
        log = self.folder / "run.log"
        done = self.run_case(GOOD, engine(SEA_LEVEL, LOSSES), "--log", log, "--crlf")
        self.assertIn(done.stdout, log.read_bytes())
        self.assertEqual(done.stdout.count(b"\n"), done.stdout.count(b"\r\n"))

    # Failures

    def test_an_exit_too_cold_for_the_data_is_not_converged_and_says_what_failed(self):
        done = self.run_case(NOT_CONVERGED, COLD, "--literal")
        self.assertEqual(done.stdout, b"")
        self.assertIn(b"ketra: error: Could not solve shifting equilibrium for nozzle section "
                      b"Ae/At=400.00", done.stderr)
        self.assertIn(b"did not converge: Could not find nozzle section equilibrium (code 11)",
                      done.stderr)

    def test_no_results_are_written_for_a_failed_engine(self):
        old = self.write("old", "results.json")
        self.run_case(NOT_CONVERGED, COLD, "--json", old)
        self.assertEqual(old.read_text(), "old")

    def test_a_frozen_gas_too_cold_for_the_data_is_not_converged(self):
        text = changed(COLD, "nozzleFlow = {", "nozzleFlow = { freezingConditions = { "
                       "calculate = true; expansionRatio = 1.1; };")
        done = self.run_case(NOT_CONVERGED, text)
        self.assertEqual(done.stdout, b"")
        self.assertIn(b"where their data begin. The state is too cold", done.stderr)
        done = self.run_case(NOT_CONVERGED, text, "--literal")
        self.assertIn(b"is too low for species", done.stderr)
        self.assertIn(b"Could not solve frozen equilibrium for nozzle section", done.stderr)

    def test_messages_of_an_iteration_are_one(self):
        done = self.run_case(NOT_CONVERGED, COLD, "--literal")
        lines = done.stderr.decode().splitlines()
        self.assertEqual(len(lines), len(set(lines)))
        self.assertLess(len(lines), 10)
        self.assertRegex(done.stderr.decode(), r"\(\d+ messages like this\)")
        verbose = self.run_case(NOT_CONVERGED, COLD, "--literal", "--verbose").stderr
        self.assertGreater(len(verbose.splitlines()), len(lines))

    def test_a_pressure_above_the_chamber_s_at_the_exit_is_not_converged(self):
        done = self.run_case(NOT_CONVERGED,
                             engine(exit='pressure = { value = 20.0; unit = "MPa"; };'))
        self.assertIn(b"exceeds nozzle inlet pressure", done.stderr)

    def test_a_chamber_that_lets_so_much_gas_not_pass_is_not_converged(self):
        self.run_case(NOT_CONVERGED, engine(
            "nozzleInletConditions = { massFlux = { value = 1e6; }; };"))

    def test_stated_nonsense_is_an_error_of_the_document(self):
        done = self.run_case(DOCUMENT, engine(exit="areaRatio = 0.5;"))
        self.assertEqual(done.stdout, b"")
        self.assertIn(b"nothing is narrower than the throat", done.stderr)
