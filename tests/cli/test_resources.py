"""Where the species files are looked for, and what is said when they are not there."""

import os
import shutil
import stat

from host import CHAMBER, DATA, GOOD, PROGRAM, HostCase, write_species_file


class ResourcesOrder(HostCase):
    def names(self, *arguments, **options):
        done = self.expect(GOOD, "species", *arguments, **options)
        return [line.split()[0] for line in done.stdout.decode().splitlines()[1:]]

    def test_option_before_variable_before_working_folder(self):
        write_species_file(self.folder / "stated", ["H2"])
        write_species_file(self.folder / "variable", ["O2"])
        write_species_file(self.folder / "resources", ["H2O"])
        variable = {"KETRA_RESOURCES": "variable"}
        self.assertEqual(self.names("--resources", "stated", environment=variable), ["H2"])
        self.assertEqual(self.names(environment=variable), ["O2"])
        self.assertEqual(self.names(), ["H2O"])
        self.assertEqual(self.names(environment={"KETRA_RESOURCES": ""}), ["H2O"])

    def test_the_installed_folder_beside_the_program_comes_before_the_working_folder(self):
        program = self.folder / "prefix/bin/ketra"
        program.parent.mkdir(parents=True)
        shutil.copy(PROGRAM, program)
        program.chmod(program.stat().st_mode | stat.S_IXUSR)
        write_species_file(self.folder / "prefix/share/ketra/resources", ["O3"])
        write_species_file(self.folder / "resources", ["H2O"])
        import subprocess
        done = subprocess.run([program, "species"], cwd=self.folder, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, timeout=300,
                              env={k: v for k, v in os.environ.items() if k != "KETRA_RESOURCES"})
        self.assertEqual(done.returncode, GOOD, done.stderr)
        self.assertEqual(done.stdout.decode().splitlines()[1].split()[0], "O3")

    def test_what_was_asked_for_is_not_replaced_by_what_is_there(self):
        write_species_file(self.folder / "resources", ["H2O"])
        done = self.expect(DATA, "species", "--resources", "nowhere")
        self.assertIn(b'"nowhere/thermo.inp" (the folder was given by --resources)', done.stderr)
        done = self.expect(DATA, "species", environment={"KETRA_RESOURCES": "nowhere"})
        self.assertIn(b"given by KETRA_RESOURCES", done.stderr)

    def test_without_any_the_places_are_listed(self):
        path = self.write(CHAMBER)
        for arguments in (("species",), ("run", path), ("check", path)):
            with self.subTest(arguments=arguments):
                done = self.expect(DATA, *arguments)
                for place in (b"--resources", b"KETRA_RESOURCES", b"share/ketra/resources",
                              b"./resources/thermo.inp"):
                    self.assertIn(place, done.stderr)

    def test_a_file_without_species_is_missing_data(self):
        for content in (b"", b"no species here\n", b"\0" * 1000, b"thermo\r200. 1000.\r"):
            with self.subTest(content=content[:10]):
                folder = self.folder / "empty"
                folder.mkdir(exist_ok=True)
                (folder / "thermo.inp").write_bytes(content)
                done = self.expect(DATA, "species", "--resources", folder)
                self.assertIn(b"empty/thermo.inp", done.stderr)

    def test_properties_are_optional_but_missed(self):
        folder = write_species_file(self.folder / "bare", ["H2"])
        done = self.expect(GOOD, "species", "--resources", folder)
        self.assertIn(b"warning: there is no file", done.stderr)
        self.assertIn(b"bare/properties.inp", done.stderr)
