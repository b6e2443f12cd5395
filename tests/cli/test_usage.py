"""Help, version, and command lines that cannot be understood."""

from host import GOOD, USAGE, HostCase


class Usage(HostCase):
    def test_help_names_every_command_the_exit_codes_and_an_example(self):
        text = self.expect(GOOD, "--help").stdout.decode()
        for word in ("run", "compare", "throttle", "nozzle", "check", "species", "KETRA_RESOURCES", "ketra run examples/",
                     "Exit status", "70"):
            self.assertIn(word, text)

    def test_each_command_has_help_with_examples(self):
        for command, words in (("run", ("--english", "--transport", "--json", "--log",
                                        "--resources", "--crlf", "--corrections", "DOCUMENT",
                                        "O/F", "optimal", "nozzleExitConditions")),
                               ("compare", ("--english", "--json", "DOCUMENTS")),
                               ("throttle", ("--ratio", "--json", "--english",
                                             "--allow-failures", "DOCUMENT")),
                               ("nozzle", ("--stations", "--csv", "--json", "--composition",
                                           "--english", "--allow-failures", "DOCUMENT")),
                               ("check", ("--strict", "--allow-include", "DOCUMENT")),
                               ("species", ("PATTERN", "--json"))):
            text = self.expect(GOOD, command, "--help").stdout.decode()
            for word in words + ("Examples:", f"ketra {command}"):
                with self.subTest(command=command, word=word):
                    self.assertIn(word, text)

    def test_version_is_one_line(self):
        self.assertRegex(self.expect(GOOD, "--version").stdout.decode(), r"^ketra \d+\.\d+\.\d+\n$")

    def test_without_a_command_the_help_goes_to_standard_error(self):
        done = self.expect(USAGE)
        self.assertEqual(done.stdout, b"")
        self.assertIn(b"Examples:", done.stderr)

    def test_a_command_line_that_cannot_be_understood(self):
        for arguments, word in ((("fly",), b"fly"),
                                (("run",), b"DOCUMENT"),
                                (("run", "a.cfg", "b.cfg"), b"b.cfg"),
                                (("run", "a.cfg", "--metric"), b"--metric"),
                                (("run", "a.cfg", "--json"), b"--json"),
                                (("compare", "a.cfg"), b"DOCUMENTS"),
                                (("throttle", "a.cfg"), b"--ratio"),
                                (("nozzle",), b"DOCUMENT"),
                                (("check",), b"DOCUMENT"),
                                (("species", "a", "b"), b"b")):
            with self.subTest(arguments=arguments):
                done = self.expect(USAGE, *arguments)
                self.assertEqual(done.stdout, b"")
                self.assertIn(b"ketra: error: ", done.stderr)
                self.assertIn(word, done.stderr)
