"""Where the output cannot go: closed pipes, full disks, files that must not be lost."""

import os
import resource
import stat
import subprocess
import unittest

from host import CHAMBER, GOOD, INTERNAL, PROGRAM, HostCase


class Output(HostCase):
    def arguments(self, *more):
        return ("run", self.write(CHAMBER), "--resources", self.small, *more)

    def test_a_reader_that_goes_away_is_no_error(self):
        reading, writing = os.pipe()
        os.close(reading)
        try:
            done = self.expect(GOOD, *self.arguments(), stdout=writing)
        finally:
            os.close(writing)
        self.assertEqual(done.stderr, b"")

    def test_a_full_device_is_an_error(self):
        for arguments in (self.arguments(), self.arguments("--json", "-"),
                          ("species", "--resources", self.small), ("--help",), ("--version",),
                          ("check", self.write(CHAMBER), "--resources", self.small)):
            with self.subTest(arguments=arguments), open("/dev/full", "wb") as full:
                done = self.expect(INTERNAL, *arguments, stdout=full)
                self.assertIn(b"cannot write standard output: No space left", done.stderr)

    def test_a_closed_standard_output_is_an_error_and_no_file_takes_its_place(self):
        out = self.folder / "results.json"
        done = self.ketra(*self.arguments("--log", self.folder / "run.log"), stdout=None,
                          preexec_fn=lambda: os.close(1))
        self.assertEqual(done.returncode, INTERNAL, done.stderr)
        self.assertIn(b"cannot write standard output", done.stderr)
        self.assertFalse(out.exists())

    def test_closed_standard_error_does_not_matter(self):
        self.assertEqual(self.ketra(*self.arguments(), stderr=None,
                                    preexec_fn=lambda: os.close(2)).returncode, GOOD)

    def test_a_file_that_cannot_be_written(self):
        for option, path in (("--json", "/dev/full"), ("--json", "nowhere/x.json"),
                             ("--json", self.folder), ("--log", "nowhere/x.log"),
                             ("--log", "/dev/full"), ("--log", self.folder)):
            with self.subTest(option=option, path=path):
                done = self.expect(INTERNAL, *self.arguments(option, path))
                self.assertIn(f"cannot write {path}".encode(), done.stderr)
        self.assertTrue(stat.S_ISCHR(os.stat("/dev/full").st_mode))

    def test_a_failed_write_keeps_the_old_file_and_leaves_no_other(self):
        old = self.write("old", "results.json")
        limit = 1000  # bytes a file may have: less than the results
        done = self.ketra(*self.arguments("--json", old), preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_FSIZE, (limit, limit)))
        self.assertEqual(done.returncode, INTERNAL, done.stderr)
        self.assertIn(b"results.json: File too large", done.stderr)
        self.assertEqual(old.read_text(), "old")
        self.assertEqual(sorted(p.name for p in self.folder.iterdir()),
                         ["case.cfg", "results.json"])

    def test_a_new_file_keeps_mode_and_link_of_the_old_one(self):
        old = self.write("old", "results.json")
        old.chmod(0o640)
        link = self.folder / "link.json"
        link.symlink_to("results.json")
        self.expect(GOOD, *self.arguments("--json", link))
        self.assertTrue(link.is_symlink())
        self.assertTrue(old.read_text().startswith("{"))
        self.assertEqual(stat.S_IMODE(old.stat().st_mode), 0o640)

    def test_a_pipe_gets_the_results_directly(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        path = self.write(CHAMBER)
        with subprocess.Popen([PROGRAM, "run", path, "--resources", self.small, "--json", pipe],
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE) as running:
            text = pipe.read_text()
            self.assertEqual(running.wait(timeout=300), GOOD)
        self.assertTrue(text.startswith("{") and text.endswith("}\n"))
        self.assertTrue(stat.S_ISFIFO(pipe.stat().st_mode))


if __name__ == "__main__":
    unittest.main()
