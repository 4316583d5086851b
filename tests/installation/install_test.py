"""What `cmake --install` puts where, and that what is installed runs without the tree it came from."""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

BUILD = pathlib.Path(os.environ["VX_BUILD"])
SOURCE = pathlib.Path(os.environ["VX_SOURCE"])
VERSION = os.environ["VX_VERSION"]
SHIPPED = BUILD / "tests/rules/shipped"


def install(build, root, *components):
    for component in components:
        subprocess.run(["cmake", "--install", build, "--component", component], check=True,
                       env={**os.environ, "DESTDIR": str(root)}, stdout=subprocess.DEVNULL)


def files_in(folder):
    return {path.relative_to(folder).as_posix() for path in folder.rglob("*")
            if path.is_symlink() or not path.is_dir()}


def cached(build, name):
    return re.search(rf"^{name}:\w+=(.*)$", (build / "CMakeCache.txt").read_text(), re.M).group(1)


def output_of(*command, **how):
    return subprocess.run(command, check=True, text=True, capture_output=True, timeout=120,
                          **how).stdout


def options_in(text):
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]*", text))


class Tree(unittest.TestCase):
    build = BUILD
    components = ()

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="vx_install_")
        cls.addClassCleanup(folder.cleanup)
        cls.root = pathlib.Path(folder.name)
        install(cls.build, cls.root, *cls.components)
        cls.prefix = cls.root / cached(cls.build, "CMAKE_INSTALL_PREFIX").lstrip("/")
        cls.libraries = cached(cls.build, "CMAKE_INSTALL_LIBDIR")

    def assert_installed(self, *expected):
        found = files_in(self.prefix)
        self.assertEqual([], sorted(set(expected) - found), "missing")
        self.assertEqual([], sorted(found - set(expected)), "not expected")


class Workstation(Tree):
    components = ("workstation",)

    def test_everything_lies_where_its_kind_belongs(self):
        programs = ("cloud_judge", "lab_cloud", "platform_judge_sim", "vx_cloud_doctor_sim",
                    "vx_cloud_make_image", "vx_cloud_run", "vx_cloud_sim")
        scripts = ("make_image", "places", "run", "story", "wire_schema", "workbench")
        schemas = ("action", "report", "settings", "whole_report")
        self.assert_installed(
            *(f"bin/{name}" for name in programs),
            *(f"share/man/man1/{name}.1" for name in programs),
            *(f"share/vx_cloud/{name}.py" for name in scripts),
            *(f"share/vx_cloud/schema/{name}.schema.json" for name in schemas))

    def test_a_script_that_is_no_command_cannot_be_run(self):
        for path in (self.prefix / "share/vx_cloud").glob("*.py"):
            self.assertEqual(path.read_text().startswith("#!"), os.access(path, os.X_OK), path.name)

    def test_every_command_tells_the_version(self):
        for command in sorted((self.prefix / "bin").iterdir()):
            self.assertEqual(f"{command.name} {VERSION}\n", output_of(command, "--version"))

    def test_every_option_of_a_command_is_in_its_page_and_none_besides(self):
        for command in sorted((self.prefix / "bin").iterdir()):
            with self.subTest(command.name):
                page = (self.prefix / f"share/man/man1/{command.name}.1").read_text()
                told = options_in(re.sub(r"\bFl Fl ", "--", page))
                self.assertEqual(options_in(output_of(command, "--help")), told)

    def test_installed_scripts_find_installed_programs_and_schemas(self):
        where = ("import places, wire_schema; print(places.program('lab_cloud', None).resolve());"
                 "print(*wire_schema.action_faults({'action': 'checkin'}))")
        told = output_of(sys.executable, "-B", "-c", where, cwd=self.prefix / "share/vx_cloud")
        self.assertEqual(f"{(self.prefix / 'bin/lab_cloud').resolve()}\n\n", told)

    def test_nothing_that_is_installed_names_the_tree_it_came_from(self):
        for path in self.prefix.rglob("*.py"):
            self.assertNotIn(str(SOURCE), path.read_text())


class Vendor(Tree):
    components = ("vendor",)

    def test_everything_lies_where_its_kind_belongs(self):
        headers = [path.relative_to(SOURCE) for folder in ("platform", "driver")
                   for path in (SOURCE / folder).glob("*.h")]
        self.assertGreater(len(headers), 50)
        example = (path.name for path in (SOURCE / "examples/twelve_ports").iterdir())
        archives = ("vx_cloud_agent", "vx_cloud_doctor", "vx_platform_judge")
        self.assert_installed(
            *(f"include/vx_cloud/{header}" for header in headers),
            *(f"share/doc/vx_cloud/examples/twelve_ports/{name}" for name in example),
            *(f"{self.libraries}/lib{name}.a" for name in archives),
            *(f"{self.libraries}/pkgconfig/{name}.pc" for name in archives),
            f"{self.libraries}/pkgconfig/vx_cloud.pc",
            f"{self.libraries}/vx_cloud/libnull_platform.so",
            "bin/vx_cloud_null_platform", "share/man/man1/vx_cloud_null_platform.1",
            "share/vx_cloud/vendor/null_platform.py", "share/vx_cloud/vendor/places.py")

    def pkg_config(self, *arguments):
        return output_of("pkg-config", "--with-path", self.prefix / self.libraries / "pkgconfig",
                         *arguments)

    def test_pkg_config_tells_version_and_headers(self):
        self.assertEqual(f"{VERSION}\n", self.pkg_config("--modversion", "vx_cloud"))
        flag = self.pkg_config("--cflags", "vx_cloud").strip()
        self.assertTrue(flag.startswith("-I"), flag)
        self.assertEqual((self.prefix / "include/vx_cloud").resolve(),
                         pathlib.Path(flag[2:]).resolve())

    def test_the_generator_writes_a_library_against_installed_headers(self):
        generator = self.prefix / "bin/vx_cloud_null_platform"
        self.assertEqual(f"{generator.name} {VERSION}\n", output_of(generator, "--version"))
        subprocess.run(["cc", "-x", "c", "-fsyntax-only", "-w",
                        *self.pkg_config("--cflags", "vx_cloud").split(), "-"],
                       input=output_of(generator), text=True, check=True)


class Pages(Tree):
    components = ("doc",)

    def test_links_between_pages_lead_somewhere(self):
        root = self.prefix / "share/doc/vx_cloud"
        pages = list(root.rglob("*.md"))
        self.assertGreater(len(pages), 8)
        for page in pages:
            for target in re.findall(r"\]\(([^)#:]+)\)", page.read_text()):
                self.assertTrue((page.parent / target).exists(), f"{page.name}: {target}")


class Switch(Tree):
    """The agent that the rules have linked with a library that does nothing."""
    build = SHIPPED
    components = ("switch",)

    def test_everything_lies_where_its_kind_belongs(self):
        self.assert_installed("sbin/vx_cloud", "sbin/vx_cloud_doctor", "etc/init.d/vx_cloud",
                              "lib/systemd/system/vx_cloud.service", "share/man/man8/vx_cloud.8",
                              "share/man/man1/vx_cloud_doctor.1")

    def test_the_service_starts_the_installed_agent(self):
        agent = f"{cached(SHIPPED, 'CMAKE_INSTALL_PREFIX')}/sbin/vx_cloud"
        script = self.prefix / "etc/init.d/vx_cloud"
        self.assertIn(f"\nagent={agent}\n", script.read_text())
        subprocess.run(["sh", "-n", script], check=True)
        self.assertTrue(os.access(script, os.X_OK))
        unit = (self.prefix / "lib/systemd/system/vx_cloud.service").read_text()
        self.assertIn(f"\nExecStart={agent}\n", unit)
        self.assertNotRegex(script.read_text() + unit, "@[A-Z]")

    def test_the_agent_and_its_doctor_carry_the_version(self):
        agent = (self.prefix / "sbin/vx_cloud").read_bytes()
        self.assertIn(f"@(#)vx_cloud {VERSION}\0".encode(), agent)
        environment = {**os.environ, "LD_LIBRARY_PATH": str(SHIPPED)}
        self.assertEqual(f"vx_cloud_doctor {VERSION}\n",
                         output_of(self.prefix / "sbin/vx_cloud_doctor", "--version",
                                   env=environment))

    def test_it_starts_after_the_services_of_the_firmware(self):
        script = (self.prefix / "etc/init.d/vx_cloud").read_text()
        self.assertRegex(script, r"(?m)^# Required-Start: .* \$network firmware$")
        unit = (self.prefix / "lib/systemd/system/vx_cloud.service").read_text()
        for order in ("After", "Wants"):
            self.assertRegex(unit, rf"(?m)^{order}=network-online\.target .*firmware\.service$")

    def test_systemd_takes_the_unit(self):
        installed = (self.prefix / "lib/systemd/system/vx_cloud.service").read_text()
        unit = self.root / "vx_cloud.service"
        unit.write_text(installed.replace(f"{cached(SHIPPED, 'CMAKE_INSTALL_PREFIX')}/sbin/vx_cloud",
                                          str(self.prefix / "sbin/vx_cloud")))
        run = subprocess.run(["systemd-analyze", "verify", "--man=no", unit], text=True,
                             capture_output=True, timeout=60)
        self.assertEqual((0, ""), (run.returncode, run.stderr))
