"""ketra db lint: what is wrong with an ingredients file of PROPEP."""

from data_files import INGREDIENTS, PROPEP, WATER, Data
from host import DOCUMENT, changed


class LintOfPropep(Data):
    def check(self, text, *expected, records):
        path = self.write(text, "ingredients.txt")
        findings, summaries = self.lint(DOCUMENT, path)
        self.assertEqual(len(findings), len(expected) + 1, "\n".join(findings))
        for finding, (line, severity, record, *words) in zip(findings, expected):
            start = f"{path}:{line}: {severity}: " + (record and record + ": ")
            self.assertTrue(finding.startswith(start), finding)
            for word in words:
                self.assertIn(word, finding)
        self.assertIn("the last ingredient of a file is left out", findings[-1])
        self.assertIn(f"PROPEP file, {records} record", summaries[0])
        # The library reads as many.
        done = self.ketra("db", "import-propep", path)
        self.assertEqual(max(len(done.stdout.splitlines()) - 1, 0), records, done)

    def test_a_good_file_loses_its_last_ingredient(self):
        self.check(PROPEP, records=2)
        self.check(PROPEP.replace("\n", "\r\n"), records=2)

    def test_the_sample_file(self):
        findings, summaries = self.lint(DOCUMENT, INGREDIENTS)
        self.assertEqual([(finding.split(":")[1], finding.split(": ")[1]) for finding in findings],
                         [("2", "warning"), ("7", "warning"), ("7", "warning"), ("9", "error"),
                          ("10", "warning"), ("11", "error"), ("15", "error"), ("17", "error")])
        self.assertEqual(summaries, [f"{INGREDIENTS}: PROPEP file, 5 records: 4 errors, 4 warnings"])

    def test_formulas(self):
        for old, new, words in (("  4H ", "  4XX", '"XX" is no element in capitals'),
                                ("  4H ", "  4h ", '"h" is no element in capitals'),
                                ("  4H ", "9e9H ", "more atoms than any formula has")):
            self.check(changed(PROPEP, old, new), (2, "error", "METHANE (GAS)", words), records=1)
        self.check(changed(PROPEP, "  4H ", "  xH "),
                   (2, "error", "METHANE (GAS)", 'columns 45-47 hold "  x"'),
                   (2, "warning", "METHANE (GAS)", "H has no number of atoms"), records=2)
        self.check(changed(PROPEP, "  0  -1000", "  1CL-1000"),
                   (2, "error", "METHANE (GAS)", "there is a sixth element"), records=1)
        self.check(changed(PROPEP, "  4H ", " -4H "),
                   (2, "error", "METHANE (GAS)", "a negative number of atoms"), records=2)
        self.check(changed(PROPEP, "  4H ", "4.5H "),
                   (2, "error", "METHANE (GAS)", "the decimals are cut off"), records=2)
        self.check(changed(PROPEP, "  4H   0  ", "  4H   0N "),
                   (2, "warning", "METHANE (GAS)", "N has no number of atoms"), records=2)
        self.check(changed(PROPEP, "  1C   4H ", "  0    0  "),
                   (2, "error", "METHANE (GAS)", "no element, so that"), records=2)

    def test_names(self):
        self.check(changed(PROPEP, "WATER  ", "METHANE"),
                   (3, "error", "METHANE", "takes the place of the one in line 2"), records=1)
        self.check(changed(PROPEP, "WATER             ", "DIHYDROGEN-MONOXIDE"[:18]),
                   (3, "warning", "DIHYDROGEN-MONOXID", 'cut to "DIHYDROGEN-MONOX"'), records=2)
        self.check(changed(PROPEP, "WATER", "     "),
                   (3, "error", "", "there is no name in columns 5-39"), records=1)
        self.check("+        NO RECORD\n" + PROPEP,
                   (1, "warning", "", "is passed over"), records=2)

    def test_data(self):
        for old, new, severity, words in (
                ("-3792", "-379x", "error", 'columns 70-74 hold "-379x"'),
                ("-3792", "99999", "warning", "a heat of formation of 99999 cal/g"),
                (".0361\n   3", ".036x\n   3", "error", 'columns 75-80 hold " .036x"'),
                (" .0361\n   3", "2.0361\n   3", "warning", "a density of 2.0361 lb/in3"),
                (" .0361\n   3", " .0000\n   3", "warning", "a density of 0 lb/in3")):
            self.check(changed(PROPEP, old, new), (3, severity, "WATER", words), records=2)
        self.check(changed(PROPEP, "-3792", " 1e99"),
                   (3, "warning", "WATER", "a heat of formation of 1e+99 cal/g"),
                   (3, "error", "WATER", "the ingredient is dropped"), records=1)
        self.check(changed(PROPEP, "-3792", "  inf"),
                   (3, "error", "WATER", 'columns 70-74 hold "  inf"'),
                   (3, "error", "WATER", "the ingredient is dropped"), records=1)
        self.check(changed(PROPEP, "-3792 ", "-379 \t"),
                   (3, "error", "", "a tab shifts the columns"), records=2)
