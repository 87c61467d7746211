"""What an installation consists of, checked with the tools of the conventions it follows."""

import configparser
import gzip
import os
import re
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as xml

BUILD = os.environ["PINDLE_BUILD"]
ID = "app.pindle.Pindle"
DEADLINE = 60  # seconds one tool may take
FILES = {
    "bin/pindle",
    "bin/pindle-convert",
    f"share/applications/{ID}.desktop",
    f"share/dbus-1/services/{ID}.service",
    f"share/icons/hicolor/scalable/apps/{ID}.svg",
    f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg",
    f"share/metainfo/{ID}.metainfo.xml",
    "share/man/man1/pindle.1.gz",
    "share/man/man1/pindle-convert.1.gz",
    "share/doc/pindle/changelog.Debian.gz",
    "share/doc/pindle/changelog.gz",
    "share/doc/pindle/copyright",
}


def run(*command, **environment):
    """Exit code and all output of a command."""
    done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, timeout=DEADLINE, check=False,
                          env={**os.environ, "LC_ALL": "C.UTF-8", **environment})
    return done.returncode, done.stdout


def install(prefix, root, component="pindle"):
    code, output = run("cmake", "--install", BUILD, "--prefix", prefix, "--component", component,
                       DESTDIR=root)
    if code:
        raise RuntimeError(output)


def entry_of(path):
    entry = configparser.RawConfigParser(delimiters="=", strict=True)
    entry.optionxform = str
    entry.read(path, encoding="utf-8")
    return entry


class Conventions(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        install("/usr", folder.name)
        cls.root = os.path.join(folder.name, "usr")
        cls.entry = entry_of(cls.path(f"share/applications/{ID}.desktop"))
        cls.metainfo = xml.parse(cls.path(f"share/metainfo/{ID}.metainfo.xml"))

    @classmethod
    def path(cls, name):
        return os.path.join(cls.root, name)

    def quiet(self, *command, **environment):
        """The command succeeds and has nothing to say."""
        code, output = run(*command, **environment)
        self.assertEqual((code, output.strip()), (0, ""), command)

    def actions(self):
        return self.entry["Desktop Entry"]["Actions"].strip(";").split(";")

    def manual(self, name):
        with gzip.open(self.path(f"share/man/man1/{name}.1.gz"), "rt", encoding="utf-8") as page:
            return page.read()

    def test_exactly_these_files_are_installed_and_all_can_read_them(self):
        found = set()
        for folder, _, names in os.walk(self.root):
            for name in names:
                path = os.path.join(folder, name)
                found.add(os.path.relpath(path, self.root))
                mode = os.stat(path).st_mode & 0o777
                self.assertEqual(mode, 0o755 if "/bin/" in path else 0o644, path)
        self.assertEqual(found, FILES)

    def test_the_plugin_for_the_desktops_calendar_is_installed_apart(self):
        with tempfile.TemporaryDirectory() as folder:
            install("/usr", folder, "evolution")
            found = {os.path.relpath(os.path.join(place, name), os.path.join(folder, "usr"))
                     for place, _, names in os.walk(folder) for name in names}
        plugins = {path for path in found if path.endswith("/pindle/libpindle-evolution.so")}
        self.assertEqual(len(plugins), 1)
        self.assertEqual(found - plugins, {"share/doc/pindle-evolution/copyright",
                                           "share/doc/pindle-evolution/changelog.Debian.gz"})

    def test_the_menu_entry_is_valid(self):
        self.quiet("desktop-file-validate", self.path(f"share/applications/{ID}.desktop"))

    def test_every_action_of_the_menu_entry_can_be_started_and_is_in_the_manual(self):
        manual = self.manual("pindle")
        self.assertEqual(set(self.entry.sections()) - {"Desktop Entry"},
                         {f"Desktop Action {name}" for name in self.actions()})
        for name in self.actions():
            self.assertEqual(self.entry[f"Desktop Action {name}"]["Exec"],
                             f"pindle --action {name}")
            self.assertIn(f".It Ic {name}\n", manual)

    def test_the_menu_entry_offers_just_the_programs_actions(self):
        code, usage = run(self.path("bin/pindle"), "--help", DISPLAY="")
        self.assertEqual(code, 0, usage)
        self.assertEqual(re.search(r"does one of: (.*)$", usage, re.M).group(1).split(", "),
                         self.actions())

    def test_the_menu_entrys_icon_is_installed(self):
        icon = self.entry["Desktop Entry"]["Icon"]
        self.assertIn(f"share/icons/hicolor/scalable/apps/{icon}.svg", FILES)

    def test_the_description_for_software_centres_is_valid(self):
        code, output = run("appstreamcli", "validate", "--no-net", "--no-color", "--strict",
                           self.path(f"share/metainfo/{ID}.metainfo.xml"))
        self.assertEqual(code, 0, output)

    def test_the_description_names_what_is_installed(self):
        root = self.metainfo.getroot()
        self.assertEqual(root.findtext("id"), ID)
        self.assertIn(f"share/applications/{root.findtext('launchable')}", FILES)
        for binary in root.iter("binary"):
            self.assertIn(f"bin/{binary.text}", FILES)
        code, output = run(self.path("bin/pindle-convert"), "--version")
        self.assertEqual((code, output.split()[-1]),
                         (0, root.find("releases/release").get("version")))

    def test_the_screenshot_has_the_size_that_is_told(self):
        image = self.metainfo.getroot().find("screenshots/screenshot/image")
        name = os.path.basename(image.text)
        picture = os.path.join(os.environ["PINDLE_SOURCE"], "docs", "screenshots", name)
        with open(picture, "rb") as file:
            head = file.read(24)  # signature, then the size in the first chunk
        self.assertEqual(head[:8], b"\x89PNG\r\n\x1a\n")
        self.assertEqual((int.from_bytes(head[16:20], "big"), int.from_bytes(head[20:24], "big")),
                         (int(image.get("width")), int(image.get("height"))))

    def test_all_xml_is_well_formed(self):
        for name in sorted(FILES):
            if name.endswith((".svg", ".xml")):
                self.quiet("xmllint", "--noout", "--nonet", self.path(name))

    def test_the_symbolic_icon_has_one_colour_for_the_desktop_to_replace(self):
        with open(self.path(f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg"),
                  encoding="utf-8") as file:
            picture = file.read()
        self.assertEqual(len(set(re.findall(r"#[0-9a-fA-F]{3,8}", picture))), 1)
        self.assertNotIn("stroke=", picture)

    def test_the_bus_starts_the_installed_program(self):
        service = entry_of(self.path(f"share/dbus-1/services/{ID}.service"))["D-BUS Service"]
        self.assertEqual(dict(service), {"Name": ID, "Exec": "/usr/bin/pindle"})

    def test_the_bus_starts_the_program_wherever_it_is_installed(self):
        with tempfile.TemporaryDirectory() as folder:
            prefix = os.path.join(folder, "opt", "pindle")
            install(prefix, "")
            service = entry_of(f"{prefix}/share/dbus-1/services/{ID}.service")["D-BUS Service"]
            self.assertEqual(service["Exec"], f"{prefix}/bin/pindle")

    def test_the_manual_pages_are_free_of_faults(self):
        for name in ("pindle", "pindle-convert"):
            page = self.path(f"share/man/man1/{name}.1.gz")
            self.quiet("sh", "-c", 'man --warnings -E UTF-8 -l -Tutf8 -Z "$0" >/dev/null', page,
                       MANROFFSEQ="", MANWIDTH="80")
            code, shown = run("man", "-l", "-Tutf8", page, MANPAGER="cat", MANWIDTH="80")
            self.assertEqual(code, 0)
            shown = re.sub(".\x08", "", shown)  # what is bold is struck twice
            for section in ("NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXIT STATUS", "SEE ALSO"):
                self.assertIn(section, shown)

    def test_the_example_of_the_conversions_manual_gives_an_event(self):
        example = re.search(r"^\.Bd -literal\n(echo.*?)^\.Ed", self.manual("pindle-convert"),
                            re.M | re.S).group(1).replace("\\en", "\\n")
        code, reply = run("sh", "-c", example,
                          PATH=f"{self.path('bin')}:{os.environ['PATH']}")
        self.assertEqual(code, 0, reply)
        self.assertIn("2026-11-22", reply)


if __name__ == "__main__":
    unittest.main()
