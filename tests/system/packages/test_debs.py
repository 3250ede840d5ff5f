"""The Debian packages, unpacked: what is in them, what they need, and that it runs.

What installing, upgrading and removing them does to a machine, script/package --check shows.
"""

import re
import shutil

import pytest

from conftest import BUILD, SOURCE, cannot
from elf import assert_run_paths_are_safe, elf_files
from installed import LIBDIR, cache, done, files

ARCHITECTURE = "armhf" if cache("CMAKE_TOOLCHAIN_FILE") else done("dpkg", "--print-architecture").strip()
PACKAGES = ["libvx63-1", "libvx63-dev", "vx63-tools", "vx63-vmeter", "python3-vx63"]
BINARIES = ["libvx63-1", "vx63-tools", "vx63-vmeter"]


@pytest.fixture(scope="module")
def debs(tmp_path_factory):
    """Every package, by its name."""
    for program in "dpkg-shlibdeps", "file":
        if not shutil.which(program):
            cannot(f"no {program}: script/bootstrap test")
    folder = tmp_path_factory.mktemp("debs")
    done(SOURCE / "packaging" / "debs", BUILD, folder)
    return {path.name.split("_")[0]: path for path in folder.iterdir()}


@pytest.fixture(scope="module")
def root(debs, tmp_path_factory):
    """All that is no debug symbols, unpacked."""
    root = tmp_path_factory.mktemp("root")
    for name, deb in debs.items():
        if not name.endswith("-dbgsym"):
            done("dpkg-deb", "--extract", deb, root)
    return root


def field(deb, name):
    return done("dpkg-deb", "--field", deb, name).strip()


def needs(deb, name="Depends"):
    """The names of the packages that a package needs."""
    return {re.split(r"[ (:]", need.strip())[0] for need in field(deb, name).split(",") if need.strip()}


def control(deb, tmp_path):
    done("dpkg-deb", "--control", deb, tmp_path)
    return files(tmp_path)


def content(deb, tmp_path):
    done("dpkg-deb", "--extract", deb, tmp_path)
    return [name for name in files(tmp_path) if not name.startswith("usr/share/lintian/")]


def documents(package):
    return [f"usr/share/doc/{package}/changelog.gz", f"usr/share/doc/{package}/copyright"]


def test_packages(debs):
    assert set(debs) == {*PACKAGES, *(f"{name}-dbgsym" for name in BINARIES)}
    for name, deb in debs.items():
        architecture = "all" if name == "python3-vx63" else ARCHITECTURE
        assert deb.name == f"{name}_1.0.0_{architecture}.deb"
        assert field(deb, "Architecture") == architecture


def test_library(debs, tmp_path):
    assert content(debs["libvx63-1"], tmp_path) == [
        f"usr/{LIBDIR}/libvx63.so.1", f"usr/{LIBDIR}/libvx63.so.1.0.0", *documents("libvx63-1")]


def test_tools(debs, tmp_path):
    found = content(debs["vx63-tools"], tmp_path)
    assert {"usr/bin/vx63", "usr/share/man/man1/vx63.1.gz", *documents("vx63-tools")} <= set(found)
    assert not [name for name in found if "/man/" in name and not name.endswith(".gz")]


def test_vmeter(debs, tmp_path):
    assert {"usr/bin/vx63-vmeter", f"usr/{LIBDIR}/liblmsg.so", f"usr/{LIBDIR}/liblsys.so",
            "usr/share/man/man1/vx63-vmeter.1.gz", *documents("vx63-vmeter")} <= \
        set(content(debs["vx63-vmeter"], tmp_path))


def test_python(debs, tmp_path):
    found = content(debs["python3-vx63"], tmp_path)
    assert {"usr/lib/python3/dist-packages/vx63/__init__.py", "usr/lib/python3/dist-packages/vx63/py.typed",
            "usr/lib/python3/dist-packages/vx63-1.0.0.dist-info/METADATA",
            "usr/share/doc/python3-vx63/examples/poll.py", *documents("python3-vx63")} <= set(found)
    assert not [name for name in found if "__pycache__" in name]


# ---- what they need ----


def test_a_meter_gets_no_platform(debs):
    """A meter has its own: what is installed there must not bring a PC's."""
    for name in "libvx63-1", "vx63-tools", "python3-vx63":
        assert "vx63-vmeter" in needs(debs[name], "Suggests")
        for strong in "Depends", "Pre-Depends", "Recommends":
            assert "vx63-vmeter" not in needs(debs[name], strong)


def test_dependencies(debs):
    assert {name: needs(debs[name]) for name in PACKAGES} == {
        "libvx63-1": {"libc6"},
        "libvx63-dev": {"libvx63-1"},
        "vx63-tools": {"libvx63-1", "libc6", "libcairo2", "libncursesw6"},
        "vx63-vmeter": {"bubblewrap", "libc6"},
        "python3-vx63": {"python3", "libvx63-1"},
    }
    assert field(debs["libvx63-dev"], "Depends") == "libvx63-1 (= 1.0.0)"
    assert "libvx63-1 (>= 1.0.0)" in field(debs["vx63-tools"], "Depends")


def test_glibc(debs, tmp_path):
    """The newest of its symbols that a package asks for is there in the oldest that it allows."""
    for name in BINARIES:
        [allowed] = re.findall(r"\blibc6 \(>= 2\.(\d+)\)", field(debs[name], "Depends"))
        done("dpkg-deb", "--extract", debs[name], tmp_path / name)
        asked = re.findall(r"GLIBC_2\.(\d+)", done("readelf", "--version-info", *elf_files(tmp_path / name)))
        assert int(allowed) >= max(map(int, asked)), name
        assert name != "libvx63-1" or int(allowed) <= 34  # docs/arm.md


def test_control_files(debs, tmp_path):
    both = ["control", "md5sums"]
    assert control(debs["libvx63-1"], tmp_path / "1") == [*both, "shlibs", "triggers"]
    assert (tmp_path / "1" / "shlibs").read_text() == "libvx63 1 libvx63-1 (>= 1.0.0)\n"
    assert (tmp_path / "1" / "triggers").read_text() == "activate-noawait ldconfig\n"
    assert control(debs["libvx63-dev"], tmp_path / "2") == both
    assert control(debs["vx63-tools"], tmp_path / "3") == both
    assert control(debs["vx63-vmeter"], tmp_path / "4") == ["control", "md5sums", "preinst", "triggers"]
    assert control(debs["python3-vx63"], tmp_path / "5") == [*both, "postinst", "prerm"]


# ---- what is in them ----


def test_owner_mode_and_time(debs):
    """Root's, not writable for others, as old as the changelog: nothing of the machine that built them."""
    date = re.search(r"^ -- .*>  \w+, (\d+) (\w+) (\d+)", (SOURCE / "packaging/deb/changelog").read_text(), re.MULTILINE)
    assert date.groups() == ("21", "Nov", "2026")
    for deb in debs.values():
        for line in done("dpkg-deb", "--contents", deb).splitlines():
            mode, owner, _, day, *_ = line.split()
            assert (mode[1:] in ("rwxr-xr-x", "rw-r--r--", "rwxrwxrwx"), owner, day) == (True, "root/root", "2026-11-21")


def test_elf_files(root, debs, tmp_path):
    elves = elf_files(root)
    assert len(elves) == 5
    assert_run_paths_are_safe(elves)
    for name in BINARIES:
        done("dpkg-deb", "--extract", debs[f"{name}-dbgsym"], tmp_path)
    for elf in elves:
        sections = done("readelf", "-SW", elf)
        assert " .debug_info " not in sections and " .symtab " not in sections
        build_id = re.search(r"Build ID: (\w+)", done("readelf", "-n", elf)).group(1)
        assert (tmp_path / f"usr/lib/debug/.build-id/{build_id[:2]}/{build_id[2:]}.debug").exists()


def test_they_run(root, isolation):
    said = done(root / "usr/bin/vx63-vmeter", "run", *isolation, "--",
                root / "usr/bin/vx63", "measure", "single", "--freq", "557143")
    assert re.search(r"^Lock +yes$", said, re.MULTILINE)
